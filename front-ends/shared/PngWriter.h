// SPDX-License-Identifier: MIT
/// \file
/// Encodes images as PNG.
#pragma once

#include "ovra-lib-display/FrameBufferGroup.h"

#include <cstdint>
#include <span>
#include <string>

namespace ovra::frontend {

/// Encodes \p image as a PNG file: grey or RGB; a Bayer mosaic becomes RGB. 8 bits per sample if the format
/// has 8, else 16; a sample of fewer bits occupies the highest of the 16. Any thread.
///
/// \throws std::runtime_error  for an image without pixels
std::string encodePng(const display::Image& image);

/// The samples of an image line by line without gaps, 1 (grey) or 3 (RGB) a pixel.
struct PngSamples
{
    int width, height, components;
    int bits;                             ///< significant ones of a sample
    std::span<const std::uint8_t> bytes;  ///< the samples of 8 bits
    std::span<const std::uint16_t> words; ///< those of 9 to 16
};

/// The same of \p samples.
std::string encodePng(const PngSamples& samples);

} // namespace ovra::frontend
