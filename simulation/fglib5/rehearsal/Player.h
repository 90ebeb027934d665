// SPDX-License-Identifier: MIT
/// \file
/// Player: plays a scenario, step after step.
#pragma once

#include "rehearsal/Scenario.h"

#include "fglib5/Fglib5Types.h"

#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

namespace simulation {

/// The process has one, which is never destroyed. Any thread except those of the runtime itself.
class Player
{
public:
    static Player& instance();

    /// Ends the current scenario and starts this one.
    void play(Scenario scenario);
    void stop();
    /// The steps performed so far, one per line, and the step that it waits for.
    std::string report() const;

private:
    using Clock = std::chrono::steady_clock;

    void endThread();
    void run();
    bool timeHasCome(std::unique_lock<std::mutex>& lock);
    void performNext();
    static void imageArrived(unsigned int board, int dma, FgFrameIndex frame);
    void takeImage(unsigned int board, int dma, FgFrameIndex frame);
    const TimedStep& next() const { return m_scenario.steps[m_position]; }
    bool atEnd() const { return m_position == m_scenario.steps.size(); }

    std::mutex m_control; ///< one start or stop at a time; taken before m_mutex

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    Scenario m_scenario;
    std::size_t m_position = 0; ///< of the next step; after the last one: the round is over
    std::uint64_t m_round = 0;  ///< current round, from 1; 0: none yet
    bool m_stopping = false;
    bool m_playing = false;    ///< the scenario's thread runs
    Clock::time_point m_start; ///< of the round
    Clock::time_point m_last;  ///< time of the last step
    std::vector<std::string> m_done;
};

} // namespace simulation
