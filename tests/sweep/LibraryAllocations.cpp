// SPDX-License-Identifier: MIT
#include "LibraryAllocations.h"

#include <array>
#include <atomic>
#include <cstdlib>
#include <new>
#include <string_view>

#include <execinfo.h>
#include <link.h>
#include <unistd.h>
#include <unwind.h>

namespace ovra::tests {

namespace {

/// The code of one module.
struct Code
{
    std::string_view name;
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;

    bool contains(std::uintptr_t address) const { return address >= begin && address < end; }
};

Code library{"/libovra-lib-gui-core.so"};
Code standardLibrary{"/libstdc++.so.6"};

constinit std::atomic<bool> counting{false};
constinit std::atomic<std::uint64_t> allocations{0};
constinit std::atomic<std::uint64_t> failing{0};

std::array<void*, 24> place;
int placeDepth = 0;

int findCode(dl_phdr_info* module, std::size_t, void*)
{
    for (Code* code : {&library, &standardLibrary}) {
        if (std::string_view(module->dlpi_name).find(code->name) ==
            std::string_view::npos) // a version may follow
            continue;
        for (int i = 0; i < module->dlpi_phnum; ++i) {
            const auto& segment = module->dlpi_phdr[i];
            if (segment.p_type != PT_LOAD || !(segment.p_flags & PF_X))
                continue;
            code->begin = module->dlpi_addr + segment.p_vaddr;
            code->end = code->begin + segment.p_memsz;
        }
    }
    return 0;
}

struct Walk
{
    std::uintptr_t from;
    bool begun = false;
    std::uintptr_t asker = 0;
};

/// Walks up from the standard library's frames to their caller.
_Unwind_Reason_Code step(_Unwind_Context* frame, void* data)
{
    auto& walk = *static_cast<Walk*>(data);
    const std::uintptr_t address = _Unwind_GetIP(frame);
    walk.begun = walk.begun || address == walk.from;
    if (!walk.begun || standardLibrary.contains(address))
        return _URC_NO_REASON;
    walk.asker = address;
    return _URC_NORMAL_STOP;
}

bool asksTheLibrary(std::uintptr_t caller)
{
    if (!standardLibrary.contains(caller))
        return library.contains(caller);
    Walk walk{caller};
    _Unwind_Backtrace(&step, &walk);
    return library.contains(walk.asker);
}

bool fails(void* caller)
{
    if (!counting.load(std::memory_order_relaxed) ||
        !asksTheLibrary(reinterpret_cast<std::uintptr_t>(caller)) || ++allocations != failing)
        return false;
    placeDepth = backtrace(place.data(), static_cast<int>(place.size()));
    return true;
}

void* allocate(std::size_t size, std::size_t alignment, void* caller)
{
    if (fails(caller))
        return nullptr;
    if (size == 0)
        size = 1;
    if (alignment <= __STDCPP_DEFAULT_NEW_ALIGNMENT__)
        return std::malloc(size);
    return std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
}

void* require(void* memory)
{
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

} // namespace

void LibraryAllocations::failAt(std::uint64_t nth)
{
    dl_iterate_phdr(&findCode, nullptr);
    backtrace(place.data(), 1); // loads its library now, not during an allocation
    allocations = 0;
    failing = nth;
    counting = true;
}

void LibraryAllocations::stop()
{
    counting = false;
}

std::uint64_t LibraryAllocations::count()
{
    return allocations;
}

void LibraryAllocations::printPlace()
{
    backtrace_symbols_fd(place.data(), placeDepth, STDOUT_FILENO);
}

} // namespace ovra::tests

using ovra::tests::allocate;
using ovra::tests::require;

#define CALLER __builtin_return_address(0)
constexpr std::size_t ORDINARY = 0;

// clang-format off
void* operator new(std::size_t size) { return require(allocate(size, ORDINARY, CALLER)); }
void* operator new[](std::size_t size) { return require(allocate(size, ORDINARY, CALLER)); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size, ORDINARY, CALLER); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size, ORDINARY, CALLER); }
void* operator new(std::size_t size, std::align_val_t a) { return require(allocate(size, std::size_t(a), CALLER)); }
void* operator new[](std::size_t size, std::align_val_t a) { return require(allocate(size, std::size_t(a), CALLER)); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }
// clang-format on
