// SPDX-License-Identifier: MIT
#include "Platform.h"

#include <windows.h>

namespace simulation::platform {

std::filesystem::path ownModule()
{
    HMODULE module = nullptr;
    const DWORD flags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (GetModuleHandleExW(flags, reinterpret_cast<LPCWSTR>(&ownModule), &module) == 0)
        return {};
    std::wstring path(32768, L'\0'); // the longest path on Windows
    path.resize(GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

std::string libraryEnding()
{
    return ".dll";
}

void* openLibrary(const std::filesystem::path& file)
{
    return LoadLibraryW(std::filesystem::absolute(file).c_str());
}

void* findSymbol(void* library, const char* name)
{
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

void closeLibrary(void* library)
{
    FreeLibrary(static_cast<HMODULE>(library));
}

unsigned long processId()
{
    return GetCurrentProcessId();
}

} // namespace simulation::platform
