// SPDX-License-Identifier: MIT
// A runtime whose entries do nothing, to measure the way to them.

#include "fglib5/Fglib5.h"

#pragma GCC diagnostic ignored "-Wunused-parameter" // entries that do nothing use no parameters

#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) \
    result name parameters                                                 \
    {                                                                      \
        return static_cast<result>(0);                                     \
    }

extern "C" {
#include "fglib5/Fglib5Entries.inc"
}
