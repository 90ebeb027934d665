// SPDX-License-Identifier: MIT
#include "EventCounter.h"

namespace ovra::frontend {

void EventCounter::count(const CountedEvent& event)
{
    const std::lock_guard lock(m_mutex);
    ++m_counts[event];
}

std::map<CountedEvent, std::int64_t> EventCounter::counts() const
{
    const std::lock_guard lock(m_mutex);
    return m_counts;
}

} // namespace ovra::frontend
