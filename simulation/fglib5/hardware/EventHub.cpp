// SPDX-License-Identifier: MIT
#include "hardware/EventHub.h"

#include "Failure.h"

#include <bit>
#include <utility>

namespace simulation {

namespace {

// Maximum number of queued events of one kind. Further ones are dropped and counted, so that a flood of one
// kind neither grows the queue nor displaces other events.
constexpr std::size_t MAX_QUEUED_OF_A_KIND = 256;

} // namespace

EventHub::EventHub(std::vector<std::string> names)
    : m_names(std::move(names)),
      m_callbacks(std::make_shared<const std::vector<Callback>>())
{}

EventHub::~EventHub()
{
    end();
}

std::uint64_t EventHub::maskOf(const std::string& name) const
{
    for (std::size_t i = 0; i < m_names.size(); ++i)
        if (m_names[i] == name)
            return std::uint64_t{1} << i;
    return 0;
}

const char* EventHub::nameOf(std::uint64_t mask) const
{
    const auto lowest = static_cast<std::size_t>(std::countr_zero(mask));
    return lowest < m_names.size() ? m_names[lowest].c_str() : nullptr;
}

std::uint64_t EventHub::clockNs() const
{
    const std::chrono::nanoseconds age = std::chrono::steady_clock::now() - m_start;
    return static_cast<std::uint64_t>(age.count());
}

void EventHub::raise(std::uint64_t mask, FgFrameIndex frame)
{
    if ((m_active.load(std::memory_order_relaxed) & mask) == 0)
        return;
    {
        const std::lock_guard lock(m_mutex);
        const auto events = mask & m_active.load(std::memory_order_relaxed);
        if (m_closed || events == 0)
            return;
        record(events, frame);
    }
    m_happened.notify_all();
    m_arrived.notify_one();
}

void EventHub::record(std::uint64_t event, FgFrameIndex frame)
{
    FgEventInfo info{};
    info.mask = event;
    info.timestampNs = clockNs();
    info.frame = frame;
    m_pending |= event;
    const auto kind = static_cast<std::size_t>(std::countr_zero(event));
    m_latest[kind] = info;
    if (m_callbacks->empty())
        return;
    if (m_queuedOfKind[kind] == MAX_QUEUED_OF_A_KIND) {
        ++m_dropped;
        return;
    }
    info.droppedEvents = std::exchange(m_dropped, 0U);
    m_queue[(m_firstQueued + m_queued) % m_queue.size()] = info;
    ++m_queued;
    ++m_queuedOfKind[kind];
}

FgEventInfo EventHub::takeQueued()
{
    const auto info = m_queue[m_firstQueued];
    m_firstQueued = (m_firstQueued + 1) % m_queue.size();
    --m_queued;
    --m_queuedOfKind[static_cast<std::size_t>(std::countr_zero(info.mask))];
    return info;
}

void EventHub::activate(std::uint64_t mask, bool on)
{
    const std::lock_guard lock(m_mutex);
    const auto active = m_active.load();
    m_active = on ? active | mask : active & ~mask;
}

void EventHub::clear(std::uint64_t mask)
{
    const std::lock_guard lock(m_mutex);
    m_pending &= ~mask;
}

std::uint64_t EventHub::wait(std::uint64_t mask, std::chrono::milliseconds timeout, FgEventInfo* info)
{
    std::unique_lock lock(m_mutex);
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    m_happened.wait_until(lock, deadline, [&] { return m_closed || (m_pending & mask) != 0; });
    if (m_lost)
        throw Failure(FG_DEVICE_LOST, descriptionOf(FG_DEVICE_LOST));
    if (m_closed)
        throw Failure(FG_INVALID_HANDLE, "The board was freed while an event was waited for");
    const auto events = m_pending & mask;
    if (events == 0)
        throw Failure(FG_TIMEOUT, "No event within " + std::to_string(timeout.count()) + " ms");
    m_pending &= ~events;
    if (info != nullptr)
        *info = m_latest[static_cast<std::size_t>(std::countr_zero(events))];
    return events;
}

void EventHub::setCallback(std::uint64_t mask, FgEventCallback callback, void* userData)
{
    std::unique_lock lock(m_mutex);
    if (m_closed)
        throw Failure(FG_INVALID_HANDLE, "The board has been freed");
    auto callbacks = *m_callbacks;
    for (auto& registered : callbacks)
        registered.mask &= ~mask;
    std::erase_if(callbacks, [](const Callback& registered) { return registered.mask == 0; });
    if (callback != nullptr) {
        callbacks.push_back({mask, callback, userData});
        m_queue.resize(m_names.size() * MAX_QUEUED_OF_A_KIND);
        if (!m_thread.joinable())
            m_thread = std::thread([this] { run(); });
    }
    m_callbacks = std::make_shared<const std::vector<Callback>>(std::move(callbacks));
    if (std::this_thread::get_id() != m_thread.get_id())
        m_idle.wait(lock, [this, current = m_calls] { return !m_calling || m_calls != current; });
}

void EventHub::run()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_arrived.wait(lock, [&] { return m_closed || m_queued > 0; });
        if (m_closed)
            return;
        const auto info = takeQueued();
        const auto callbacks = m_callbacks;
        m_calling = true;
        ++m_calls;
        lock.unlock();
        for (const auto& callback : *callbacks)
            if ((callback.mask & info.mask) != 0)
                callback.function(info.mask, callback.userData, &info);
        lock.lock();
        m_calling = false;
        m_idle.notify_all();
    }
}

void EventHub::lose()
{
    {
        const std::lock_guard lock(m_mutex);
        m_closed = true;
        m_lost = true;
    }
    m_happened.notify_all();
    m_arrived.notify_all();
}

void EventHub::close()
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_thread.get_id() == std::this_thread::get_id())
            throw Failure(FG_INVALID_ARGUMENT, "A board cannot be freed from within its event callback");
    }
    end();
}

void EventHub::end()
{
    {
        const std::lock_guard lock(m_mutex);
        m_closed = true;
    }
    m_happened.notify_all();
    m_arrived.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

} // namespace simulation
