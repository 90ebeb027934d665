// SPDX-License-Identifier: MIT
#include "fglib/RuntimeLibrary.h"

#include "fglib/InstallationDirectory.h"
#include "platform/Paths.h"
#include "platform/SharedLibrary.h"

namespace ovra::gui::fglib {

std::unique_ptr<SharedLibrary> openRuntimeLibrary(const char* baseName, const char* directory)
{
    if (!directory)
        directory = getInstallationDirectory();
    if (!directory)
        return nullptr;
    constexpr bool FREE_ON_DESTRUCTION = false;
    auto library = std::make_unique<SharedLibrary>(
        templates::platform::runtimeLibraryPath(directory, baseName), FREE_ON_DESTRUCTION);
    if (!library->load())
        return nullptr;
    return library;
}

} // namespace ovra::gui::fglib
