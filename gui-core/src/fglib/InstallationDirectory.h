/// \file
/// The installation directory: the folder whose "bin" holds the runtime libraries.
#pragma once

#include <cstddef>

namespace ovra::gui::fglib {

/// Found once per process: from the place of this library's own file, else from the environment variable
/// OVRADIR5_64, else from OVRADIR5. Without a closing separator. Null while it cannot be found; the next call
/// tries again.
///
/// Any thread. The text stays valid and unchanged for the life of the process.
const char* getInstallationDirectory();

/// Cuts the path of a file to the folder above the nearest folder that a product keeps its libraries in
/// ("bin", "dll", "Hardware Applets", "lib", "lib64", in any case). False when no such folder is above the
/// file; the text is then of no use.
bool cutToInstallation(char* path, char separator);

/// Copies a directory as a user wrote it into \p buffer of \p size bytes, cut to what fits, and without
/// separators at its end; a first character stays whatever it is.
void copyDirectory(const char* text, char* buffer, std::size_t size, char separator);

} // namespace ovra::gui::fglib
