// SPDX-License-Identifier: MIT
/// \file
/// Paths on the way to the installation directory. Nothing here asks the system.
#pragma once

#include <cstddef>

namespace ovra::gui::fglib {

/// Cuts the path of a file to the folder above the nearest folder that a product keeps its libraries in
/// ("bin", "dll", "Hardware Applets", "lib", "lib64", in any letter case). False when no such folder is above
/// the file; the text is then undefined.
bool cutToInstallation(char* path, char separator);

/// Copies a directory as a user wrote it into \p buffer of \p size bytes, cut to what fits, and without
/// separators at its end; a first character stays whatever it is.
void copyDirectory(const char* text, char* buffer, std::size_t size, char separator);

} // namespace ovra::gui::fglib
