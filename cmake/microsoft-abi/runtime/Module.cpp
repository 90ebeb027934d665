// SPDX-License-Identifier: MIT
// The part of the C++ run-time library that is linked into every module: start and end of a program or a
// DLL, objects with static storage, thread-local storage, allocation, type_info.
//
// A stand-in for msvcrt.lib, enough to run programs under Wine. Not for production.
#include <climits>
#include <cstdlib>
#include <new>
#include <typeinfo>

#include <windows.h>

using Procedure = void(__cdecl*)();
using Initialiser = int(__cdecl*)();

// --- lists that the linker sorts by the names of their sections -----------------------------------

#pragma section(".CRT$XIA", long, read)
#pragma section(".CRT$XIZ", long, read)
#pragma section(".CRT$XCA", long, read)
#pragma section(".CRT$XCZ", long, read)
#pragma section(".CRT$XDA", long, read)
#pragma section(".CRT$XDZ", long, read)
#pragma section(".CRT$XLA", long, read)
#pragma section(".CRT$XLC", long, read)
#pragma section(".CRT$XLZ", long, read)
#pragma section(".rdata$T", long, read)
#pragma section(".tls", long, read, write)
#pragma section(".tls$ZZZ", long, read, write)
#pragma comment(linker, "/merge:.CRT=.rdata")
#pragma comment(linker, "/include:_tls_used")

extern "C" {

__declspec(allocate(".CRT$XIA")) Initialiser __xi_a[] = {nullptr};
__declspec(allocate(".CRT$XIZ")) Initialiser __xi_z[] = {nullptr};
__declspec(allocate(".CRT$XCA")) Procedure __xc_a[] = {nullptr};
__declspec(allocate(".CRT$XCZ")) Procedure __xc_z[] = {nullptr};
__declspec(allocate(".CRT$XDA")) Procedure __xd_a = nullptr;
__declspec(allocate(".CRT$XDZ")) Procedure __xd_z = nullptr;

int _fltused = 0x9875;

// --- thread-local storage -------------------------------------------------------------------------

ULONG _tls_index = 0;
__declspec(allocate(".tls")) char _tls_start = 0;
__declspec(allocate(".tls$ZZZ")) char _tls_end = 0;
__declspec(allocate(".CRT$XLA")) PIMAGE_TLS_CALLBACK __xl_a = nullptr;
__declspec(allocate(".CRT$XLZ")) PIMAGE_TLS_CALLBACK __xl_z = nullptr;
__declspec(allocate(".rdata$T")) extern const IMAGE_TLS_DIRECTORY64 _tls_used = {
    (ULONGLONG)&_tls_start, (ULONGLONG)&_tls_end, (ULONGLONG)&_tls_index, (ULONGLONG)(&__xl_a + 1), 0, {0}};

__declspec(thread) bool __tls_guard = false;

void __cdecl __dyn_tls_on_demand_init() noexcept
{
    if (__tls_guard)
        return;
    __tls_guard = true;
    for (Procedure* p = &__xd_a + 1; p < &__xd_z; ++p)
        if (*p)
            (*p)();
}

void NTAPI __dyn_tls_init(PVOID, DWORD reason, PVOID)
{
    if (reason == DLL_THREAD_ATTACH)
        __dyn_tls_on_demand_init();
}
__declspec(allocate(".CRT$XLC")) PIMAGE_TLS_CALLBACK __xl_c = __dyn_tls_init;

// --- static locals --------------------------------------------------------------------------------

int _Init_global_epoch = INT_MIN;
__declspec(thread) int _Init_thread_epoch = INT_MIN;
static SRWLOCK initLock = SRWLOCK_INIT;
static CONDITION_VARIABLE initDone = CONDITION_VARIABLE_INIT;

void __cdecl _Init_thread_header(int* once)
{
    AcquireSRWLockExclusive(&initLock);
    while (*once == -1)
        SleepConditionVariableSRW(&initDone, &initLock, INFINITE, 0);
    if (*once == 0)
        *once = -1;
    else
        _Init_thread_epoch = _Init_global_epoch;
    ReleaseSRWLockExclusive(&initLock);
}

void __cdecl _Init_thread_footer(int* once)
{
    AcquireSRWLockExclusive(&initLock);
    *once = ++_Init_global_epoch;
    _Init_thread_epoch = _Init_global_epoch;
    ReleaseSRWLockExclusive(&initLock);
    WakeAllConditionVariable(&initDone);
}

void __cdecl _Init_thread_abort(int* once)
{
    AcquireSRWLockExclusive(&initLock);
    *once = 0;
    ReleaseSRWLockExclusive(&initLock);
    WakeAllConditionVariable(&initDone);
}

// --- end of the module ----------------------------------------------------------------------------

struct OnExitTable
{
    void* first;
    void* last;
    void* end;
};
__declspec(dllimport) int __cdecl _register_onexit_function(OnExitTable*, Initialiser);
__declspec(dllimport) int __cdecl _crt_atexit(Procedure);
__declspec(dllimport) int __cdecl _callnewh(size_t);

OnExitTable __module_onexit;
bool __module_is_dll;

int __cdecl atexit(Procedure procedure)
{
    return __module_is_dll
               ? _register_onexit_function(&__module_onexit, reinterpret_cast<Initialiser>(procedure))
               : _crt_atexit(procedure);
}

// --- type_info --------------------------------------------------------------------------------------

SLIST_HEADER __type_info_root;

} // extern "C"

type_info::~type_info() noexcept {}
// No constructor, hence no place where the compiler would make its table of virtual functions.
static void* deleteTypeInfo(type_info*, unsigned int)
{
    return nullptr;
}
extern "C" void* const __type_info_vftable[1] __asm__("??_7type_info@@6B@") = {
    reinterpret_cast<void*>(&deleteTypeInfo)};
char const* type_info::name() const noexcept
{
    return __std_type_info_name(&_Data, &__type_info_root);
}

// --- allocation --------------------------------------------------------------------------------------

template <class Allocate>
static void* obtain(size_t size, Allocate allocate)
{
    for (;;) {
        if (void* block = allocate())
            return block;
        if (_callnewh(size) == 0)
            throw std::bad_alloc();
    }
}

void* __cdecl operator new(size_t size)
{
    return obtain(size, [=] { return malloc(size); });
}
void* __cdecl operator new(size_t size, std::nothrow_t const&) noexcept
{
    return malloc(size);
}
void* __cdecl operator new[](size_t size)
{
    return operator new(size);
}
void* __cdecl operator new[](size_t size, std::nothrow_t const&) noexcept
{
    return malloc(size);
}
void* __cdecl operator new(size_t size, std::align_val_t alignment)
{
    return obtain(size, [=] { return _aligned_malloc(size, static_cast<size_t>(alignment)); });
}
void* __cdecl operator new[](size_t size, std::align_val_t alignment)
{
    return operator new(size, alignment);
}
void* __cdecl operator new(size_t size, std::align_val_t alignment, std::nothrow_t const&) noexcept
{
    return _aligned_malloc(size, static_cast<size_t>(alignment));
}
void* __cdecl operator new[](size_t size, std::align_val_t alignment, std::nothrow_t const&) noexcept
{
    return _aligned_malloc(size, static_cast<size_t>(alignment));
}
void __cdecl operator delete(void* block) noexcept
{
    free(block);
}
void __cdecl operator delete(void* block, size_t) noexcept
{
    free(block);
}
void __cdecl operator delete(void* block, std::nothrow_t const&) noexcept
{
    free(block);
}
void __cdecl operator delete[](void* block) noexcept
{
    free(block);
}
void __cdecl operator delete[](void* block, size_t) noexcept
{
    free(block);
}
void __cdecl operator delete[](void* block, std::nothrow_t const&) noexcept
{
    free(block);
}
void __cdecl operator delete(void* block, std::align_val_t) noexcept
{
    _aligned_free(block);
}
void __cdecl operator delete(void* block, size_t, std::align_val_t) noexcept
{
    _aligned_free(block);
}
void __cdecl operator delete(void* block, std::align_val_t, std::nothrow_t const&) noexcept
{
    _aligned_free(block);
}
void __cdecl operator delete[](void* block, std::align_val_t) noexcept
{
    _aligned_free(block);
}
void __cdecl operator delete[](void* block, size_t, std::align_val_t) noexcept
{
    _aligned_free(block);
}
void __cdecl operator delete[](void* block, std::align_val_t, std::nothrow_t const&) noexcept
{
    _aligned_free(block);
}
