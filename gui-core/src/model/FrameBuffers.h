// SPDX-License-Identifier: MIT
/// \file
/// The frame-buffer group of a DMA channel.
#pragma once

#include <boost/shared_ptr.hpp>

namespace ovra::display {
class FglibFrameBufferGroup;
}

namespace ovra::core::models {
class HlEnvironmentDmaNode;
}

namespace ovra::gui::model {

/// The channel's group. Empty where it has none: before a load is complete, and after an unload.
boost::shared_ptr<display::FglibFrameBufferGroup>
frameBuffersOf(const core::models::HlEnvironmentDmaNode& dma);

/// Notifies displays that the group's width and height may have changed.
void announceGeometry(display::FglibFrameBufferGroup& group);

} // namespace ovra::gui::model
