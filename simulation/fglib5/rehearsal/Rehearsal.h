// SPDX-License-Identifier: MIT
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

/// The process has one, which is never destroyed. Any thread, including those of channels and events.
class Rehearsal
{
public:
    static Rehearsal& instance();

    /// Performs \p step. Returns its answer, in lines that end with a line feed; "" for most steps. Throws
    /// FG_INVALID_ARGUMENT and FG_INVALID_BOARD_NUMBER for a port or a board that the machine does not have.
    std::string perform(const Step& step);

private:
    std::string busyText();
    void keepBusy(std::uint64_t threads);

    std::mutex m_mutex;
    std::vector<std::thread> m_busy;
    std::atomic<bool> m_busyEnds{false};
};

} // namespace simulation
