// SPDX-License-Identifier: MIT
/// \file
/// Conversion of numbers to the texts that configuration files and messages contain.
#pragma once

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string>

namespace simulation {

/// A double holds every integer up to this one exactly.
inline constexpr double EXACT_INTEGERS = 9007199254740992.0;

/// The shortest text that reads back as the same number; without an exponent for whole numbers.
inline std::string numberText(double number)
{
    if (std::trunc(number) == number && std::abs(number) < EXACT_INTEGERS)
        return std::to_string(static_cast<std::int64_t>(number));
    std::array<char, 32> digits{};
    auto* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    return {digits.data(), end};
}

} // namespace simulation
