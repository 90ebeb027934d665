// SPDX-License-Identifier: MIT
/// \file
/// Scenario: the steps of a rehearsal and their times, read from a file.
///
///   # a comment
///   seed 7
///   at image 500 of board 0 DMA 0: unplug camera 0 0; after 2 s: plug camera 0 0
///   at 10 s: fault Fg_AcquireEx once
///   repeat 3
///
/// Steps run in the order of the file: "at image" when that image of the channel's current acquisition has
/// arrived, or the first one after it; "at" that time after the scenario's start; "after" that time after the
/// previous step. Times are in s or ms. "seed" applies to loose cables without a seed of their own. "repeat"
/// is the last line and plays everything so often; without a number, without end.
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
    unsigned int board = 0; ///< board of the image
    int dma = 0;
    std::int64_t image = 0;
    Step step;
    std::string text; ///< unchanged from the file
};

struct Scenario
{
    static constexpr std::uint64_t WITHOUT_END = 0;

    std::vector<TimedStep> steps;
    std::uint64_t rounds = 1;
};

/// Throws FG_INVALID_ARGUMENT with one line that names \p file, the line and the error.
Scenario readScenario(const std::string& file, std::string_view content);
/// Like readScenario; also throws FG_FILE_ERROR.
Scenario readScenarioFile(const std::filesystem::path& file);

} // namespace simulation
