// SPDX-License-Identifier: MIT
#include "Dispatcher.h"
#include "DispatcherControl.h"

#include <type_traits>

#if defined(_WIN32)
#define DISPATCHER_EXPORT __declspec(dllexport)
#else
#define DISPATCHER_EXPORT __attribute__((visibility("default")))
#endif

using simulation::Dispatcher;

namespace {

std::string tagOf(const char* tag)
{
    return tag == nullptr ? std::string() : tag;
}

} // namespace

extern "C" {

static void registerLogger(const char* tag, std::uint64_t* loggerId, std::uint32_t* threshold)
{
    const auto logger = Dispatcher::instance().logger(tagOf(tag));
    *loggerId = logger.id;
    *threshold = logger.threshold;
}

// A line does not contain the two further arguments.
static void takeMessage(std::uint64_t loggerId, std::uint32_t level, const char* text, std::uint64_t,
                        std::uint64_t)
{
    Dispatcher::instance().log(loggerId, level, text == nullptr ? "" : text);
}

static void connectClient(void* client, LoggingOnDisconnect onDisconnect, LoggingOnSetLevel onSetLevel,
                          LoggingRegisterFunction* registerFunction, LoggingLogFunction* logFunction)
{
    *registerFunction = &registerLogger;
    *logFunction = &takeMessage;
    Dispatcher::instance().connect(client, onDisconnect, onSetLevel);
    Dispatcher::instance().announceLevels();
}

DISPATCHER_EXPORT LoggingDispatcherDescriptor logging_dispatcher_descriptor = {&connectClient};

DISPATCHER_EXPORT void LogSim_setLevel(const char* tag, std::uint32_t threshold)
{
    Dispatcher::instance().setLevel(tagOf(tag), threshold);
}

DISPATCHER_EXPORT void LogSim_disconnect()
{
    Dispatcher::instance().disconnect();
}

DISPATCHER_EXPORT std::uint64_t LogSim_loggerId(const char* tag)
{
    return Dispatcher::instance().knownId(tagOf(tag));
}

DISPATCHER_EXPORT std::uint64_t LogSim_messageCount()
{
    return Dispatcher::instance().messages();
}

} // extern "C"

#define LOGSIM_ENTRY(result, name, parameters) static_assert(std::is_same_v<decltype(name), name##_t>);
#include "simulation/common-logging-dispatcher/DispatcherControl.inc"
