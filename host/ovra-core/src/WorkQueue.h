// SPDX-License-Identifier: MIT
/// \file
/// WorkQueue: work for the GUI thread, in the order in which it arrives.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>

namespace ovra::reference {

/// Constructed on the GUI thread, which runs and destroys the work outside the lock.
class WorkQueue
{
public:
    using Work = std::function<void()>;
    using Clock = std::chrono::steady_clock;

    /// Any thread. After close() the work is dropped.
    void post(Work work);
    void setWakeUpCallback(std::function<void()> callback);
    /// Any thread. Ends the running exec(), or the next one.
    void quit();

    // GUI thread.
    void exec();
    void processEvents();
    bool pumpUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit);
    /// Drops queued and future work.
    void close();

private:
    /// Waits for work; empty after quit().
    std::optional<Work> takeUnlessQuit();
    std::optional<Work> takeUntil(Clock::time_point deadline);
    std::optional<Work> takeNow();
    std::optional<Work> pop(); // under the lock
    void announceRest();
    /// Calls announceRest() at the end of a scope, also after an exception.
    class RestAnnounced;

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Work> m_work;
    std::function<void()> m_wakeUp;
    bool m_waiting = false; // the GUI thread waits for work
    bool m_quit = false;
    bool m_closed = false;
};

} // namespace ovra::reference
