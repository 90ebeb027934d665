// A log dispatcher that calls a function of the test at the start of connect, and never gives its client the
// two functions.

#include "fglib5/LoggingDispatcher.h"

#if defined(_WIN32)
#define EARLY_EXPORT __declspec(dllexport)
#else
#define EARLY_EXPORT __attribute__((visibility("default")))
#endif

extern "C" {

EARLY_EXPORT void (*whileConnecting)() = nullptr;

static void connectClient(void*, LoggingOnDisconnect, LoggingOnSetLevel, LoggingRegisterFunction*,
                          LoggingLogFunction*)
{
    if (whileConnecting)
        whileConnecting();
}

EARLY_EXPORT LoggingDispatcherDescriptor logging_dispatcher_descriptor = {&connectClient};

} // extern "C"
