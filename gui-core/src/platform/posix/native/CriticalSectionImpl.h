// SPDX-License-Identifier: MIT
/// \file
/// CriticalSection on POSIX systems: a spin lock that gives way.
#pragma once

#include <atomic>

namespace ovra::templates::platform {

/// See platform/CriticalSection.h. Uncontended: one exchange to enter, one store to leave; half of what a
/// mutex costs, which must find out on leaving whether a thread sleeps. Contended: spins 64 times, yields 64
/// times, then sleeps 50 us at a time.
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
