// SPDX-License-Identifier: MIT
// Throws again what an exception pointer holds, as Microsoft's msvcp140.dll does: a copy. Wine's throws the
// pointer's own object, which the unwinding destroys where the pointer is a local variable.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <malloc.h>

#include <windows.h>

// What the compiler describes a thrown object by. Numbers of 32 bits are offsets from the module's begin.
struct CatchableType
{
    std::uint32_t flags;
    std::uint32_t type;
    std::int32_t displacements[3];
    std::uint32_t size;
    std::uint32_t copy;
};

struct ThrowInfo
{
    std::uint32_t flags;
    std::uint32_t destructor;
    std::uint32_t forwardHandler;
    std::uint32_t catchableTypes; // a number, and as many offsets, the object's own type first
};

extern "C" __declspec(noreturn) __declspec(dllimport) void __stdcall _CxxThrowException(void*, ThrowInfo*);

[[noreturn]] static void __cdecl rethrow(const void* pointer)
{
    constexpr DWORD CPP_EXCEPTION = 0xE06D7363;
    EXCEPTION_RECORD* const record = *static_cast<EXCEPTION_RECORD* const*>(pointer);
    if (!record)
        throw std::bad_exception();
    if (record->ExceptionCode != CPP_EXCEPTION) {
        RaiseException(record->ExceptionCode, record->ExceptionFlags, record->NumberParameters,
                       record->ExceptionInformation);
        std::abort();
    }
    const void* const thrown = reinterpret_cast<const void*>(record->ExceptionInformation[1]);
    auto* const info = reinterpret_cast<ThrowInfo*>(record->ExceptionInformation[2]);
    const ULONG_PTR module = record->ExceptionInformation[3];
    const auto* const types = reinterpret_cast<const std::uint32_t*>(module + info->catchableTypes);
    const auto* const type = reinterpret_cast<const CatchableType*>(module + types[1]);
    void* const copy =
        _alloca(type->size);        // lives until the last handler is done with it, as any thrown object
    constexpr int MOST_DERIVED = 1; // read by classes with virtual bases alone
    if (type->copy != 0)
        reinterpret_cast<void (*)(void*, const void*, int)>(module + type->copy)(copy, thrown, MOST_DERIVED);
    else
        std::memcpy(copy, thrown, type->size);
    _CxxThrowException(copy, info);
}

extern "C" void (*const ovraRethrow)(const void*) __asm__("__imp_?__ExceptionPtrRethrow@@YAXPEBX@Z") =
    &rethrow;
