// SPDX-License-Identifier: MIT
/// \file
/// ImageMessage: an image on its way to a browser. Bytes as the page's `image-message.js` reads them; all
/// numbers with the low byte first.
///
///   | at | bytes | what                                                       |
///   |----|-------|------------------------------------------------------------|
///   | 0  | 4     | "OVIM"                                                     |
///   | 4  | 2     | version, 1                                                 |
///   | 6  | 2     | size of this header, 64                                    |
///   | 8  | 4     | channel                                                    |
///   | 12 | 2     | significant bits of a sample                               |
///   | 14 | 1     | bytes of a sample                                          |
///   | 15 | 1     | components of a pixel                                      |
///   | 16 | 8     | number of the image, a float64                             |
///   | 24 | 8     | width and height of the whole image                        |
///   | 32 | 16    | region of it that follows: x, y, width, height             |
///   | 48 | 8     | width and height in which it follows                       |
///   | 56 | 4     | binning: how many pixels of the image make one, both ways  |
///   | 60 | 4     | view, as the page named it                                 |
///   | 64 |       | pixels, row by row, without padding                        |
#pragma once

#include "images/ImageView.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace ovra::viewer {

inline constexpr std::size_t IMAGE_HEADER_SIZE = 64;

/// Its parts are sent one after the other. Whole lines of a frame are not copied: the message refers to the
/// frame.
class ImageMessage
{
public:
    using Header = std::array<std::uint8_t, IMAGE_HEADER_SIZE>;

    /// Reuses the memory of the message that it replaces.
    void write(std::uint32_t channel, std::uint32_t viewName, const std::shared_ptr<const Frame>& frame,
               const ImageView& view);

    const Header& header() const { return m_header; }
    std::span<const std::uint8_t> pixels() const { return m_pixels; }

    /// Gives the frame back. pixels() is no longer valid.
    void release() { m_frame.reset(); }

private:
    void writeHeader(std::uint32_t channel, std::uint32_t viewName, const Frame& frame,
                     const ImageView& view);

    Header m_header{};
    std::span<const std::uint8_t> m_pixels;
    std::vector<std::uint8_t> m_copy;
    std::shared_ptr<const Frame> m_frame;
};

} // namespace ovra::viewer
