/// \file
/// The host's own messages. Like OvraLogMessage, but not on the journal: they are no calls of a client.
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

/// Any thread. Never throws: what a listener throws ends here.
OVRA_LOG_API void log(LogLevel level, const std::string& text,
                      std::source_location place = std::source_location::current()) noexcept;

} // namespace ovra::reference
