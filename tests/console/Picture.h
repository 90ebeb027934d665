// SPDX-License-Identifier: MIT
/// \file
/// Picture: a PNG file, read with other code than what wrote it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ovra::tests {

/// Samples of 8 bits, row by row.
struct Picture
{
    int width = 0;
    int height = 0;
    int components = 0; ///< 1 grey, 3 colour
    std::vector<std::uint8_t> samples;

    /// How many different values its samples have.
    std::size_t values() const;
    double mean() const;
};

/// Samples of 16 bits are reduced to 8. Throws std::runtime_error.
Picture readPng(const std::string& bytes);

/// Mean difference between the samples of two pictures of equal size and kind; 255 for others.
double differenceOf(const Picture& left, const Picture& right);

} // namespace ovra::tests
