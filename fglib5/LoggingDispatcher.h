// SPDX-License-Identifier: MIT
/// \file
/// Interface of the logging dispatcher "common-logging-dispatcher", a library beside the runtime that
/// collects the diagnostic messages of all components.
///
/// The dispatcher exports one object under the name LOGGING_DISPATCHER_DESCRIPTOR_NAME. A client calls its
/// function connect, and stays connected until the dispatcher calls onDisconnect. A client cannot disconnect,
/// so it must stay in the process. Higher level numbers are more important: the dispatcher accepts a message
/// if its level is at or above the threshold of its logger.
#pragma once

#include <cstdint>

inline constexpr const char* LOGGING_DISPATCHER_DESCRIPTOR_NAME = "logging_dispatcher_descriptor";

extern "C" {

/// Returns the id and the current threshold of the logger for \p tag; equal tags have equal ids. Any thread.
using LoggingRegisterFunction = void (*)(const char* tag, std::uint64_t* loggerId, std::uint32_t* threshold);

/// Writes one message. Any thread, until the exit of the process. \p a and \p b go into the record unchanged;
/// 0 if unused.
using LoggingLogFunction = void (*)(std::uint64_t loggerId, std::uint32_t level, const char* text,
                                    std::uint64_t a, std::uint64_t b);

/// The dispatcher calls it when it accepts no more messages. Any thread.
using LoggingOnDisconnect = void (*)(void* client);

/// The dispatcher calls it when the threshold of a logger changes, possibly while connect runs. Any thread.
using LoggingOnSetLevel = void (*)(void* client, std::uint64_t loggerId, std::uint32_t threshold);

struct LoggingDispatcherDescriptor
{
    /// Connects \p client. Stores the two functions before it calls one of them. One client per process.
    void (*connect)(void* client, LoggingOnDisconnect onDisconnect, LoggingOnSetLevel onSetLevel,
                    LoggingRegisterFunction* registerFunction, LoggingLogFunction* logFunction);
};

} // extern "C"
