/// \file
/// Which camera is plugged in where.
#pragma once

#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentHardwareNodes.h"

#include <map>

namespace ovra::core::models {

/// The cameras of a board by physical port, as the model that the board belongs to has them.
std::map<unsigned int, boost::shared_ptr<HlEnvironmentCameraNode>> camerasOf(HlEnvironmentBoardNode& board);

/// Sets the camera of each physical port that the board has, or none.
void attachCameras(HlEnvironmentBoardNode& board);

} // namespace ovra::core::models
