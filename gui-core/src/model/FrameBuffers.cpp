// SPDX-License-Identifier: MIT
#include "model/FrameBuffers.h"

#include "ovra-lib-display-fglib/FglibFrameBufferGroup.h"
#include "ovra-lib-environment/HlEnvironmentAppletNodes.h"

namespace ovra::gui::model {

boost::shared_ptr<display::FglibFrameBufferGroup>
frameBuffersOf(const core::models::HlEnvironmentDmaNode& dma)
{
    // Applet loading makes groups of this kind only.
    return boost::static_pointer_cast<display::FglibFrameBufferGroup>(dma.getFrameBufferGroup());
}

void announceGeometry(display::FglibFrameBufferGroup& group)
{
    group.notifyGeometryMayHaveChangedSlot(0, 0, true);
    group.notifyGeometryMayHaveChangedSlot(0, 0, false);
}

} // namespace ovra::gui::model
