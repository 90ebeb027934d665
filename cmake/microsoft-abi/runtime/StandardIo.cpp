// SPDX-License-Identifier: MIT
// What Microsoft's headers define inline over the exports of ucrtbase.dll, and mingw-w64's headers only
// declare.
#include <cstdarg>
#include <cstdint>
#include <io.h>
#include <stdio.h>
#include <stdlib.h>

extern "C" {
__declspec(dllimport) int __cdecl __stdio_common_vsprintf(unsigned long long, char*, size_t, const char*,
                                                          _locale_t, va_list);
__declspec(dllimport) int __cdecl __stdio_common_vsscanf(unsigned long long, const char*, size_t, const char*,
                                                         _locale_t, va_list);
__declspec(dllimport) int __cdecl __stdio_common_vfprintf(unsigned long long, FILE*, const char*, _locale_t,
                                                          va_list);

int __cdecl vsnprintf(char* buffer, size_t size, const char* format, va_list list)
{
    const int n =
        __stdio_common_vsprintf(2, buffer, size, format, nullptr, list); // 2: as the C standard has it
    return n < 0 ? -1 : n;
}
int __cdecl snprintf(char* buffer, size_t size, const char* format, ...)
{
    va_list list;
    va_start(list, format);
    const int n = vsnprintf(buffer, size, format, list);
    va_end(list);
    return n;
}
int __cdecl vfprintf(FILE* file, const char* format, va_list list)
{
    return __stdio_common_vfprintf(0, file, format, nullptr, list);
}
int __cdecl fprintf(FILE* file, const char* format, ...)
{
    va_list list;
    va_start(list, format);
    const int n = vfprintf(file, format, list);
    va_end(list);
    return n;
}
int __cdecl vprintf(const char* format, va_list list)
{
    return vfprintf(stdout, format, list);
}
int __cdecl printf(const char* format, ...)
{
    va_list list;
    va_start(list, format);
    const int n = vfprintf(stdout, format, list);
    va_end(list);
    return n;
}
int __cdecl sscanf(const char* text, const char* format, ...)
{
    va_list list;
    va_start(list, format);
    const int n = __stdio_common_vsscanf(0, text, static_cast<size_t>(-1), format, nullptr, list);
    va_end(list);
    return n;
}
// Names without the underscore: Microsoft keeps them in oldnames.lib.
FILE* __cdecl fdopen(int file, const char* mode)
{
    return _fdopen(file, mode);
}
int __cdecl fileno(FILE* file)
{
    return _fileno(file);
}
int __cdecl read(int file, void* buffer, unsigned int bytes)
{
    return _read(file, buffer, bytes);
}
int __cdecl write(int file, const void* buffer, unsigned int bytes)
{
    return _write(file, buffer, bytes);
}
int __cdecl close(int file)
{
    return _close(file);
}
int __cdecl dup(int file)
{
    return _dup(file);
}
int __cdecl dup2(int file, int as)
{
    return _dup2(file, as);
}
int __cdecl creat(const char* path, int mode)
{
    return _creat(path, mode);
}

// GoogleTest is compiled with guards of the stack and with unsigned characters, which mingw-w64's headers
// then ask for.
uintptr_t __security_cookie = 0x00002B992DDFA232;
void __cdecl __security_check_cookie(uintptr_t cookie)
{
    if (cookie != __security_cookie)
        abort();
}
int __mingw_initcharmax = 0;
}
