// SPDX-License-Identifier: MIT
/// \file
/// Reading the pixels of an Image of any format, for front ends.
///
///   unpackGrey    one sample a pixel
///   unpackRgb     three samples a pixel, at the format's depth
///   unpackRgb8    three bytes a pixel, for a screen
///
/// All write line after line without padding into a vector and resize it; keep the vector from image to image
/// to avoid allocations. They do not block, and may be called from any thread while the image's buffer does
/// not change. They interpolate the missing colours of a Bayer image from the neighbours.
///
/// \code
/// void showImage(const display::Image& image) override
/// {
///     display::unpackRgb8(image, m_pixels); // pixel (x, y) begins at (y * image.width + x) * 3
/// }
/// \endcode
#pragma once

#include "ovra-lib-display/FrameBufferGroup.h"

#include <cstdint>
#include <vector>

namespace ovra::display {

/// Grey samples of describe(image.format).significantBits bits. A colour image gives its luminance, a Bayer
/// image its raw mosaic.
OVRA_DISPLAY_API void unpackGrey(const Image& image, std::vector<std::uint16_t>& samples);

/// Red, green, blue, each of describe(image.format).significantBits bits.
OVRA_DISPLAY_API void unpackRgb(const Image& image, std::vector<std::uint16_t>& samples);

/// Red, green, blue, 8 bits each; the highest 8 bits of a deeper format.
OVRA_DISPLAY_API void unpackRgb8(const Image& image, std::vector<std::uint8_t>& samples);

} // namespace ovra::display
