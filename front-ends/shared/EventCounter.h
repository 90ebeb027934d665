// SPDX-License-Identifier: MIT
/// \file
/// EventCounter: counts the events of each board by name.
#pragma once

#include <compare>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>

namespace ovra::frontend {

struct CountedEvent
{
    int board = 0; ///< its index
    std::string name;

    friend auto operator<=>(const CountedEvent&, const CountedEvent&) = default;
};

/// Any thread.
class EventCounter
{
public:
    void count(const CountedEvent& event);
    std::map<CountedEvent, std::int64_t> counts() const;

private:
    mutable std::mutex m_mutex;
    std::map<CountedEvent, std::int64_t> m_counts;
};

} // namespace ovra::frontend
