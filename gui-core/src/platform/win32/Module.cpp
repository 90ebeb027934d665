// SPDX-License-Identifier: MIT
#include "platform/Module.h"

#include <windows.h>

namespace ovra::templates::platform {

namespace {

std::string describe(DWORD number)
{
    char text[512] = {};
    DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, number,
                                  0, text, sizeof(text), nullptr);
    while (length > 0 && (text[length - 1] == '\n' || text[length - 1] == '\r'))
        --length;
    return {text, length};
}

} // namespace

void* openModule(const std::string& path, ModuleError& error)
{
    HMODULE module = LoadLibraryA(path.c_str());
    if (!module) {
        error.number = GetLastError();
        error.text = describe(error.number);
    }
    return module;
}

void closeModule(void* module)
{
    FreeLibrary(static_cast<HMODULE>(module));
}

void* locateSymbol(void* module, const char* name)
{
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(module), name));
}

std::size_t moduleFileName(const void* address, char* buffer, std::size_t size)
{
    HMODULE module = nullptr;
    if (!GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, static_cast<LPCSTR>(address), &module))
        return 0;
    return GetModuleFileNameA(module, buffer, static_cast<DWORD>(size));
}

} // namespace ovra::templates::platform
