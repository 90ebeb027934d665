/// \file
/// Rehearsal: performs the steps of rehearsals on the virtual machine.
#pragma once

#include "rehearsal/Step.h"

#include <atomic>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace simulation {

/// One for the process, never destroyed. Any thread, also one of a channel or of events.
class Rehearsal
{
public:
    static Rehearsal& instance();

    /// What the step answers, lines with a line feed each; "" for most. Throws FG_INVALID_ARGUMENT and
    /// FG_INVALID_BOARD_NUMBER for a board or a port that the machine does not have.
    std::string perform(const Step& step);

private:
    void keepBusy(std::uint64_t threads);

    std::mutex m_mutex;
    std::vector<std::thread> m_busy;
    std::atomic<bool> m_busyEnds{false};
};

} // namespace simulation
