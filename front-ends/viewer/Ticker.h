// SPDX-License-Identifier: MIT
/// \file
/// Ticker: calls a function at intervals.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace ovra::viewer {

/// Calls \p tick on its own thread until it is destroyed.
class Ticker
{
public:
    Ticker(std::chrono::milliseconds interval, std::function<void()> tick);
    ~Ticker();
    Ticker(const Ticker&) = delete;
    Ticker& operator=(const Ticker&) = delete;

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_ended = false;
    std::thread m_thread;
};

} // namespace ovra::viewer
