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

#include <cstdint>
#include <vector>

namespace ovra::viewer {

inline constexpr std::size_t IMAGE_HEADER_SIZE = 64;

/// Writes the message into \p message, reusing its memory.
void writeImageMessage(std::uint32_t channel, std::uint32_t viewName, const Frame& frame,
                       const ImageView& view, std::vector<std::uint8_t>& message);

} // namespace ovra::viewer
