#include "platform/SpinLockVariableGuard.h"

#include "platform/Thread.h"

namespace ovra::templates::platform {

SpinLockVariableGuard::SpinLockVariableGuard(std::atomic<std::int32_t>* lock,
                                             std::atomic<std::uint32_t>* owner)
    : m_lock(lock),
      m_owner(owner),
      m_acquired(false)
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

SpinLockVariableGuard::~SpinLockVariableGuard()
{
    if (!m_acquired)
        return;
    if (m_owner)
        m_owner->store(0, std::memory_order_relaxed);
    m_lock->exchange(0, std::memory_order_release);
}

} // namespace ovra::templates::platform
