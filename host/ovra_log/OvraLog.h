// SPDX-License-Identifier: MIT
/// \file
/// The host's message log.
///
///   OvraLogInit, OvraLogDeinit     start and stop; the log counts the starts
///   OvraLogSetMessageCallback      one listener for all messages
///   OvraLogMessage                 writes a message
///
/// Before OvraLogInit and after the last OvraLogDeinit messages are dropped. Any thread may call all
/// functions.
///
/// There is one listener in the process. The library starts the log and installs its own when the application
/// starts, and removes it at the end: it forwards to gui::Views::logMsgCallback. A front end overrides that
/// and calls none of the functions here except OvraLogMessage; with OvraLogSetMessageCallback it would cut
/// its own log off.
#pragma once

#include "ovra_log/Export.h"

/// A tag of a message, by which readers filter: for example its component. The caller of OvraLogMessage
/// chooses both.
struct tOvraLogTag
{
    unsigned int id;
    const char* name; ///< UTF-8, zero-terminated
};

extern "C" {

/// Receives each message, on the thread that logs; several threads may call it at once. Pointers are valid
/// during the call. An exception propagates to the caller of OvraLogMessage, so the callback should not
/// throw. If it logs, it is called again within the call: it must end that recursion itself. It must not call
/// OvraLogSetMessageCallback, which would wait for it.
///
/// \param level     0 error, 1 warning, 2 information, 3 debug
/// \param threadId  number of the thread that logs, 1 for the first thread that did; not the system's id
/// \param file      name of the source file without its folder, zero-terminated
/// \param line      line in that file
/// \param text      the message, UTF-8, zero-terminated
/// \param tagCount  number of \p tags
/// \param tags      the tags; null if there are none
/// \param userData  the value given to OvraLogSetMessageCallback
typedef void (*tOvraLogMessageCallback)(unsigned long level, unsigned long threadId, const char* file,
                                        unsigned int line, const char* text, unsigned int tagCount,
                                        const tOvraLogTag* tags, void* userData);

/// Starts the log. Each call needs one OvraLogDeinit. A callback that is set stays set.
OVRA_LOG_API void OvraLogInit();
/// Takes one start back; the last one stops the log. One call too many has no effect.
OVRA_LOG_API void OvraLogDeinit();

/// Replaces the callback, also before OvraLogInit; null removes it. Waits until the previous callback has
/// returned on every thread.
OVRA_LOG_API void OvraLogSetMessageCallback(tOvraLogMessageCallback callback, void* userData);

/// Writes a message: calls the callback on this thread, with all arguments and this thread's number. Copies
/// nothing.
///
/// \param level     0 error, 1 warning, 2 information, 3 debug; others are handed on, too
/// \param file      source file; its folder is removed. Null counts as an empty name
/// \param line      line in that file
/// \param text      UTF-8, zero-terminated, not null
/// \param tagCount  number of \p tags
/// \param tags      may be null if \p tagCount is 0
OVRA_LOG_API void OvraLogMessage(unsigned long level, const char* file, unsigned int line, const char* text,
                                 unsigned int tagCount, const tOvraLogTag* tags);

} // extern "C"
