/// \file
/// Reading the pixels of an Image of any format, for front ends.
///
///   unpackGrey    one sample a pixel
///   unpackRgb     three samples a pixel, at the format's depth
///   unpackRgb8    three bytes a pixel, for a screen
///
/// All write line after line without padding into a vector that grows where it must, so that one that is kept
/// from image to image costs no allocation. They do not block, and are safe from any thread as long as the
/// image's buffer stays as it is. A Bayer image's missing colours are interpolated from the neighbours.
#pragma once

#include "ovra-lib-display/FrameBufferGroup.h"

#include <cstdint>
#include <vector>

namespace ovra::display {

/// Samples of describe(image.format).significantBits bits. A Bayer image keeps its mosaic; of a colour image
/// the luminance.
OVRA_DISPLAY_API void unpackGrey(const Image& image, std::vector<std::uint16_t>& samples);

/// Red, green, blue, each of describe(image.format).significantBits bits.
OVRA_DISPLAY_API void unpackRgb(const Image& image, std::vector<std::uint16_t>& samples);

/// Red, green, blue; of deeper formats the highest 8 bits.
OVRA_DISPLAY_API void unpackRgb8(const Image& image, std::vector<std::uint8_t>& samples);

} // namespace ovra::display
