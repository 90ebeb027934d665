// SPDX-License-Identifier: MIT
/// \file
/// RecursiveMutex on POSIX systems: the standard library's.
#pragma once

#include <cstdint>
#include <mutex>

namespace ovra::templates::platform {

/// See platform/RecursiveMutex.h.
class RecursiveMutex
{
public:
    RecursiveMutex() = default;
    virtual ~RecursiveMutex() = default;
    RecursiveMutex(const RecursiveMutex&) = delete;
    RecursiveMutex& operator=(const RecursiveMutex&) = delete;

    void lock()
    {
        m_mutex.lock();
        ++m_lockCount;
    }

    void unlock()
    {
        // Counted while the mutex is still held, so that no other thread counts at the same time.
        --m_lockCount;
        m_mutex.unlock();
    }

private:
    std::recursive_mutex m_mutex;
    // How often it is held. For a look in the debugger: nothing depends on it.
    std::int32_t m_lockCount = 0;
};

} // namespace ovra::templates::platform
