// SPDX-License-Identifier: MIT
/// \file
/// SpinLockVariableGuard: a scoped spin lock over words that the caller owns.
///
///   | lock word | owner word         | constructor                     | destructor             |
///   |-----------|--------------------|---------------------------------|------------------------|
///   | 0         | none, 0 or another | takes the lock                  | releases it            |
///   | 1         | the calling thread | continues: it is inside already | leaves the lock alone  |
///   | 1         | none or another    | spins until the lock is free    | releases it            |
///
/// Unfair, and it never yields: for a few loads and stores, such as one-time initialisation. Not for anything
/// that may block. (The library's own initialisation holds one over start-ups that may: they run once, before
/// other threads use the library, and a waiting thread could do nothing useful.) Without an owner word a
/// second guard on the same thread spins forever.
///
/// Uncontended it costs one compare-and-swap, one exchange and, with an owner word, two stores.
///
///     static std::atomic<std::int32_t> lock{0};
///     static std::atomic<std::uint32_t> owner{0};
///     const SpinLockVariableGuard guard(&lock, &owner);
#pragma once

#include "platform/Thread.h"

#include <atomic>
#include <cstdint>

namespace ovra::templates::platform {

/// The words usually have static storage; they outlive the guard. Any thread.
class [[nodiscard]] SpinLockVariableGuard
{
public:
    /// \p owner may be null.
    explicit SpinLockVariableGuard(std::atomic<std::int32_t>* lock,
                                   std::atomic<std::uint32_t>* owner = nullptr);
    virtual ~SpinLockVariableGuard();
    SpinLockVariableGuard(const SpinLockVariableGuard&) = delete;
    SpinLockVariableGuard& operator=(const SpinLockVariableGuard&) = delete;

private:
    std::atomic<std::int32_t>* m_lock;
    std::atomic<std::uint32_t>* m_owner;
    bool m_acquired = false;
};

inline SpinLockVariableGuard::SpinLockVariableGuard(std::atomic<std::int32_t>* lock,
                                                    std::atomic<std::uint32_t>* owner)
    : m_lock(lock),
      m_owner(owner)
{
    const std::uint32_t self = owner ? currentThreadId() : 0;
    // Only this thread ever stores its own id, so no order is needed to recognise it.
    if (owner && owner->load(std::memory_order_relaxed) == self)
        return;

    std::int32_t expected = 0;
    while (!lock->compare_exchange_weak(expected, 1, std::memory_order_acquire, std::memory_order_relaxed))
        expected = 0;

    if (owner)
        owner->store(self, std::memory_order_relaxed);
    m_acquired = true;
}

inline SpinLockVariableGuard::~SpinLockVariableGuard()
{
    if (!m_acquired)
        return;
    if (m_owner)
        m_owner->store(0, std::memory_order_relaxed);
    m_lock->exchange(0, std::memory_order_release);
}

} // namespace ovra::templates::platform
