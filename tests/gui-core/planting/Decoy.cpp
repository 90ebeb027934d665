// A library that nobody should load. It leaves a trace where the process stands when somebody does.

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
