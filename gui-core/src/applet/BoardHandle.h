/// \file
/// Changes of a board's handle.
#pragma once

#include <string>

namespace ovra::core::models {
class HlEnvironmentBoardNode;
}

namespace ovra::gui::commands {

/// Frees the board's handle, if it has one, as one change of the board.
void freeBoardHandle(core::models::HlEnvironmentBoardNode& board);

/// Puts the applet at \p appletPath on the board and stores the handle. On failure tells the user, and
/// returns false with the board as it was. Worker thread.
bool initialiseBoard(core::models::HlEnvironmentBoardNode& board, const std::string& appletPath);

} // namespace ovra::gui::commands
