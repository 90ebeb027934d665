/// \file
/// CriticalSection: the lock for a handful of instructions inside other locks.
#pragma once

#include <atomic>

namespace ovra::templates::platform {

/// Not to be taken twice by one thread, nor held across anything that blocks. Any thread.
///
/// Entering costs one atomic exchange, leaving a store: half of what a mutex costs, which must find out on
/// leaving whether somebody sleeps. Whoever finds it taken spins for a moment, then gives way, then sleeps
/// for moments.
class CriticalSection
{
public:
    CriticalSection() = default;
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

    void enter()
    {
        if (m_taken.exchange(true, std::memory_order_acquire)) [[unlikely]]
            enterContended();
    }

    void leave() { m_taken.store(false, std::memory_order_release); }

private:
    void enterContended();

    std::atomic<bool> m_taken{false};
};

} // namespace ovra::templates::platform
