/// \file
/// Encodes images as PNG.
#pragma once

#include "ovra-lib-display/FrameBufferGroup.h"

#include <string>

namespace ovra::frontend {

/// Encodes \p image as a PNG file: grey or RGB; a Bayer mosaic becomes RGB. 8 bits per sample if the format
/// has 8, else 16; a sample of fewer bits occupies the highest of the 16. Any thread.
///
/// \throws std::runtime_error  for an image without pixels
std::string encodePng(const display::Image& image);

} // namespace ovra::frontend
