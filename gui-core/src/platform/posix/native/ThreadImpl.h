// SPDX-License-Identifier: MIT
/// \file
/// The calling thread's id on POSIX systems: the kernel's, asked once a thread.
#pragma once

#include <cstdint>

namespace ovra::templates::platform {

/// The calling thread's id, 0 until it is first requested. Cached because the system call is slow and every
/// spin-lock guard needs the id. Static TLS avoids the look-up of a library's thread-local variable.
extern constinit thread_local std::uint32_t cachedThreadId [[gnu::tls_model("initial-exec")]];

std::uint32_t fetchThreadId();

/// See platform/Thread.h.
inline std::uint32_t currentThreadId()
{
    const std::uint32_t cached = cachedThreadId;
    return cached != 0 ? cached : fetchThreadId();
}

} // namespace ovra::templates::platform
