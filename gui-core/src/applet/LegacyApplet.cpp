// SPDX-License-Identifier: MIT
#include "applet/LegacyApplet.h"

#include "applet/AppletStructure.h"
#include "applet/HandleGuard.h"
#include "messages/CommandSubmission.h"
#include "platform/SharedLibrary.h"

#include "fglib5/LegacyApplet.h"

namespace ovra::gui::applet {

namespace {

LegacyLayout askLayout(LegacyInfoFunction* info)
{
    LegacyLayout layout;
    layout.channels = info(LEGACY_CHANNELS, 0, 0, 0, 0);
    layout.medium = info(LEGACY_MEDIUM, 0, 0, 0, 0) != 0;
    layout.full = info(LEGACY_FULL, 0, 0, 0, 0) != 0;
    return layout;
}

} // namespace

bool buildLegacyApplet(core::models::HlEnvironmentBoardNode& board, const std::string& appletPath)
{
    constexpr bool FREE_ON_DESTRUCTION = false; // the guard below closes it
    SharedLibrary applet(appletPath, FREE_ON_DESTRUCTION);
    if (!applet.load()) {
        messages::postLoadError("Opening applet DLL failed!");
        return false;
    }
    const commands::HandleGuard guard(&applet);
    const auto info = reinterpret_cast<LegacyInfoFunction*>(applet.locate(LEGACY_INFO_NAME));
    if (!info) {
        messages::postLoadError("Resolving info function of applet DLL failed!");
        return false;
    }
    buildLegacyStructure(board, askLayout(info));
    return true;
}

} // namespace ovra::gui::applet
