// SPDX-License-Identifier: MIT
// Around mingw-w64's header: the overloads for C++ that Microsoft's header has.
#pragma once
#include_next <wchar.h>
#ifdef __cplusplus
extern "C++" {
inline wchar_t* wcschr(wchar_t* s, wchar_t c)
{
    return const_cast<wchar_t*>(wcschr(static_cast<const wchar_t*>(s), c));
}
inline wchar_t* wcsrchr(wchar_t* s, wchar_t c)
{
    return const_cast<wchar_t*>(wcsrchr(static_cast<const wchar_t*>(s), c));
}
inline wchar_t* wcspbrk(wchar_t* s, const wchar_t* set)
{
    return const_cast<wchar_t*>(wcspbrk(static_cast<const wchar_t*>(s), set));
}
inline wchar_t* wcsstr(wchar_t* s, const wchar_t* t)
{
    return const_cast<wchar_t*>(wcsstr(static_cast<const wchar_t*>(s), t));
}
}
#endif
