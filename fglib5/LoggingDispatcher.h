/// \file
/// Interface of the logging dispatcher "common-logging-dispatcher", a library beside the runtime that
/// collects the diagnostic messages of all components.
///
/// The dispatcher exports one object under the name LOGGING_DISPATCHER_DESCRIPTOR_NAME. A client calls its
/// entry and is connected from then on, until the dispatcher calls onDisconnect: there is no way back from
/// the client's side, so a client stays in the process. Level numbers grow with importance: a message is
/// wanted when its level is at or above the threshold of its logger.
#pragma once

#include <cstdint>

inline constexpr const char* LOGGING_DISPATCHER_DESCRIPTOR_NAME = "logging_dispatcher_descriptor";

extern "C" {

/// Gives the id and the present threshold of the logger for \p tag; equal tags have equal ids. Any thread.
using LoggingRegisterFunction = void (*)(const char* tag, std::uint64_t* loggerId, std::uint32_t* threshold);

/// Takes one message. Any thread, until the exit of the process. \p a and \p b go into the record as they
/// are; 0 where unused.
using LoggingLogFunction = void (*)(std::uint64_t loggerId, std::uint32_t level, const char* text,
                                    std::uint64_t a, std::uint64_t b);

/// Called by the dispatcher when it takes no more messages. Any thread.
using LoggingOnDisconnect = void (*)(void* client);

/// Called by the dispatcher when the threshold of a logger changes; also while connecting. Any thread.
using LoggingOnSetLevel = void (*)(void* client, std::uint64_t loggerId, std::uint32_t threshold);

struct LoggingDispatcherDescriptor
{
    /// Connects \p client and stores the two functions, before it calls anything back. One client a process.
    void (*connect)(void* client, LoggingOnDisconnect onDisconnect, LoggingOnSetLevel onSetLevel,
                    LoggingRegisterFunction* registerFunction, LoggingLogFunction* logFunction);
};

} // extern "C"
