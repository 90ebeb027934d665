// SPDX-License-Identifier: MIT
/// \file
/// Notifier: notifies clients when boards, cameras and links are plugged or unplugged.
#pragma once

#include "fglib5/Fglib5Types.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace simulation {

/// The process has one, which is never destroyed. Its own thread, which the first registration starts, calls
/// the callbacks, one notification after the other.
class Notifier
{
public:
    static Notifier& instance();

    void add(FgNotifyCallback callback, void* userData);
    /// When this returns, the callback is not running (unless it made this call). Throws FG_INVALID_ARGUMENT
    /// if it is not registered.
    void remove(FgNotifyCallback callback, void* userData);
    /// Any thread; does not wait.
    void notify(unsigned int board, unsigned int notification, std::uint64_t argument);

private:
    struct Client
    {
        FgNotifyCallback callback;
        void* userData;
        bool operator==(const Client&) const = default;
    };
    struct Notification
    {
        unsigned int board;
        unsigned int what;
        std::uint64_t argument;
    };

    void run();

    std::mutex m_mutex;
    std::condition_variable m_arrived;
    std::condition_variable m_idle;
    std::vector<Client> m_clients;
    std::deque<Notification> m_queue;
    bool m_calling = false;
    std::thread::id m_threadId;
};

} // namespace simulation
