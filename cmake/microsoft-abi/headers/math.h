// SPDX-License-Identifier: MIT
// Around mingw-w64's header: the classification templates for C++ that Microsoft's header has.
#pragma once
#include_next <math.h>
// mingw-w64 takes them from objects of its own.
#undef INFINITY
#undef NAN
#undef HUGE_VAL
#undef HUGE_VALF
#undef HUGE_VALL
#define INFINITY __builtin_inff()
#define NAN __builtin_nanf("")
#define HUGE_VAL __builtin_inf()
#define HUGE_VALF __builtin_inff()
#define HUGE_VALL __builtin_infl()
#ifdef __cplusplus
#undef isfinite
#undef isinf
#undef isnan
#undef isnormal
#undef isgreater
#undef isgreaterequal
#undef isless
#undef islessequal
#undef islessgreater
#undef isunordered
extern "C++" {
template <class T>
inline bool isfinite(T x) noexcept
{
    return __builtin_isfinite(static_cast<double>(x));
}
template <class T>
inline bool isinf(T x) noexcept
{
    return __builtin_isinf(static_cast<double>(x));
}
template <class T>
inline bool isnan(T x) noexcept
{
    return __builtin_isnan(static_cast<double>(x));
}
template <class T>
inline bool isnormal(T x) noexcept
{
    return __builtin_isnormal(static_cast<double>(x));
}
template <class A, class B>
inline bool isgreater(A a, B b) noexcept
{
    return a > b;
}
template <class A, class B>
inline bool isgreaterequal(A a, B b) noexcept
{
    return a >= b;
}
template <class A, class B>
inline bool isless(A a, B b) noexcept
{
    return a < b;
}
template <class A, class B>
inline bool islessequal(A a, B b) noexcept
{
    return a <= b;
}
template <class A, class B>
inline bool islessgreater(A a, B b) noexcept
{
    return a < b || a > b;
}
template <class A, class B>
inline bool isunordered(A a, B b) noexcept
{
    return a != a || b != b;
}
}
#endif
