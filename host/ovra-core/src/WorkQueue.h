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

/// Made on the GUI thread. Work is run, and destroyed, on that thread outside the lock.
class WorkQueue
{
public:
    using Work = std::function<void()>;
    using Clock = std::chrono::steady_clock;

    /// Any thread. Dropped after close().
    void post(Work work);
    void setWakeUpCallback(std::function<void()> callback);
    /// Any thread. Ends the exec() that runs, or the next one.
    void quit();

    // GUI thread.
    void exec();
    void processEvents();
    bool pumpUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit);
    /// Drops what is queued, and what comes.
    void close();

private:
    /// Waits without end; empty on quit().
    std::optional<Work> takeUnlessQuit();
    std::optional<Work> takeUntil(Clock::time_point deadline);
    std::optional<Work> takeNow();
    std::optional<Work> pop(); // under the lock
    void announceRest();
    /// Announces the rest at the end of a scope, however the scope ends.
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
