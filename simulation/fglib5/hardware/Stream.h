// SPDX-License-Identifier: MIT
/// \file
/// Stream: the images that a camera or a generator sends, and their times.
#pragma once

#include "pictures/Film.h"

#include <chrono>
#include <cstdint>
#include <limits>
#include <memory>

namespace simulation {

/// The current output of a source. A stream with another start time is a new start; otherwise only the
/// picture has changed.
struct Stream
{
    std::shared_ptr<const Film> film;
    double rate; ///< images per second, for a scrolling film lines per second; 0 = as fast as possible
    std::chrono::steady_clock::time_point start;
    std::uint64_t first = 0; ///< number of the image, or line, at the start
    std::uint64_t end = std::numeric_limits<std::uint64_t>::max(); ///< number after the last image
};

/// Trigger modes of a channel.
enum class TriggerMode
{
    FreeRun,
    Software, ///< one image for each trigger that a client sends
    External  ///< one image, or line, for each pulse of a light barrier or encoder
};

struct Trigger
{
    TriggerMode mode = TriggerMode::FreeRun;
    double rate = 0; ///< pulses per second of the external trigger; 0: paused

    bool operator==(const Trigger&) const = default;
};

} // namespace simulation
