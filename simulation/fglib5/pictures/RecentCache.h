// SPDX-License-Identifier: MIT
/// \file
/// RecentCache: keeps recently used values that are expensive to compute.
#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <string>

namespace simulation {

/// Keeps values up to a number of bytes and drops the least recently used first. A thread that requests a
/// value which another thread computes waits for that value only. Value has a function bytes().
template <class Value>
class RecentCache
{
public:
    explicit RecentCache(std::size_t maxBytes) : m_maxBytes(maxBytes) {}

    template <class Make>
    std::shared_ptr<const Value> get(const std::string& key, Make make)
    {
        const auto slot = slotOf(key);
        const std::lock_guard making(slot->making);
        if (!slot->value) {
            slot->value = make();
            count(*slot);
        }
        return slot->value;
    }

private:
    struct Slot
    {
        explicit Slot(std::string wanted) : key(std::move(wanted)) {}

        const std::string key;
        std::size_t bytes = 0; ///< 0 until the value has been computed; under the cache's lock
        std::mutex making;     ///< taken before the cache's lock
        std::shared_ptr<const Value> value;
    };

    std::shared_ptr<Slot> slotOf(const std::string& key)
    {
        const std::lock_guard lock(m_mutex);
        const auto found = std::ranges::find(m_slots, key, [](const auto& slot) { return slot->key; });
        auto slot = found == m_slots.end() ? std::make_shared<Slot>(key) : *found;
        if (found != m_slots.end())
            m_slots.erase(found);
        m_slots.push_back(slot);
        return slot;
    }

    void count(Slot& made)
    {
        const std::lock_guard lock(m_mutex);
        made.bytes = made.value->bytes();
        std::size_t bytes = 0;
        for (const auto& slot : m_slots)
            bytes += slot->bytes;
        while (m_slots.size() > 1 && bytes > m_maxBytes) {
            bytes -= m_slots.front()->bytes;
            m_slots.pop_front();
        }
    }

    const std::size_t m_maxBytes;
    std::mutex m_mutex;
    std::deque<std::shared_ptr<Slot>> m_slots;
};

} // namespace simulation
