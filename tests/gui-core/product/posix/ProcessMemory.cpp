#include "ProcessMemory.h"

#include <fstream>
#include <unistd.h>

namespace ovra::tests {

std::size_t processMemory()
{
    std::size_t total = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

} // namespace ovra::tests
