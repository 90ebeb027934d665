// SPDX-License-Identifier: MIT
// Around mingw-w64's header: the overloads for C++ that Microsoft's header has.
#pragma once
#include_next <stdlib.h>
#ifdef __cplusplus
extern "C" {
__declspec(noreturn) void __cdecl abort(void);
__declspec(noreturn) void __cdecl exit(int);
__declspec(noreturn) void __cdecl _exit(int);
__declspec(noreturn) void __cdecl _Exit(int);
__declspec(noreturn) void __cdecl quick_exit(int);
_CRTIMP float __cdecl _strtof_l(const char*, char**, _locale_t);
_CRTIMP long double __cdecl _strtold_l(const char*, char**, _locale_t);
_CRTIMP int __cdecl ___mb_cur_max_l_func(_locale_t);
}
extern "C++" {
inline long abs(long x) noexcept
{
    return labs(x);
}
inline long long abs(long long x) noexcept
{
    return llabs(x);
}
inline ldiv_t div(long a, long b) noexcept
{
    return ldiv(a, b);
}
inline lldiv_t div(long long a, long long b) noexcept
{
    return lldiv(a, b);
}
}
#endif
