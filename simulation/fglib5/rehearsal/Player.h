/// \file
/// Player: plays a scenario, step after step.
#pragma once

#include "rehearsal/Scenario.h"

#include "fglib5/Fglib5Types.h"

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace simulation {

/// One for the process, never destroyed. Any thread but those of the runtime itself.
class Player
{
public:
    static Player& instance();

    /// Ends the scenario that is being played, and begins another.
    void play(Scenario scenario);
    void stop();
    /// What has been done, a line each, and what it waits for.
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
    std::thread m_thread;

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    Scenario m_scenario;
    std::size_t m_position = 0; ///< of the next step; behind the last one: it has been played
    std::uint64_t m_round = 0;  ///< that is being played, from 1; 0: none was yet
    bool m_stopping = false;
    Clock::time_point m_start; ///< of the round
    Clock::time_point m_last;  ///< when the last step was performed
    std::vector<std::string> m_done;
};

} // namespace simulation
