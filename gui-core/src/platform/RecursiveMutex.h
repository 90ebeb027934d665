// SPDX-License-Identifier: MIT
/// \file
/// RecursiveMutex and its guard: a mutex that its owner may take again.
///
/// lock() blocks until no other thread holds the mutex; the thread that holds it may take it again, and calls
/// unlock() as often. Any thread. It can be neither copied nor moved. The constructor throws
/// std::system_error when the system has no mutex left.
///
/// Use it where a section may be entered again from within; where it may not, std::mutex is cheaper.
#pragma once

#include "native/RecursiveMutexImpl.h"
#include "platform/Guard.h"

namespace ovra::templates::platform {

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
