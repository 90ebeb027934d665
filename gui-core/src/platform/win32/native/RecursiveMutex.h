/// \file
/// RecursiveMutex: a mutex that its owner may take again.
#pragma once

#include <cstdint>

namespace ovra::templates::platform {

/// See platform/RecursiveMutex.h.
class RecursiveMutex
{
public:
    /// Throws std::system_error when the system has no mutex left.
    RecursiveMutex();
    virtual ~RecursiveMutex();
    RecursiveMutex(const RecursiveMutex&) = delete;
    RecursiveMutex& operator=(const RecursiveMutex&) = delete;

    void lock();
    /// Only by the thread that holds the mutex.
    void unlock();

private:
    void* m_handle;
    // How often it is held; for a look in the debugger, nothing decides on it.
    std::int32_t m_lockCount = 0;
};

} // namespace ovra::templates::platform
