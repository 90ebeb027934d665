// SPDX-License-Identifier: MIT
// Around mingw-w64's header: the overloads for C++ that Microsoft's header has.
#pragma once
#include_next <string.h>
#ifdef __cplusplus
extern "C++" {
inline char* strchr(char* s, int c)
{
    return const_cast<char*>(strchr(static_cast<const char*>(s), c));
}
inline char* strrchr(char* s, int c)
{
    return const_cast<char*>(strrchr(static_cast<const char*>(s), c));
}
inline char* strpbrk(char* s, const char* set)
{
    return const_cast<char*>(strpbrk(static_cast<const char*>(s), set));
}
inline char* strstr(char* s, const char* t)
{
    return const_cast<char*>(strstr(static_cast<const char*>(s), t));
}
inline void* memchr(void* s, int c, size_t n)
{
    return const_cast<void*>(memchr(static_cast<const void*>(s), c, n));
}
}
#endif
