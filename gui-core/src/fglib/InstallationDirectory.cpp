// SPDX-License-Identifier: MIT
#include "fglib/InstallationDirectory.h"

#include "fglib/InstallationPath.h"
#include "platform/Module.h"
#include "platform/Paths.h"
#include "platform/SpinLockVariableGuard.h"

#include <atomic>
#include <cstdlib>

namespace ovra::gui::fglib {

using templates::platform::DIRECTORY_SEPARATOR;
using templates::platform::SpinLockVariableGuard;

namespace {

constexpr std::size_t DIRECTORY_BYTES = 1024;

char directory[DIRECTORY_BYTES];
bool resolved = false;
std::atomic<std::int32_t> resolutionLock{0};

bool resolveFromOwnLocation()
{
    // The buffer lies in this library, so its address finds the library's file.
    const std::size_t length = templates::platform::moduleFileName(directory, directory, DIRECTORY_BYTES);
    return length > 0 && length < DIRECTORY_BYTES && cutToInstallation(directory, DIRECTORY_SEPARATOR);
}

bool resolveFromEnvironment()
{
    // Read once, under the lock; nothing in the process writes these two variables.
    const char* value = std::getenv("OVRADIR5_64"); // NOLINT(concurrency-mt-unsafe)
    if (!value)
        value = std::getenv("OVRADIR5"); // NOLINT(concurrency-mt-unsafe)
    if (!value)
        return false;
    copyDirectory(value, directory, DIRECTORY_BYTES, DIRECTORY_SEPARATOR);
    return true;
}

} // namespace

const char* getInstallationDirectory()
{
    const SpinLockVariableGuard guard(&resolutionLock);
    if (!resolved)
        resolved = resolveFromOwnLocation() || resolveFromEnvironment();
    return resolved ? directory : nullptr;
}

} // namespace ovra::gui::fglib
