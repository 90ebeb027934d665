/// \file
/// RecursiveMutex and its guard.
///
/// The thread that holds the mutex may take it again, and releases it as often. Waiting blocks. Use it where
/// a section may be entered again from within; where it may not, std::mutex is cheaper.
#pragma once

#include "platform/Guard.h"

#include <cstdint>

namespace ovra::templates::platform {

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

/// Holds a mutex for the length of a scope.
class [[nodiscard]] RecursiveMutexGuard : public patterns::Guard<RecursiveMutex*>
{
public:
    explicit RecursiveMutexGuard(RecursiveMutex* mutex) : Guard(mutex, true) { mutex->lock(); }
    ~RecursiveMutexGuard() override
    {
        if (owns())
            object()->unlock();
    }
};

} // namespace ovra::templates::platform
