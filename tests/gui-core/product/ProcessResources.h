// SPDX-License-Identifier: MIT
/// \file
/// ProcessResources: memory, handles and threads of this process, for tests that look for leaks.
#pragma once

#include <string>

namespace ovra::tests {

struct ProcessResources
{
    long long memory;  ///< bytes: resident on POSIX, committed on Windows
    long long handles; ///< descriptors on POSIX, kernel handles on Windows
    long long threads; ///< one that has just ended may still be among them
};

ProcessResources processResources();

/// Whether this process has loaded that file as a library.
bool isOpenLibrary(const std::string& path);

/// Maximum number of handles that appear late: a lock may get its handle when threads first compete for it.
extern const long long LATE_HANDLES;

} // namespace ovra::tests
