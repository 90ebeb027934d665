/// \file
/// FolderMonitor: a thread that looks again and again.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace ovra::core {

/// Safe from any thread, but not from \p look itself.
class FolderMonitor
{
public:
    /// \p look runs on the monitor's thread; what it throws is logged.
    explicit FolderMonitor(std::function<void()> look);
    ~FolderMonitor();

    /// Nothing when it runs already.
    void start();
    /// When it returns, nobody is looking.
    void stop();
    /// Lets it look at once, where it runs. From any thread, does not wait.
    void wake();

private:
    void run();
    void lookOnce() const;

    const std::function<void()> m_look;
    std::mutex m_control; // held while the thread ends, which takes no longer than one look
    std::thread m_thread;
    std::mutex m_mutex;
    std::condition_variable m_ending;
    bool m_ends = false;
    bool m_woken = false;
};

} // namespace ovra::core
