/// \file
/// Scenario: the steps of a rehearsal with the moments at which they come, as a file lists them.
///
///   # lines like this one are for people
///   seed 7
///   at image 500 of board 0 DMA 0: unplug camera 0 0; after 2 s: plug camera 0 0
///   at 10 s: fault Fg_AcquireEx once
///   repeat 3
///
/// Steps come one after the other, in the order of the file: "at image" with that image of the channel's
/// present acquisition, or the first one behind it; "at" so long after the scenario's start; "after" so long
/// after the step before. Times are in s or ms. The seed is that of cables which name none. "repeat", at the
/// end, plays everything so often; without a number without end.
#pragma once

#include "rehearsal/Step.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace simulation {

struct TimedStep
{
    enum class Moment
    {
        Image,
        SinceStart,
        SinceStep
    };

    Moment moment = Moment::SinceStart;
    std::chrono::milliseconds time{0};
    unsigned int board = 0; ///< of the image
    int dma = 0;
    std::int64_t image = 0;
    Step step;
    std::string text; ///< as it stands in the file
};

struct Scenario
{
    static constexpr std::uint64_t WITHOUT_END = 0;

    std::vector<TimedStep> steps;
    std::uint64_t rounds = 1;
};

/// Throws FG_INVALID_ARGUMENT with one line that names \p file, the line and what is wrong in it.
Scenario readScenario(const std::string& file, std::string_view content);
/// Throws FG_FILE_ERROR as well.
Scenario readScenarioFile(const std::filesystem::path& file);

} // namespace simulation
