/// \file
/// Test patterns of a DMA channel's generator.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace simulation {

enum class Pattern
{
    Ramp,         ///< diagonal grey ramp: grey value (x + y + shift) modulo 256
    Checkerboard, ///< fields of 32 x 32 pixels
};

Pattern patternNamed(std::string_view name);

/// Image \p image of a cycle of \p count; the pattern travels once round the cycle.
std::vector<std::uint8_t> drawPattern(Pattern pattern, int width, int height, int image, int count);

} // namespace simulation
