// SPDX-License-Identifier: MIT
/// \file
/// The platform's module loader, as SharedLibrary and the installation directory use it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace ovra::templates::platform {

/// Why openModule failed.
struct ModuleError
{
    std::uint32_t number = 0; ///< the platform's last-error number
    std::string text;         ///< the platform's description of it
};

/// Loads the module at \p path, with all its symbols resolved and not visible to other modules. Null on
/// failure, with \p error filled in.
void* openModule(const std::string& path, ModuleError& error);

void closeModule(void* module);

/// Null when the module does not export \p name.
void* locateSymbol(void* module, const char* name);

/// Writes the path of the module that contains \p address into \p buffer with a closing zero. Returns its
/// length; 0 on failure, \p size when the buffer is too small. The module stays in the process from then on.
std::size_t moduleFileName(const void* address, char* buffer, std::size_t size);

} // namespace ovra::templates::platform
