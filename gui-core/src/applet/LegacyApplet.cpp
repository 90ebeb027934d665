#include "applet/LegacyApplet.h"

#include "applet/AppletStructure.h"
#include "applet/HandleGuard.h"
#include "messages/CommandSubmission.h"
#include "platform/SharedLibrary.h"

namespace ovra::gui::commands {

namespace {

using InfoFunction = int (*)(int query, int, int, int, int);

constexpr int NUMBER_OF_CHANNELS = 1888;
constexpr int IS_MEDIUM = 3072;
constexpr int IS_FULL = 3328;

LegacyLayout askLayout(InfoFunction info)
{
    LegacyLayout layout;
    layout.channels = info(NUMBER_OF_CHANNELS, 0, 0, 0, 0);
    layout.medium = info(IS_MEDIUM, 0, 0, 0, 0) != 0;
    layout.full = info(IS_FULL, 0, 0, 0, 0) != 0;
    return layout;
}

} // namespace

bool buildLegacyApplet(core::models::HlEnvironmentBoardNode& board, const std::string& appletPath)
{
    constexpr bool FREE_ON_DESTRUCTION = false; // the guard below closes it
    SharedLibrary applet(appletPath, FREE_ON_DESTRUCTION);
    if (!applet.load()) {
        postLoadError("Opening applet DLL failed!");
        return false;
    }
    const HandleGuard guard(&applet);
    const auto info = reinterpret_cast<InfoFunction>(applet.locate("Info"));
    if (!info) {
        postLoadError("Resolving info function of applet DLL failed!");
        return false;
    }
    buildLegacyStructure(board, askLayout(info));
    return true;
}

} // namespace ovra::gui::commands
