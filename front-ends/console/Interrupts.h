/// \file
/// Interrupts: what the user wants to end.
#pragma once

#include "front-ends/shared/Process.h"

#include <atomic>
#include <functional>
#include <mutex>

namespace ovra::console {

/// Safe from any thread.
class Interrupts
{
public:
    /// At a terminal the first Ctrl-C ends the command that waits, and another one before the next line ends
    /// the session. Without one, as with every other signal, the first ends the session. Where the session is
    /// to end already, a further signal ends the program at once.
    explicit Interrupts(bool atTerminal);

    /// Takes a signal.
    void handle(frontend::Signal signal);

    /// Whether what waits is to end.
    bool commandEnds() const;
    bool sessionEnds() const;

    /// How often Ctrl-C came that still counts.
    int pending() const;
    /// So many of them count no more: a line was read that began after them.
    void forget(int count);

    /// \p wakeUp is called, on the thread of the signal, for each signal from now on; empty: nothing is. When
    /// the call returns, the function before is no longer running.
    void setWakeUp(std::function<void()> wakeUp);

private:
    const bool m_atTerminal;
    std::atomic<int> m_pending{0};
    std::atomic<bool> m_sessionEnds{false};
    std::mutex m_mutex;
    std::function<void()> m_wakeUp;
};

} // namespace ovra::console
