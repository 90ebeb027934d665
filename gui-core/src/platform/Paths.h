// SPDX-License-Identifier: MIT
/// \file
/// What differs in paths from platform to platform.
#pragma once

#include <string>

namespace ovra::templates::platform {

/// Separates folders.
extern const char DIRECTORY_SEPARATOR;

/// Path of the runtime library with that base name below an installation directory.
std::string runtimeLibraryPath(const std::string& installation, const std::string& baseName);

} // namespace ovra::templates::platform
