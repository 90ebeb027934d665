// SPDX-License-Identifier: MIT
#include "ProcessResources.h"

#include <dlfcn.h>
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

bool isOpenLibrary(const std::string& path)
{
    void* module = dlopen(path.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (module)
        dlclose(module);
    return module != nullptr;
}

} // namespace ovra::tests
