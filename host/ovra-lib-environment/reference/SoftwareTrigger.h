/// \file
/// Software triggers for the cameras of a board.
#pragma once

#include "ovra-lib-environment/Export.h"

namespace ovra::core::models {
class HlEnvironmentBoardNode;
}

namespace ovra::reference {

/// Sends \p count triggers for the camera at a logical port of the board's applet. Any thread; does not wait
/// for the images. Throws std::runtime_error where the board holds no applet, or the runtime refuses: no such
/// port, another trigger mode, no acquisition.
OVRA_ENVIRONMENT_API void sendSoftwareTrigger(const core::models::HlEnvironmentBoardNode& board,
                                              unsigned int port, unsigned int count = 1);

} // namespace ovra::reference
