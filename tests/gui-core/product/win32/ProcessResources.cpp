// SPDX-License-Identifier: MIT
#include "ProcessResources.h"

#include <windows.h>

#include <psapi.h>
#include <tlhelp32.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <vector>

extern "C" LONG NTAPI NtQuerySystemInformation(int subject, void* answer, ULONG bytes, ULONG* needed);

namespace ovra::tests {

const long long LATE_HANDLES = 16;

namespace {

/// One handle of any process.
struct SystemHandle
{
    void* object;
    ULONG_PTR process;
    ULONG_PTR handle;
    ULONG access;
    USHORT creator;
    USHORT type;
    ULONG attributes;
    ULONG reserved;
};

/// Counts in the list of all handles, because GetProcessHandleCount returns 0 in Wine.
long long handles()
{
    constexpr int ALL_HANDLES = 64;
    constexpr LONG TOO_SHORT = static_cast<LONG>(0xC0000004);
    constexpr std::size_t HEAD = 2 * sizeof(ULONG_PTR);
    std::vector<char> answer(1U << 16);
    LONG status = TOO_SHORT;
    while ((status = NtQuerySystemInformation(ALL_HANDLES, answer.data(), static_cast<ULONG>(answer.size()),
                                              nullptr)) == TOO_SHORT)
        answer.resize(answer.size() * 2);
    if (status != 0)
        throw std::runtime_error("The system does not list its handles");
    ULONG_PTR count = 0;
    std::memcpy(&count, answer.data(), sizeof count);
    std::vector<SystemHandle> all(count);
    std::memcpy(all.data(), answer.data() + HEAD, count * sizeof(SystemHandle));
    return std::ranges::count(all, GetCurrentProcessId(), &SystemHandle::process);
}

long long threads()
{
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 thread{};
    thread.dwSize = sizeof thread;
    long long count = 0;
    for (BOOL more = Thread32First(snapshot, &thread); more; more = Thread32Next(snapshot, &thread))
        count += thread.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
    CloseHandle(snapshot);
    return count;
}

} // namespace

ProcessResources processResources()
{
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return {static_cast<long long>(counters.PagefileUsage), handles(), threads()};
}

bool isOpenLibrary(const std::string& path)
{
    return GetModuleHandleA(std::filesystem::path(path).make_preferred().string().c_str()) != nullptr;
}

} // namespace ovra::tests
