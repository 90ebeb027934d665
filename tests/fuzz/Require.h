// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the fuzzer, which then keeps the input, unless \p condition holds. \p text names the condition.
inline void require(bool condition, const char* text)
{
    if (condition)
        return;
    std::fprintf(stderr, "Expected: %s\n", text);
    std::abort();
}
