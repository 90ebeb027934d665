/// \file
/// PixelFormat: how the pixels of an image lie in memory.
///
///   PixelFormat, PixelFormatDescription   the formats, and what is to be known about each
///   describe, pixelFormatOf, bytesPerLine
///
/// | format           | bits a pixel | a pixel is |
/// |------------------|--------------|-----------------------------------------------------------------------|
/// | Mono8            | 8            | a byte | | Mono10 to Mono16 | 16           | a word, low byte first;
/// the low 10, 12, 14 or 16 bits are used        | | Mono10Packed     | 10           | bit by bit behind the
/// one before, which has the lower bits of a byte  | | Mono12Packed     | 12           | likewise | | Rgb8,
/// Bgr8       | 24           | three bytes in this order                                             | |
/// Bgra8            | 32           | four bytes; the fourth is 255                                         |
/// | Bayer..8         | 8            | a byte: one colour. The name says those of the first two pixels | |
/// Bayer..12        | 16           | a word as with Mono12: one colour                                     |
///
/// In a Bayer format the second line has the two colours that the first line lacks: BayerRg starts with
/// red green / green blue.
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
    int bitsPerPixel;    ///< in memory, those that are not used included
    int significantBits; ///< of one component
    int components;      ///< 1 (grey, Bayer), 3 or 4
    /// Place of the red pixel among the first two of the first two lines: 0 first line left, 1 first line
    /// right, 2 second line left, 3 second line right; -1 for a format that is no Bayer one.
    int redAt;
};

OVRA_DISPLAY_API const PixelFormatDescription& describe(PixelFormat format);
/// None for a number that is no format.
OVRA_DISPLAY_API std::optional<PixelFormat> pixelFormatOf(int number);
/// A line begins with a whole byte.
OVRA_DISPLAY_API std::size_t bytesPerLine(PixelFormat format, int width);

} // namespace ovra::display
