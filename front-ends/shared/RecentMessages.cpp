// SPDX-License-Identifier: MIT
#include "RecentMessages.h"

#include "TimeText.h"

#include <chrono>

namespace ovra::frontend {

void RecentMessages::add(const std::string& text)
{
    const std::string line = utcText(std::chrono::system_clock::now()) + ' ' + text;
    const std::lock_guard lock(m_mutex);
    m_messages.push_back(line);
    if (m_messages.size() > m_maxMessages)
        m_messages.pop_front();
}

std::vector<std::string> RecentMessages::all() const
{
    const std::lock_guard lock(m_mutex);
    return {m_messages.begin(), m_messages.end()};
}

} // namespace ovra::frontend
