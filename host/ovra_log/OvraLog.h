/// \file
/// The host's message log.
///
///   OvraLogInit, OvraLogDeinit     start and stop, counted
///   OvraLogSetMessageCallback      one listener for all messages
///   OvraLogMessage                 writes a message
///
/// Before OvraLogInit and after the last OvraLogDeinit messages are dropped.
#pragma once

#include "ovra_log/Export.h"

/// A tag of a message: the component, or whatever a reader may want to filter by.
struct tOvraLogTag
{
    unsigned int id;
    const char* name;
};

extern "C" {

/// Called for each message on the thread that logs, which may be any. Pointers are valid during the call.
/// The callback may log; it must not install another callback.
///
/// \param level     0 error, 1 warning, 2 information, 3 debug
/// \param threadId  numeric id of the thread that logs
/// \param file      name of the source file without its folder, zero-terminated
/// \param line      line in that file
/// \param text      the message, UTF-8, zero-terminated
/// \param tagCount  number of \p tags
/// \param tags      the tags; null where there are none
/// \param userData  as given to OvraLogSetMessageCallback
typedef void (*tOvraLogMessageCallback)(unsigned long level, unsigned long threadId, const char* file,
                                        unsigned int line, const char* text, unsigned int tagCount,
                                        const tOvraLogTag* tags, void* userData);

OVRA_LOG_API void OvraLogInit();
OVRA_LOG_API void OvraLogDeinit();

/// Installs \p callback in place of the one before; null installs none. When the call returns, the
/// callback before it is no longer running on another thread.
OVRA_LOG_API void OvraLogSetMessageCallback(tOvraLogMessageCallback callback, void* userData);

/// Any thread. A folder in \p file is cut off; null gives an empty name.
OVRA_LOG_API void OvraLogMessage(unsigned long level, const char* file, unsigned int line, const char* text,
                                 unsigned int tagCount, const tOvraLogTag* tags);

} // extern "C"
