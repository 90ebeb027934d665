// SPDX-License-Identifier: MIT
/// \file
/// OVRA_OUT_OF_LINE as the platform's compilers write it.
#pragma once

#define OVRA_OUT_OF_LINE [[gnu::noinline, gnu::cold]]
