/// \file
/// Encodes images as PNG.
#pragma once

#include "ovra-lib-display/FrameBufferGroup.h"

#include <string>

namespace ovra::frontend {

/// The bytes of a PNG file of \p image: grey or RGB, a Bayer mosaic as RGB. 8 bits a sample where the format
/// has 8, else 16, of which the highest are the format's own: shifted right by 16 minus their number, a
/// sample has its value again. Any thread. Throws std::runtime_error for an image without pixels.
std::string encodePng(const display::Image& image);

} // namespace ovra::frontend
