#include "ovra-lib-display/FrameBufferGroup.h"

namespace ovra::display {

FrameBufferGroup::~FrameBufferGroup() = default;

} // namespace ovra::display
