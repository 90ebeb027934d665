// SPDX-License-Identifier: MIT
/// \file
/// FrameCycle: a film rendered in a DMA channel's format, so that each image costs one copy.
#pragma once

#include "pictures/Processing.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

namespace simulation {

/// Any thread.
class FrameCycle
{
public:
    /// Renders each image when it is first written. A cache keeps recent cycles, so that a second channel
    /// with the same settings, or a channel that starts again, renders nothing.
    static std::shared_ptr<const FrameCycle> of(const std::shared_ptr<const Film>& film,
                                                const Processing& processing);

    FrameCycle(std::shared_ptr<const Film> film, const Processing& processing);

    /// Writes image \p number (from 0) like a DMA channel: the pixels of the image as one stream, cut into
    /// lines of the channel's width. Missing pixels are black, extra pixels are dropped. If a film's image is
    /// large enough, it shows its number (from 1) in the upper left corner.
    void write(std::uint64_t number, std::span<std::uint8_t> target) const;

    std::size_t bytes() const { return m_bytes; }

private:
    struct Image
    {
        std::once_flag rendered;
        std::vector<std::uint8_t> bytes;
    };

    const std::vector<std::uint8_t>& image(std::size_t position) const;
    void writeScrolling(std::uint64_t number, std::span<std::uint8_t> target) const;
    void stampNumber(std::uint64_t number, std::span<std::uint8_t> target) const;
    void fill(std::span<std::uint8_t> target, int x, int y, int count,
              std::span<const std::uint16_t> samples) const;

    const std::shared_ptr<const Film> m_film;
    const Processing m_processing; ///< for a scrolling film: as high as the film
    const int m_height;            ///< of the channel's images
    const ToneCurve m_curve;
    const std::size_t m_bytes;
    const bool m_kept; ///< true if all images fit the cache
    const std::unique_ptr<Image[]> m_images;
};

} // namespace simulation
