#include "commands/LegacyApplet.h"

#include "platform/SharedLibrary.h"

namespace ovra::gui::commands {

namespace {

using InfoFunction = int (*)(int query, int, int, int, int);

constexpr int NUMBER_OF_CHANNELS = 1888;
constexpr int IS_MEDIUM = 3072;
constexpr int IS_FULL = 3328;

} // namespace

std::optional<LegacyLayout> askLegacyApplet(const SharedLibrary& applet)
{
    const auto info = reinterpret_cast<InfoFunction>(applet.locate("Info"));
    if (!info)
        return std::nullopt;

    LegacyLayout layout;
    layout.channels = info(NUMBER_OF_CHANNELS, 0, 0, 0, 0);
    layout.medium = info(IS_MEDIUM, 0, 0, 0, 0) != 0;
    layout.full = info(IS_FULL, 0, 0, 0, 0) != 0;
    return layout;
}

} // namespace ovra::gui::commands
