// SPDX-License-Identifier: MIT
#include "platform/Module.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <dlfcn.h>
#include <link.h>

namespace ovra::templates::platform {

void* openModule(const std::string& path, ModuleError& error)
{
    errno = 0;
    void* module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!module) {
        // The loader reports failures as text; not each has a number.
        error.number = errno != 0 ? static_cast<std::uint32_t>(errno) : static_cast<std::uint32_t>(ENOENT);
        const char* text = dlerror(); // of this thread, NOLINT(concurrency-mt-unsafe)
        error.text = text ? text : "";
    }
    return module;
}

void closeModule(void* module)
{
    dlclose(module);
}

void* locateSymbol(void* module, const char* name)
{
    return dlsym(module, name);
}

std::size_t moduleFileName(const void* address, char* buffer, std::size_t size)
{
    Dl_info info{};
    void* extra = nullptr;
    if (dladdr1(address, &info, &extra, RTLD_DL_LINKMAP) == 0 || !info.dli_fname)
        return 0;
    // The program itself, whose name is empty there, cannot be opened and needs no pin.
    const bool isProgram = static_cast<const link_map*>(extra)->l_name[0] == '\0';
    if (!isProgram && !dlopen(info.dli_fname, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE))
        return 0;
    // The loader keeps the path as given, relative or with "..": only the real path contains the folders
    // above.
    const std::unique_ptr<char, decltype(&std::free)> path(realpath(info.dli_fname, nullptr), &std::free);
    if (!path)
        return 0;
    const std::size_t length = std::strlen(path.get());
    if (length >= size)
        return size;
    std::memcpy(buffer, path.get(), length + 1);
    return length;
}

} // namespace ovra::templates::platform
