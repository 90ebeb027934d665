// SPDX-License-Identifier: MIT
#include "ovra-lib-display/FrameBufferGroup.h"

#include "ovra-lib-display/reference/AcquisitionObserver.h"

namespace ovra::display {

FrameBufferGroup::~FrameBufferGroup() = default;

reference::AcquisitionStatus FrameBufferGroup::acquisitionStatus() const
{
    return {};
}

std::int64_t FrameBufferGroup::lostImages() const
{
    return 0;
}

} // namespace ovra::display
