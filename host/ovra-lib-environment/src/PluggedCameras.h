// SPDX-License-Identifier: MIT
/// \file
/// Connects physical ports with the cameras that are plugged into them.
#pragma once

#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentHardwareNodes.h"

#include <map>

namespace ovra::core::models {

/// The cameras of a board by physical port, from the model that the board belongs to.
std::map<unsigned int, boost::shared_ptr<HlEnvironmentCameraNode>> camerasOf(HlEnvironmentBoardNode& board);

/// Sets or clears the camera of each physical port of the board.
void attachCameras(HlEnvironmentBoardNode& board);

} // namespace ovra::core::models
