// A legacy applet: tells its layout itself, through one function.

#if defined(_WIN32)
#define APPLET_EXPORT __declspec(dllexport)
#else
#define APPLET_EXPORT __attribute__((visibility("default")))
#endif

extern "C" APPLET_EXPORT int Info(int query, int, int, int, int)
{
    switch (query) {
    case 1888:
        return 2; // camera channels
    case 3072:
        return 1; // Camera Link medium
    case 3328:
        return 0; // Camera Link full
    default:
        return 0;
    }
}
