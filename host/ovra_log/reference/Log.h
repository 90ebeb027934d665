// SPDX-License-Identifier: MIT
/// \file
/// The host's own messages. Like OvraLogMessage, but the journal does not record them, since no client calls.
#pragma once

#include "ovra_log/Export.h"

#include <source_location>
#include <string>

namespace ovra::reference {

enum class LogLevel : unsigned long
{
    Error = 0,
    Warning = 1,
    Information = 2,
    Debug = 3,
};

/// Writes a message. Any thread. Swallows exceptions from the message callback.
OVRA_LOG_API void log(LogLevel level, const std::string& text,
                      std::source_location place = std::source_location::current()) noexcept;

} // namespace ovra::reference
