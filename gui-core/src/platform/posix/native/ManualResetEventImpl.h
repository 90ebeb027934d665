// SPDX-License-Identifier: MIT
/// \file
/// ManualResetEvent on POSIX systems: a word to wait on.
#pragma once

#include <atomic>
#include <cstdint>

namespace ovra::templates::platform {

/// See platform/ManualResetEvent.h. No system call while no thread waits: set() is one atomic exchange and a
/// load, reset() a store.
class ManualResetEvent
{
public:
    ManualResetEvent() = default;
    ManualResetEvent(const ManualResetEvent&) = delete;
    ManualResetEvent& operator=(const ManualResetEvent&) = delete;

    void set()
    {
        // Sequentially consistent, as in sleep(): either the waiter sees the signal or this sees the waiter.
        m_signalled.store(1);
        if (m_waiters.load() != 0) [[unlikely]]
            m_signalled.notify_all();
    }

    void reset() { m_signalled.store(0, std::memory_order_relaxed); }

    void wait()
    {
        if (m_signalled.load(std::memory_order_acquire) == 0) [[unlikely]]
            sleep();
    }

private:
    void sleep();

    std::atomic<std::uint32_t> m_signalled{1};
    std::atomic<std::uint32_t> m_waiters{0};
};

} // namespace ovra::templates::platform
