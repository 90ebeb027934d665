/// \file
/// Reads PNG files with code of its own, not with what writes them.
#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace ovra::tests {

struct Picture
{
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels; ///< 8-bit grey, row by row

    /// Number of different grey values.
    int greyValues() const;
};

/// Throws std::runtime_error when \p file is no PNG file of one 8-bit component.
Picture readPng(const std::filesystem::path& file);

} // namespace ovra::tests
