/// \file
/// What differs between the platforms. PlatformPosix.cpp or PlatformWin32.cpp, as CMake chooses.
#pragma once

#include <filesystem>
#include <string>

namespace simulation::platform {

/// Full path of the module that this code is part of.
std::filesystem::path ownModule();

/// Ending of shared libraries, with its dot.
std::string libraryEnding();

/// Null where it cannot be opened.
void* openLibrary(const std::filesystem::path& file);
void* findSymbol(void* library, const char* name);
void closeLibrary(void* library);

unsigned long processId();

} // namespace simulation::platform
