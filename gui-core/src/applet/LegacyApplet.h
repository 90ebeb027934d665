// SPDX-License-Identifier: MIT
/// \file
/// An applet library of the oldest kind, which reports its layout itself.
#pragma once

#include <string>

namespace ovra::core::models {
class HlEnvironmentBoardNode;
}

namespace ovra::gui::applet {

/// Opens the library, queries its layout, publishes that on the board, and closes the library. When it cannot
/// be opened or lacks the function, posts an error to the user, publishes nothing and returns false. Worker
/// thread.
bool buildLegacyApplet(core::models::HlEnvironmentBoardNode& board, const std::string& appletPath);

} // namespace ovra::gui::applet
