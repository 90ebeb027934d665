/// \file
/// Encodes images as PNG.
#pragma once

#include "ImageKeeper.h"

#include <string>

namespace ovra::frontend {

/// The bytes of an 8-bit grey PNG file of \p image, which is not empty.
std::string encodePng(const StoredImage& image);

} // namespace ovra::frontend
