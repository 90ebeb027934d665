// SPDX-License-Identifier: MIT
// A library that must not be loaded. If it is, it leaves a file in the current folder.

#include <cstdio>

namespace {

struct Trace
{
    Trace()
    {
        if (std::FILE* file = std::fopen("decoy-was-loaded", "a"))
            std::fclose(file);
    }
} trace;

} // namespace
