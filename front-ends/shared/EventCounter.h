// SPDX-License-Identifier: MIT
/// \file
/// EventCounter: counts the events of all boards by name.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <string>

namespace ovra::frontend {

/// Any thread.
class EventCounter
{
public:
    void count(const std::string& name);
    std::map<std::string, std::int64_t> counts() const;

private:
    mutable std::mutex m_mutex;
    std::map<std::string, std::int64_t> m_counts;
};

} // namespace ovra::frontend
