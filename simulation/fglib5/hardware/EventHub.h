// SPDX-License-Identifier: MIT
/// \file
/// EventHub: the events of one board handle.
///
/// The hub records an event while it is activated. The event wakes one Fg_eventWait that waits for it, and
/// the hub's own thread calls the callbacks registered for it. Waiters and callbacks both see each event.
#pragma once

#include "fglib5/Fglib5Types.h"

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace simulation {

class EventHub
{
public:
    explicit EventHub(std::vector<std::string> names);
    ~EventHub();
    EventHub(const EventHub&) = delete;
    EventHub& operator=(const EventHub&) = delete;

    int count() const { return static_cast<int>(m_names.size()); }
    /// 0 for an unknown name.
    std::uint64_t maskOf(const std::string& name) const;
    /// Name of the lowest event in \p mask; null if there is none.
    const char* nameOf(std::uint64_t mask) const;

    /// Nanoseconds since the board was initialised: the board's clock.
    std::uint64_t clockNs() const;

    /// Costs one branch while none of the events is activated.
    void raise(std::uint64_t mask, FgFrameIndex frame);

    void activate(std::uint64_t mask, bool on);
    void clear(std::uint64_t mask);
    /// Waits for events of \p mask; returns and clears those that have happened. Throws FG_TIMEOUT.
    std::uint64_t wait(std::uint64_t mask, std::chrono::milliseconds timeout, FgEventInfo* info);
    /// A null callback unregisters. When this returns, the old callback is not running (unless it made this
    /// call).
    void setCallback(std::uint64_t mask, FgEventCallback callback, void* userData);

    /// Wakes all waiters and ends the callbacks for good. Throws FG_INVALID_ARGUMENT if a callback calls it.
    void close();
    /// Like close, but does not wait for callbacks; waiters fail with FG_DEVICE_LOST.
    void lose();

private:
    struct Callback
    {
        std::uint64_t mask;
        FgEventCallback function;
        void* userData;
    };

    void run();
    void end();
    void record(std::uint64_t event, FgFrameIndex frame);
    FgEventInfo takeQueued();

    const std::vector<std::string> m_names;
    const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    std::atomic<std::uint64_t> m_active{0};

    std::mutex m_mutex;
    std::condition_variable m_happened; ///< for waiters
    std::condition_variable m_arrived;  ///< for the thread
    std::condition_variable m_idle;     ///< for threads that unregister
    std::uint64_t m_pending = 0;
    std::array<FgEventInfo, 64> m_latest{};
    /// A ring, allocated with the first callback, so that events allocate nothing.
    std::vector<FgEventInfo> m_queue;
    std::size_t m_firstQueued = 0;
    std::size_t m_queued = 0;
    std::array<std::size_t, 64> m_queuedOfKind{};
    unsigned int m_dropped = 0;
    std::shared_ptr<const std::vector<Callback>> m_callbacks; ///< replaced, never changed
    bool m_calling = false;
    std::uint64_t m_calls = 0; ///< number of the running call; queued events follow in the next one at once
    bool m_closed = false;
    bool m_lost = false;
    std::thread m_thread;
};

} // namespace simulation
