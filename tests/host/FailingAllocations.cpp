// SPDX-License-Identifier: MIT
#include "FailingAllocations.h"

#include <cstdlib>
#include <new>

namespace ovra::tests {

thread_local int allocationsUntilFailure = 0;

} // namespace ovra::tests

using ovra::tests::allocationsUntilFailure;

namespace {

void* allocate(std::size_t size) noexcept
{
    if (allocationsUntilFailure > 0 && --allocationsUntilFailure == 0)
        return nullptr;
    return std::malloc(size > 0 ? size : 1);
}

void* require(void* memory)
{
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

} // namespace

// clang-format off
void* operator new(std::size_t size) { return require(allocate(size)); }
void* operator new[](std::size_t size) { return require(allocate(size)); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
// clang-format on
