#include "ProcessResources.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <unistd.h>

namespace ovra::tests {

const long long LATE_HANDLES = 0;

namespace {

long long entries(const char* folder)
{
    const std::filesystem::directory_iterator first(folder);
    return std::distance(begin(first), end(first));
}

} // namespace

ProcessResources processResources()
{
    long long total = 0;
    long long resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return {resident * sysconf(_SC_PAGESIZE), entries("/proc/self/fd"), entries("/proc/self/task")};
}

} // namespace ovra::tests
