// SPDX-License-Identifier: MIT
// Stand-in for the header of this name: allocation functions. They are linked into each module, not imported.
#pragma once
#include <vcruntime_exception.h>

namespace std {
struct nothrow_t
{
    explicit nothrow_t() = default;
};
extern nothrow_t const nothrow;
enum class align_val_t : size_t
{
};
} // namespace std

[[nodiscard]] void* __cdecl operator new(size_t size);
[[nodiscard]] void* __cdecl operator new(size_t size, std::nothrow_t const&) noexcept;
[[nodiscard]] void* __cdecl operator new[](size_t size);
[[nodiscard]] void* __cdecl operator new[](size_t size, std::nothrow_t const&) noexcept;
void __cdecl operator delete(void* block) noexcept;
void __cdecl operator delete(void* block, std::nothrow_t const&) noexcept;
void __cdecl operator delete(void* block, size_t size) noexcept;
void __cdecl operator delete[](void* block) noexcept;
void __cdecl operator delete[](void* block, std::nothrow_t const&) noexcept;
void __cdecl operator delete[](void* block, size_t size) noexcept;
[[nodiscard]] void* __cdecl operator new(size_t size, std::align_val_t);
[[nodiscard]] void* __cdecl operator new(size_t size, std::align_val_t, std::nothrow_t const&) noexcept;
[[nodiscard]] void* __cdecl operator new[](size_t size, std::align_val_t);
[[nodiscard]] void* __cdecl operator new[](size_t size, std::align_val_t, std::nothrow_t const&) noexcept;
void __cdecl operator delete(void* block, std::align_val_t) noexcept;
void __cdecl operator delete(void* block, std::align_val_t, std::nothrow_t const&) noexcept;
void __cdecl operator delete(void* block, size_t size, std::align_val_t) noexcept;
void __cdecl operator delete[](void* block, std::align_val_t) noexcept;
void __cdecl operator delete[](void* block, std::align_val_t, std::nothrow_t const&) noexcept;
void __cdecl operator delete[](void* block, size_t size, std::align_val_t) noexcept;

[[nodiscard]] inline void* __cdecl operator new(size_t, void* place) noexcept
{
    return place;
}
inline void __cdecl operator delete(void*, void*) noexcept {}
[[nodiscard]] inline void* __cdecl operator new[](size_t, void* place) noexcept
{
    return place;
}
inline void __cdecl operator delete[](void*, void*) noexcept {}
