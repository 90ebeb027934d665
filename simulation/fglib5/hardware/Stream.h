/// \file
/// What a camera or a generator sends, and when.
#pragma once

#include "pictures/Film.h"

#include <chrono>
#include <cstdint>
#include <limits>
#include <memory>

namespace simulation {

/// What a source sends at present. One of another start is a new start; else only the picture has changed.
struct Stream
{
    std::shared_ptr<const Film> film;
    double rate; ///< images per second, of a scrolling film lines; 0 = as fast as possible
    std::chrono::steady_clock::time_point start;
    std::uint64_t first = 0; ///< number of the image, or line, at the start
    std::uint64_t end =
        std::numeric_limits<std::uint64_t>::max(); ///< number of the image that there is no more
};

/// What a channel's images wait for beside their source.
enum class TriggerMode
{
    FreeRun,
    Software, ///< one image for each trigger that a client sends
    External  ///< one image, or line, for each pulse of a light barrier or encoder
};

struct Trigger
{
    TriggerMode mode = TriggerMode::FreeRun;
    double rate = 0; ///< pulses per second of the external one; 0: it pauses

    bool operator==(const Trigger&) const = default;
};

} // namespace simulation
