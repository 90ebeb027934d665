// SPDX-License-Identifier: MIT
#include "FolderMonitor.h"

#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/Log.h"

#include <chrono>
#include <exception>
#include <string>

namespace ovra::core {

namespace {
// Polling is portable, and this interval is short enough for a user who copies a file and watches the screen.
constexpr std::chrono::milliseconds INTERVAL{250};
} // namespace

FolderMonitor::FolderMonitor(std::function<void()> look) : m_look(std::move(look)) {}

FolderMonitor::~FolderMonitor()
{
    stop();
}

void FolderMonitor::start()
{
    const std::lock_guard control(m_control);
    if (m_thread.joinable())
        return;
    m_ends = false;
    m_thread = std::thread([this] { run(); });
}

void FolderMonitor::stop()
{
    const std::lock_guard control(m_control);
    if (!m_thread.joinable())
        return;
    {
        const std::lock_guard lock(m_mutex);
        m_ends = true;
        m_ending.notify_all();
    }
    m_thread.join();
}

void FolderMonitor::wake()
{
    const std::lock_guard lock(m_mutex);
    m_woken = true;
    m_ending.notify_all();
}

void FolderMonitor::run()
{
    const reference::Unrecorded own;
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_ending.wait_for(lock, INTERVAL, [this] { return m_ends || m_woken; });
        if (m_ends)
            return;
        m_woken = false;
        lock.unlock();
        lookOnce();
        lock.lock();
    }
}

void FolderMonitor::lookOnce() const
{
    try {
        m_look();
    } catch (const std::exception& error) {
        reference::log(reference::LogLevel::Error,
                       std::string("Applet folders could not be looked at: ") + error.what());
    } catch (...) {
        reference::log(reference::LogLevel::Error, "Applet folders could not be looked at");
    }
}

} // namespace ovra::core
