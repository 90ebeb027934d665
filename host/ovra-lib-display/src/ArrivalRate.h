// SPDX-License-Identifier: MIT
/// \file
/// ArrivalRate: how many images and bytes arrived within the last second.
#pragma once

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>

namespace ovra::display {

/// Counts in slices of a fiftieth of a second, so an image costs an addition. For one thread at a time.
class ArrivalRate
{
public:
    using Clock = std::chrono::steady_clock;

    struct PerSecond
    {
        double images = 0;
        double bytes = 0;
    };

    /// Resets all counts.
    void restart(Clock::time_point now)
    {
        m_slices = {};
        m_start = now;
    }

    void add(std::int64_t images, std::int64_t bytes, Clock::time_point now)
    {
        const auto index = sliceOf(now);
        Slice& slice = m_slices[static_cast<std::size_t>(index % COUNT)];
        if (slice.index != index)
            slice = {.index = index, .images = 0, .bytes = 0};
        slice.images += images;
        slice.bytes += bytes;
    }

    PerSecond perSecond(Clock::time_point now) const
    {
        const auto newest = sliceOf(now);
        double images = 0, bytes = 0;
        for (const auto& slice : m_slices) {
            if (slice.index <= newest - COUNT)
                continue;
            images += static_cast<double>(slice.images);
            bytes += static_cast<double>(slice.bytes);
        }
        // The oldest slice that counts begins here. A younger acquisition is measured from its start.
        const auto begin = std::max(m_start, Clock::time_point(SLICE * (newest - COUNT + 1)));
        const std::chrono::duration<double> covered = std::max<Clock::duration>(now - begin, SHORTEST);
        return {images / covered.count(), bytes / covered.count()};
    }

private:
    static constexpr std::int64_t COUNT = 50;
    static constexpr std::chrono::milliseconds SLICE{20};
    // A first image that arrives at once does not mean a thousand images a second.
    static constexpr std::chrono::milliseconds SHORTEST{100};

    struct Slice
    {
        std::int64_t index = -COUNT;
        std::int64_t images = 0;
        std::int64_t bytes = 0;
    };

    static std::int64_t sliceOf(Clock::time_point time) { return time.time_since_epoch() / SLICE; }

    std::array<Slice, COUNT> m_slices{};
    Clock::time_point m_start;
};

} // namespace ovra::display
