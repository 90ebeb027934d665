// SPDX-License-Identifier: MIT
/// \file
/// OVRA_OUT_OF_LINE as the platform's compilers write it.
#pragma once

#if defined(_MSC_VER)
#define OVRA_OUT_OF_LINE __declspec(noinline)
#else
#define OVRA_OUT_OF_LINE [[gnu::noinline, gnu::cold]]
#endif
