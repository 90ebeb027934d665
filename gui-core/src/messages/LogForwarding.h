// SPDX-License-Identifier: MIT
/// \file
/// Passes the host's log messages on to the front end.
#pragma once

struct tOvraLogTag;

namespace ovra::gui::messages {

/// The callback to install in the host's log. Any thread; while no front end exists the message is dropped.
void forwardLogMessage(unsigned long level, unsigned long threadId, const char* file, unsigned int line,
                       const char* text, unsigned int tagCount, const tOvraLogTag* tags, void* userData);

} // namespace ovra::gui::messages
