// SPDX-License-Identifier: MIT
#include "platform/Paths.h"

namespace ovra::templates::platform {

const char DIRECTORY_SEPARATOR = '\\';

std::string runtimeLibraryPath(const std::string& installation, const std::string& baseName)
{
    return installation + "\\bin\\" + baseName + ".dll";
}

} // namespace ovra::templates::platform
