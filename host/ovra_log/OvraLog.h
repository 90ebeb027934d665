// SPDX-License-Identifier: MIT
/// \file
/// The host's message log.
///
///   OvraLogInit, OvraLogDeinit     start and stop; the log counts the starts
///   OvraLogSetMessageCallback      one listener for all messages
///   OvraLogMessage                 writes a message
///
/// Before OvraLogInit and after the last OvraLogDeinit messages are dropped.
#pragma once

#include "ovra_log/Export.h"

/// A tag of a message, by which readers filter: for example its component.
struct tOvraLogTag
{
    unsigned int id;
    const char* name;
};

extern "C" {

/// Receives each message, on the thread that logs; several threads may call it at once. Pointers are valid
/// during the call. The callback may log. It must not call OvraLogSetMessageCallback.
///
/// \param level     0 error, 1 warning, 2 information, 3 debug
/// \param threadId  numeric id of the thread that logs
/// \param file      name of the source file without its folder, zero-terminated
/// \param line      line in that file
/// \param text      the message, UTF-8, zero-terminated
/// \param tagCount  number of \p tags
/// \param tags      the tags; null if there are none
/// \param userData  the value given to OvraLogSetMessageCallback
typedef void (*tOvraLogMessageCallback)(unsigned long level, unsigned long threadId, const char* file,
                                        unsigned int line, const char* text, unsigned int tagCount,
                                        const tOvraLogTag* tags, void* userData);

OVRA_LOG_API void OvraLogInit();
OVRA_LOG_API void OvraLogDeinit();

/// Replaces the callback; null removes it. When the function returns, the previous callback is not running on
/// any other thread.
OVRA_LOG_API void OvraLogSetMessageCallback(tOvraLogMessageCallback callback, void* userData);

/// Writes a message. Any thread. Removes the folder from \p file; null counts as an empty name.
OVRA_LOG_API void OvraLogMessage(unsigned long level, const char* file, unsigned int line, const char* text,
                                 unsigned int tagCount, const tOvraLogTag* tags);

} // extern "C"
