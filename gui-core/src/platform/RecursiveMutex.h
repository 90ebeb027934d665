/// \file
/// RecursiveMutexGuard, and what a RecursiveMutex is for.
///
/// The thread that holds the mutex may take it again, and releases it as often. Waiting blocks. Use it where
/// a section may be entered again from within; where it may not, std::mutex is cheaper.
#pragma once

#include "native/RecursiveMutex.h"
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
