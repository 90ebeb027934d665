// SPDX-License-Identifier: MIT
/// \file
/// Test patterns of a DMA channel's generator and of cameras.
#pragma once

#include <string_view>

namespace simulation {

/// Both move to the left from image to image.
enum class Pattern
{
    Ramp, ///< diagonal: (x + y) modulo the number of grey values. In colour: red along x, green along y, blue
          ///< along both
    Checkerboard, ///< fields of 32 x 32 pixels, 24 and 224 of 255
};

constexpr Pattern patternNamed(std::string_view name)
{
    return name == "ramp" ? Pattern::Ramp : Pattern::Checkerboard;
}

} // namespace simulation
