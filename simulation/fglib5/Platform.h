// SPDX-License-Identifier: MIT
/// \file
/// Functions that differ between the platforms. CMake chooses the source.
#pragma once

#include <filesystem>
#include <string>

namespace simulation::platform {

/// Full path of the module that contains this code.
std::filesystem::path ownModule();

/// Suffix of shared libraries, with its dot.
std::string libraryEnding();

/// Null if it cannot be opened.
void* openLibrary(const std::filesystem::path& file);
void* findSymbol(void* library, const char* name);
void closeLibrary(void* library);

unsigned long processId();

} // namespace simulation::platform
