// SPDX-License-Identifier: MIT
/// \file
/// FolderMonitor: a thread that calls a function periodically.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace ovra::core {

/// Any thread, but not from within the function itself.
class FolderMonitor
{
public:
    /// \p look runs on the monitor's thread; its exceptions are logged.
    explicit FolderMonitor(std::function<void()> look);
    ~FolderMonitor();

    /// No effect if it is running.
    void start();
    /// When it returns, the function is not running.
    void stop();
    /// If the monitor is running, calls the function soon. Does not wait.
    void wake();

private:
    void run();
    void lookOnce() const;

    const std::function<void()> m_look;
    std::mutex m_control; // held while the thread ends, at most for one call of the function
    std::thread m_thread;
    std::mutex m_mutex;
    std::condition_variable m_ending;
    bool m_ends = false;
    bool m_woken = false;
};

} // namespace ovra::core
