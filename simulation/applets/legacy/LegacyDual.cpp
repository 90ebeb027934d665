// SPDX-License-Identifier: MIT
// A legacy applet: one exported function describes its layout.

#include "fglib5/LegacyApplet.h"

#include <type_traits>

#if defined(_WIN32)
#define APPLET_EXPORT __declspec(dllexport)
#else
#define APPLET_EXPORT __attribute__((visibility("default")))
#endif

extern "C" APPLET_EXPORT int Info(int query, int, int, int, int)
{
    switch (query) {
    case LEGACY_CHANNELS:
        return 2;
    case LEGACY_MEDIUM:
        return 1;
    default:
        return 0;
    }
}

static_assert(std::is_same_v<decltype(Info), LegacyInfoFunction>);
