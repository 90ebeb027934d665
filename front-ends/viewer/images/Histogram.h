// SPDX-License-Identifier: MIT
/// \file
/// Histogram: how often each grey value occurs in a whole image.
#pragma once

#include "images/ImageMailbox.h"

#include <array>
#include <cstdint>

namespace ovra::viewer {

struct Histogram
{
    static constexpr std::size_t BIN_COUNT = 256;

    std::int64_t image = 0;                      ///< number of the image
    std::array<std::uint32_t, BIN_COUNT> bins{}; ///< from 0 to the highest value, all samples
    unsigned highest = 255;                      ///< highest value that the layout can hold
    unsigned minimum = 0;
    unsigned maximum = 0;
    double mean = 0;
    unsigned dark = 0;   ///< 0.5 % of the samples are below
    unsigned bright = 0; ///< 0.5 % of the samples are above
};

Histogram measure(const Frame& frame);

} // namespace ovra::viewer
