// SPDX-License-Identifier: MIT
#include "platform/Thread.h"

#include <sys/syscall.h>
#include <unistd.h>

namespace ovra::templates::platform {

constinit thread_local std::uint32_t cachedThreadId = 0;

std::uint32_t fetchThreadId()
{
    cachedThreadId = static_cast<std::uint32_t>(syscall(SYS_gettid));
    return cachedThreadId;
}

} // namespace ovra::templates::platform
