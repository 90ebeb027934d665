// SPDX-License-Identifier: MIT
// A log dispatcher that calls a function of the test at the start of connect, and then gives its client the
// two functions that the test has set: none at first.

#include "fglib5/LoggingDispatcher.h"

#if defined(_WIN32)
#define EARLY_EXPORT __declspec(dllexport)
#else
#define EARLY_EXPORT __attribute__((visibility("default")))
#endif

extern "C" {

EARLY_EXPORT void (*whileConnecting)() = nullptr;
EARLY_EXPORT LoggingRegisterFunction givenRegister = nullptr;
EARLY_EXPORT LoggingLogFunction givenLog = nullptr;

static void connectClient(void*, LoggingOnDisconnect, LoggingOnSetLevel,
                          LoggingRegisterFunction* registerFunction, LoggingLogFunction* logFunction)
{
    if (whileConnecting)
        whileConnecting();
    *registerFunction = givenRegister;
    *logFunction = givenLog;
}

EARLY_EXPORT LoggingDispatcherDescriptor logging_dispatcher_descriptor = {&connectClient};

} // extern "C"
