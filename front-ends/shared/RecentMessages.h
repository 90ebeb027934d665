// SPDX-License-Identifier: MIT
/// \file
/// RecentMessages: the last messages of a session, for a report.
#pragma once

#include <cstddef>
#include <deque>
#include <mutex>
#include <string>
#include <vector>

namespace ovra::frontend {

/// Any thread.
class RecentMessages
{
public:
    explicit RecentMessages(std::size_t maxMessages) : m_maxMessages(maxMessages) {}

    /// Keeps \p text with the time; drops the oldest if there are too many.
    void add(const std::string& text);
    /// All messages with their times, the oldest first.
    std::vector<std::string> all() const;

private:
    const std::size_t m_maxMessages;
    mutable std::mutex m_mutex;
    std::deque<std::string> m_messages;
};

} // namespace ovra::frontend
