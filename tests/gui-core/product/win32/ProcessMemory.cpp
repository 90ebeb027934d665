#include "ProcessMemory.h"

#include <windows.h>

#include <psapi.h>

namespace ovra::tests {

std::size_t processMemory()
{
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
}

} // namespace ovra::tests
