// SPDX-License-Identifier: MIT
/// \file
/// Block letters of 5 x 7 dots.
#pragma once

#include <array>
#include <cstdint>

namespace simulation {

inline constexpr int BLOCK_LETTER_COLUMNS = 5;
inline constexpr int BLOCK_LETTER_ROWS = 7;

/// One letter, a byte per row from the top; bit 4 is the leftmost dot.
using BlockLetter = std::array<std::uint8_t, BLOCK_LETTER_ROWS>;

/// A-Z, 0-9, - . and /; anything else is a blank.
BlockLetter blockLetter(char letter);

constexpr bool blockLetterDot(const BlockLetter& letter, int column, int row)
{
    return ((letter[static_cast<std::size_t>(row)] >> (BLOCK_LETTER_COLUMNS - 1 - column)) & 1) != 0;
}

} // namespace simulation
