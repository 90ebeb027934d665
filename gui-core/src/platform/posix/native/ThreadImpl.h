/// \file
/// The calling thread's id on POSIX systems: the kernel's, asked once a thread.
#pragma once

#include <cstdint>

namespace ovra::templates::platform {

/// The calling thread's id once it was asked for, 0 before. Kept because the kernel is slow to ask, and spin
/// locks ask at each turn. Static TLS saves the look-up that a library's thread-local variable costs
/// otherwise.
extern constinit thread_local std::uint32_t cachedThreadId [[gnu::tls_model("initial-exec")]];

std::uint32_t fetchThreadId();

/// See platform/Thread.h.
inline std::uint32_t currentThreadId()
{
    const std::uint32_t cached = cachedThreadId;
    return cached != 0 ? cached : fetchThreadId();
}

} // namespace ovra::templates::platform
