// SPDX-License-Identifier: MIT
#include "hardware/Notifier.h"

#include "Failure.h"

#include <algorithm>

namespace simulation {

Notifier& Notifier::instance()
{
    static auto* notifier = new Notifier; // never destroyed: its thread runs until the process ends
    return *notifier;
}

void Notifier::add(FgNotifyCallback callback, void* userData)
{
    if (callback == nullptr)
        throw Failure(FG_INVALID_ARGUMENT, "The argument callback is missing");
    const std::lock_guard lock(m_mutex);
    if (m_threadId == std::thread::id()) {
        std::thread thread([this] { run(); });
        m_threadId = thread.get_id();
        thread.detach();
    }
    m_clients.push_back({callback, userData});
}

void Notifier::remove(FgNotifyCallback callback, void* userData)
{
    std::unique_lock lock(m_mutex);
    const auto found = std::ranges::find(m_clients, Client{callback, userData});
    if (found == m_clients.end())
        throw Failure(FG_INVALID_ARGUMENT, "This callback is not registered");
    m_clients.erase(found);
    if (std::this_thread::get_id() != m_threadId)
        m_idle.wait(lock, [this] { return !m_calling; });
}

void Notifier::notify(unsigned int board, unsigned int notification, std::uint64_t argument)
{
    const std::lock_guard lock(m_mutex);
    if (m_clients.empty())
        return;
    m_queue.push_back({board, notification, argument});
    m_arrived.notify_one();
}

void Notifier::run()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_arrived.wait(lock, [this] { return !m_queue.empty(); });
        const auto next = m_queue.front();
        m_queue.pop_front();
        const auto clients = m_clients;
        m_calling = true;
        lock.unlock();
        for (const auto& client : clients)
            client.callback(static_cast<int>(next.board), next.what, next.argument, client.userData);
        lock.lock();
        m_calling = false;
        m_idle.notify_all();
    }
}

} // namespace simulation
