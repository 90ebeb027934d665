// SPDX-License-Identifier: MIT
#include "Platform.h"

#include <dlfcn.h>
#include <unistd.h>

namespace simulation::platform {

std::filesystem::path ownModule()
{
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&ownModule), &info) == 0)
        return {};
    return std::filesystem::absolute(info.dli_fname).lexically_normal();
}

std::string libraryEnding()
{
    return ".so";
}

void* openLibrary(const std::filesystem::path& file)
{
    // An absolute path: the loader would search the system's folders for a bare name.
    return dlopen(std::filesystem::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL);
}

void* findSymbol(void* library, const char* name)
{
    return dlsym(library, name);
}

void closeLibrary(void* library)
{
    dlclose(library);
}

unsigned long processId()
{
    return static_cast<unsigned long>(getpid());
}

} // namespace simulation::platform
