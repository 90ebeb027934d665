// SPDX-License-Identifier: MIT
/// \file
/// Software triggers for the cameras of a board.
#pragma once

#include "ovra-lib-environment/Export.h"

namespace ovra::core::models {
class HlEnvironmentBoardNode;
}

namespace ovra::reference {

/// Sends \p count triggers for the camera at the logical port \p port of the applet on \p board. Any thread;
/// does not wait for the images.
///
/// \throws std::runtime_error  if the board has no applet or the runtime refuses: unknown port, another
///     trigger mode, no acquisition
OVRA_ENVIRONMENT_API void sendSoftwareTrigger(const core::models::HlEnvironmentBoardNode& board,
                                              unsigned int port, unsigned int count = 1);

} // namespace ovra::reference
