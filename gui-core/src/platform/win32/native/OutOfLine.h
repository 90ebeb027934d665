/// \file
/// OVRA_OUT_OF_LINE: before a function that is rarely called and may not become part of its callers.
#pragma once

#if defined(_MSC_VER)
#define OVRA_OUT_OF_LINE __declspec(noinline)
#else
#define OVRA_OUT_OF_LINE [[gnu::noinline, gnu::cold]]
#endif
