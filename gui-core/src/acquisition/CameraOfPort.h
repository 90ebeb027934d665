// SPDX-License-Identifier: MIT
/// \file
/// The camera behind a logical port.
#pragma once

#include <boost/shared_ptr.hpp>

namespace ovra::core::models {
class GenICamModel;
class HlEnvironmentLogicalPortNode;
} // namespace ovra::core::models

namespace ovra::gui::acquisition {

/// Follows the mapped physical port and the camera plugged into it to the camera's controls. Empty where the
/// chain breaks.
boost::shared_ptr<core::models::GenICamModel>
cameraOfPort(const core::models::HlEnvironmentLogicalPortNode& port);

} // namespace ovra::gui::acquisition
