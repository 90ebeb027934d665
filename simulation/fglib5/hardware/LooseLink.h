// SPDX-License-Identifier: MIT
/// \file
/// LooseLink: the loose cable of a camera port, which damages some images.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <span>

namespace simulation {

/// Only the seed and the image's number decide which images are damaged, so a rehearsal can be repeated.
struct LooseLink
{
    enum class Damage
    {
        Lost,
        Torn,
        Late
    };

    /// Delay of a late image.
    static constexpr std::chrono::milliseconds LATENESS{100};

    Damage damage;
    std::uint64_t oneIn; ///< one image in so many, on average; 1: every image
    std::uint64_t seed;

    /// \p image counts from 0.
    bool damages(std::uint64_t image) const
    {
        // The first number of a random generator seeded for each image, so that neighbours are independent.
        std::uint64_t mixed = seed + (image + 1) * 0x9e3779b97f4a7c15U;
        mixed = (mixed ^ (mixed >> 30)) * 0xbf58476d1ce4e5b9U;
        mixed = (mixed ^ (mixed >> 27)) * 0x94d049bb133111ebU;
        return (mixed ^ (mixed >> 31)) % oneIn == 0;
    }

    /// The lower half of the image slips sideways, as after missing words on the line.
    static void tear(std::span<std::uint8_t> image)
    {
        const auto half = image.subspan(image.size() / 2);
        std::rotate(half.begin(), half.begin() + static_cast<std::ptrdiff_t>(half.size() / 7), half.end());
    }
};

} // namespace simulation
