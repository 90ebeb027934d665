/// \file
/// FrameCycle: what a DMA channel writes for a film, rendered once, so that an image costs one copy.
#pragma once

#include "pictures/Processing.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

namespace simulation {

/// Safe from any thread.
class FrameCycle
{
public:
    /// Renders nothing yet: each image is rendered when it is first written. Cycles asked for of late are
    /// kept: a second channel that does the same, or a channel that starts again, renders nothing.
    static std::shared_ptr<const FrameCycle> of(const std::shared_ptr<const Film>& film,
                                                const Processing& processing);

    FrameCycle(std::shared_ptr<const Film> film, const Processing& processing);

    /// Writes image \p number (from 0) as a DMA channel does: the pixels of the image as one stream, cut into
    /// lines of the channel's width. What the image does not fill is black, what does not fit is dropped. A
    /// film's image carries its number (from 1) in the upper left corner, if it is large enough.
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
    const Processing m_processing; ///< of a scrolling film: as high as the film
    const int m_height;            ///< of the channel's images
    const ToneCurve m_curve;
    const std::size_t m_bytes;
    const bool m_kept; ///< the images are: all of them are not too many bytes
    const std::unique_ptr<Image[]> m_images;
};

} // namespace simulation
