/// \file
/// The platform's loader of modules: the few functions that SharedLibrary and the installation directory
/// stand on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace ovra::templates::platform {

/// Why openModule failed.
struct ModuleError
{
    std::uint32_t number = 0; ///< the platform's last-error number
    std::string text;         ///< the platform's words for it
};

/// Loads the module at \p path with all its symbols resolved and its own symbols kept to itself. Null on
/// failure, with \p error filled in.
void* openModule(const std::string& path, ModuleError& error);

void closeModule(void* module);

/// Null when the module does not export \p name.
void* locateSymbol(void* module, const char* name);

/// Path of the module that \p address lies in, into \p buffer with a closing zero. Returns its length; 0 on
/// failure, \p size when the buffer is too small.
std::size_t moduleFileName(const void* address, char* buffer, std::size_t size);

/// True when the process is being taken down with its other threads already gone, so that a call into another
/// module could wait for one of them for ever.
bool processIsEnding();

} // namespace ovra::templates::platform
