// A legacy applet whose answers the build sets; without any it has no Info at all.

#if defined(_WIN32)
#define APPLET_EXPORT __declspec(dllexport)
#else
#define APPLET_EXPORT __attribute__((visibility("default")))
#endif

#ifdef CHANNELS
extern "C" APPLET_EXPORT int Info(int query, int, int, int, int)
{
    switch (query) {
    case 1888:
        return CHANNELS;
    case 3072:
        return MEDIUM;
    case 3328:
        return FULL;
    default:
        return 0;
    }
}
#else
extern "C" APPLET_EXPORT int Information()
{
    return 0;
}
#endif
