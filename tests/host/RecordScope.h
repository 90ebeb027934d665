/// \file
/// The record of host operations, switched on while this lives.
#pragma once

#include "ovra_log/reference/Journal.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <thread>

class RecordScope
{
public:
    RecordScope() { ovra::reference::Journal::start(); }
    ~RecordScope() { ovra::reference::Journal::stop(); }
    RecordScope(const RecordScope&) = delete;
    RecordScope& operator=(const RecordScope&) = delete;

    /// Waits until \p line is on the record: some thread has entered that operation. False when it is not
    /// there after 20 s.
    bool waitFor(const std::string& line) const
    {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        for (; std::chrono::steady_clock::now() < deadline; std::this_thread::yield()) {
            const auto lines = ovra::reference::Journal::lines();
            if (std::find(lines.begin(), lines.end(), line) != lines.end())
                return true;
        }
        return false;
    }
};
