// SPDX-License-Identifier: MIT
#include "Interrupts.h"

#include <utility>

namespace ovra::console {

using frontend::Signal;

Interrupts::Interrupts(bool atTerminal) : m_atTerminal(atTerminal) {}

void Interrupts::handle(Signal signal)
{
    const bool first = m_atTerminal && signal == Signal::Interrupt && m_pending.fetch_add(1) == 0;
    // A hang-up may come more than once.
    if (!first && m_sessionEnds.exchange(true) && signal != Signal::Hangup)
        frontend::endAtOnce(signal);
    const std::lock_guard lock(m_mutex);
    if (m_wakeUp)
        m_wakeUp();
}

bool Interrupts::commandEnds() const
{
    return m_pending > 0 || m_sessionEnds;
}

bool Interrupts::sessionEnds() const
{
    return m_sessionEnds;
}

int Interrupts::pending() const
{
    return m_pending;
}

void Interrupts::forget(int count)
{
    m_pending -= count;
}

void Interrupts::setWakeUp(std::function<void()> wakeUp)
{
    const std::lock_guard lock(m_mutex);
    m_wakeUp.swap(wakeUp);
}

} // namespace ovra::console
