// SPDX-License-Identifier: MIT
#include "platform/Thread.h"

#include <windows.h>

namespace ovra::templates::platform {

std::uint32_t currentThreadId()
{
    return GetCurrentThreadId();
}

} // namespace ovra::templates::platform
