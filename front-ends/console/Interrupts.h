// SPDX-License-Identifier: MIT
/// \file
/// Interrupts: Ctrl-C and other signals, as requests to end the command or the session.
#pragma once

#include "front-ends/shared/Process.h"

#include <atomic>
#include <functional>
#include <mutex>

namespace ovra::console {

/// Any thread.
class Interrupts
{
public:
    /// At a terminal the first Ctrl-C ends the command that waits, and another one before the next line ends
    /// the session. Without a terminal the first Ctrl-C ends the session; other signals always do. Once the
    /// session is to end, a further signal ends the program at once.
    explicit Interrupts(bool atTerminal);

    /// Handles a signal.
    void handle(frontend::Signal signal);

    /// True if the command that waits has to end.
    bool commandEnds() const;
    bool sessionEnds() const;

    /// Number of Ctrl-C that still count.
    int pending() const;
    /// Drops \p count of them, which came before the line that was read.
    void forget(int count);

    /// Sets a function that is called for each signal, on the signal's thread; empty: none. When this
    /// returns, the previous function is not running.
    void setWakeUp(std::function<void()> wakeUp);

private:
    const bool m_atTerminal;
    std::atomic<int> m_pending{0};
    std::atomic<bool> m_sessionEnds{false};
    std::mutex m_mutex;
    std::function<void()> m_wakeUp;
};

} // namespace ovra::console
