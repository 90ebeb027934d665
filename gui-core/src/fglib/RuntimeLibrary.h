// SPDX-License-Identifier: MIT
/// \file
/// Opens the libraries that are found at run time in the installation's "bin".
#pragma once

#include <memory>

class SharedLibrary;

namespace ovra::gui::fglib {

/// Loads the library with that base name ("fglib5") from \p directory, or from the installation directory
/// when it is null. The module stays loaded when the result is destroyed. Null when no directory is known or
/// the file cannot be loaded.
std::unique_ptr<SharedLibrary> openRuntimeLibrary(const char* baseName, const char* directory);

} // namespace ovra::gui::fglib
