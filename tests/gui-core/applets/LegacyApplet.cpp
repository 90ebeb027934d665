// SPDX-License-Identifier: MIT
// A legacy applet whose answers the build defines; without them it has no Info.

#include "fglib5/LegacyApplet.h"

#if defined(_WIN32)
#define APPLET_EXPORT __declspec(dllexport)
#else
#define APPLET_EXPORT __attribute__((visibility("default")))
#endif

#ifdef CHANNELS
extern "C" APPLET_EXPORT int Info(int query, int a, int b, int c, int d)
{
    // Gives a wrong answer if the queries come in another order, or if another argument is not 0.
    static int before = 0;
    const bool inOrder = query == LEGACY_CHANNELS || (query == LEGACY_MEDIUM && before == LEGACY_CHANNELS) ||
                         (query == LEGACY_FULL && before == LEGACY_MEDIUM);
    const bool asUsual = inOrder && a == 0 && b == 0 && c == 0 && d == 0;
    before = query;
    const int answer = query == LEGACY_CHANNELS ? CHANNELS : query == LEGACY_MEDIUM ? MEDIUM : FULL;
    const int wrongAnswer = query == LEGACY_CHANNELS ? 7 : !answer;
    return asUsual ? answer : wrongAnswer;
}
#else
extern "C" APPLET_EXPORT int Information()
{
    return 0;
}
#endif
