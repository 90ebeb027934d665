// SPDX-License-Identifier: MIT
/// \file
/// RecursiveMutex on Windows: the system's.
#pragma once

#include <cstdint>

namespace ovra::templates::platform {

/// See platform/RecursiveMutex.h.
class RecursiveMutex
{
public:
    RecursiveMutex();
    virtual ~RecursiveMutex();
    RecursiveMutex(const RecursiveMutex&) = delete;
    RecursiveMutex& operator=(const RecursiveMutex&) = delete;

    void lock();
    void unlock();

private:
    void* m_handle;
    // How often it is held. For a look in the debugger: nothing depends on it.
    std::int32_t m_lockCount = 0;
};

} // namespace ovra::templates::platform
