/// \file
/// An applet library of the oldest kind, which tells its layout itself.
#pragma once

#include <string>

namespace ovra::core::models {
class HlEnvironmentBoardNode;
}

namespace ovra::gui::commands {

/// Opens the library, asks it for its layout, publishes that on the board, and closes the library again.
/// False when it cannot be opened or has no such entry: the user has then been told, and nothing is
/// published. Worker thread.
bool buildLegacyApplet(core::models::HlEnvironmentBoardNode& board, const std::string& appletPath);

} // namespace ovra::gui::commands
