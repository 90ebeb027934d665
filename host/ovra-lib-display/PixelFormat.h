// SPDX-License-Identifier: MIT
/// \file
/// PixelFormat: how the pixels of an image lie in memory.
///
///   PixelFormat              the formats
///   PixelFormatDescription   name, bits and components of a format; describe() returns it
///   pixelFormatOf            the format of a number
///   bytesPerLine             size of a line in memory
///
/// | format           | bits per pixel | a pixel in memory                                     |
/// |------------------|----------------|-------------------------------------------------------|
/// | Mono8            | 8              | a byte                                                |
/// | Mono10 to Mono16 | 16             | a word, low byte first; the low 10 to 16 bits count   |
/// | Mono10Packed     | 10             | 10 bits; the first pixel has the lowest bits          |
/// | Mono12Packed     | 12             | 12 bits; the first pixel has the lowest bits          |
/// | Rgb8, Bgr8       | 24             | three bytes in this order                             |
/// | Bgra8            | 32             | four bytes in this order; the fourth is 255           |
/// | Bayer..8         | 8              | a byte of one colour                                  |
/// | Bayer..12        | 16             | a word of one colour, like Mono12                     |
///
/// The name of a Bayer format gives the colours of the first two pixels of the first line; in BayerRg they
/// are red and green. The second line has the other two, green and blue.
#pragma once

#include "ovra-lib-display/Export.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace ovra::display {

/// The numbers are the values of the runtime's parameter FG_PIXELFORMAT.
enum class PixelFormat : std::int32_t
{
    Mono8 = 8,
    Mono10 = 10,
    Mono12 = 12,
    Mono14 = 14,
    Mono16 = 16,
    Rgb8 = 24,
    Bgr8 = 25,
    Bgra8 = 32,
    Mono10Packed = 110,
    Mono12Packed = 112,
    BayerRg8 = 208,
    BayerGr8 = 218,
    BayerGb8 = 228,
    BayerBg8 = 238,
    BayerRg12 = 212,
    BayerGr12 = 222,
    BayerGb12 = 232,
    BayerBg12 = 242,
};

struct PixelFormatDescription
{
    PixelFormat format;
    const char* name;    ///< as in the enumeration
    int bitsPerPixel;    ///< in memory, unused bits included
    int significantBits; ///< of one component
    int components;      ///< 1 (grey, Bayer), 3 or 4
    /// Position of the red pixel in the upper left 2 x 2 pixels: 0 upper left, 1 upper right, 2 lower left, 3
    /// lower right; -1 for other formats than Bayer.
    int redAt;
};

OVRA_DISPLAY_API const PixelFormatDescription& describe(PixelFormat format);
/// std::nullopt for an unknown number.
OVRA_DISPLAY_API std::optional<PixelFormat> pixelFormatOf(int number);
/// Number of bytes of a line of \p width pixels. Each line begins at a whole byte.
OVRA_DISPLAY_API std::size_t bytesPerLine(PixelFormat format, int width);

} // namespace ovra::display
