/// \file
/// Ticker: calls a function again and again.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace ovra::viewer {

/// \p tick is called on a thread of its own until the ticker is destroyed.
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
