/// \file
/// Writes images as PNG files.
#pragma once

#include "ImageKeeper.h"

#include <filesystem>

namespace ovra::console {

/// Writes \p image as an 8-bit grey PNG file. Throws std::runtime_error with the file's name when it cannot
/// be written.
void writePng(const std::filesystem::path& file, const StoredImage& image);

} // namespace ovra::console
