// SPDX-License-Identifier: MIT
#include "acquisition/CameraOfPort.h"

#include "ovra-lib-environment/HlEnvironmentAppletNodes.h"
#include "ovra-lib-environment/HlEnvironmentHardwareNodes.h"

namespace ovra::gui::acquisition {

boost::shared_ptr<core::models::GenICamModel>
cameraOfPort(const core::models::HlEnvironmentLogicalPortNode& port)
{
    const auto physical = port.getMappedPortEntry();
    if (!physical)
        return {};
    const auto camera = physical->getConnectedCameraEntry();
    if (!camera)
        return {};
    return camera->getGenICamModelEntry();
}

} // namespace ovra::gui::acquisition
