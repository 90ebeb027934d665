// SPDX-License-Identifier: MIT
/// \file
/// Changes of a board's handle.
#pragma once

#include <string>

namespace ovra::core::models {
class HlEnvironmentBoardNode;
}

namespace ovra::gui::applet {

/// Frees the board's handle, if it has one, as one change of the board.
void freeBoardHandle(core::models::HlEnvironmentBoardNode& board);

/// Initialises the board with the applet at \p appletPath and stores the handle. On failure posts an error to
/// the user and returns false with the board unchanged. Worker thread.
bool initialiseBoard(core::models::HlEnvironmentBoardNode& board, const std::string& appletPath);

} // namespace ovra::gui::applet
