/// \file
/// What differs in paths from platform to platform.
#pragma once

#include <string>

namespace ovra::templates::platform {

/// Stands between folders.
extern const char DIRECTORY_SEPARATOR;

/// Where a runtime library of that name lies below an installation directory.
std::string runtimeLibraryPath(const std::string& installation, const std::string& baseName);

} // namespace ovra::templates::platform
