#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the fuzzer, which then keeps the input, unless what \p text says holds.
inline void require(bool condition, const char* text)
{
    if (condition)
        return;
    std::fprintf(stderr, "Expected: %s\n", text);
    std::abort();
}
