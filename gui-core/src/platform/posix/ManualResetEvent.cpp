#include "platform/ManualResetEvent.h"

namespace ovra::templates::platform {

// An atomic word that is waited on: no system call while nobody waits.

ManualResetEvent::ManualResetEvent() = default;

ManualResetEvent::~ManualResetEvent() = default;

void ManualResetEvent::set()
{
    // Sequentially consistent: whether somebody waits is looked up after this store, or a waiter would sleep
    // on.
    m_signalled.store(1);
    m_signalled.notify_all();
}

void ManualResetEvent::reset()
{
    m_signalled.store(0, std::memory_order_release);
}

void ManualResetEvent::wait()
{
    while (m_signalled.load(std::memory_order_acquire) == 0)
        m_signalled.wait(0, std::memory_order_acquire);
}

} // namespace ovra::templates::platform
