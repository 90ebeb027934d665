// SPDX-License-Identifier: MIT
#include "WorkQueue.h"

#include "ovra_log/reference/Log.h"

#include <algorithm>
#include <utility>

namespace ovra::reference {

namespace {
// Interval at which pumpUntil checks a condition that no queued work changes.
constexpr std::chrono::milliseconds LOOK_INTERVAL{5};

// What is in the queue stays there, whatever the front end throws.
void call(const std::function<void()>& wakeUp) noexcept
{
    try {
        if (wakeUp)
            wakeUp();
    } catch (...) {
        log(LogLevel::Error, "The front end's wake-up failed");
    }
}

} // namespace

class WorkQueue::RestAnnounced
{
public:
    explicit RestAnnounced(WorkQueue& queue) : m_queue(queue) {}
    ~RestAnnounced()
    {
        m_queue.announceRest(); // must not throw: an exception from the work may be propagating
    }
    RestAnnounced(const RestAnnounced&) = delete;
    RestAnnounced& operator=(const RestAnnounced&) = delete;

private:
    WorkQueue& m_queue;
};

void WorkQueue::post(Work work)
{
    std::function<void()> wakeUp;
    {
        const std::lock_guard lock(m_mutex);
        if (m_closed)
            return;
        m_work.push_back(std::move(work));
        if (!m_waiting)
            wakeUp = m_wakeUp;
        m_changed.notify_all();
    }
    call(wakeUp);
}

void WorkQueue::setWakeUpCallback(std::function<void()> callback)
{
    const std::lock_guard lock(m_mutex);
    m_wakeUp.swap(callback);
}

void WorkQueue::quit()
{
    const std::lock_guard lock(m_mutex);
    m_quit = true;
    m_changed.notify_all();
}

void WorkQueue::exec()
{
    const RestAnnounced announced(*this);
    while (const auto work = takeUnlessQuit())
        (*work)();
}

void WorkQueue::processEvents()
{
    std::size_t remaining = 0;
    {
        const std::lock_guard lock(m_mutex);
        remaining = m_work.size();
    }
    // Work that this work queues waits for the next call, so that a front end's own loop can run in between.
    for (; remaining > 0; --remaining) {
        const auto work = takeNow();
        if (!work)
            return;
        (*work)();
    }
}

bool WorkQueue::pumpUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit)
{
    const RestAnnounced announced(*this);
    const auto deadline = Clock::now() + limit;
    while (!condition()) {
        const auto now = Clock::now();
        if (now >= deadline)
            return false;
        if (const auto work = takeUntil(std::min(deadline, now + LOOK_INTERVAL)))
            (*work)();
    }
    return true;
}

void WorkQueue::close()
{
    std::deque<Work> dropped;
    std::function<void()> wakeUp;
    const std::lock_guard lock(m_mutex);
    m_closed = true;
    dropped.swap(m_work);
    wakeUp.swap(m_wakeUp);
}

std::optional<WorkQueue::Work> WorkQueue::takeUnlessQuit()
{
    std::unique_lock lock(m_mutex);
    m_waiting = true;
    m_changed.wait(lock, [this] { return m_quit || !m_work.empty(); });
    m_waiting = false;
    if (std::exchange(m_quit, false))
        return std::nullopt;
    return pop();
}

std::optional<WorkQueue::Work> WorkQueue::takeUntil(Clock::time_point deadline)
{
    std::unique_lock lock(m_mutex);
    m_waiting = true;
    m_changed.wait_until(lock, deadline, [this] { return !m_work.empty(); });
    m_waiting = false;
    return pop();
}

std::optional<WorkQueue::Work> WorkQueue::takeNow()
{
    const std::lock_guard lock(m_mutex);
    return pop();
}

std::optional<WorkQueue::Work> WorkQueue::pop()
{
    if (m_work.empty())
        return std::nullopt;
    std::optional<Work> work(std::move(m_work.front()));
    m_work.pop_front();
    return work;
}

// While the loop waits, post() does not call the wake-up callback. If the loop then ends with work in the
// queue, it has to call it.
void WorkQueue::announceRest()
{
    std::function<void()> wakeUp;
    {
        const std::lock_guard lock(m_mutex);
        if (!m_work.empty())
            wakeUp = m_wakeUp;
    }
    call(wakeUp);
}

} // namespace ovra::reference
