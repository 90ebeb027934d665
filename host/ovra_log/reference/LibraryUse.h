/// \file
/// How often each host library was started and not yet shut down.
#pragma once

#include "ovra_log/Export.h"

#include <string>

namespace ovra::reference {

/// Counts one start of \p library.
OVRA_LOG_API void libraryStarted(const std::string& library);
/// Takes one start back. One too many is logged as an error and changes nothing.
OVRA_LOG_API void libraryEnded(const std::string& library);
/// Starts that were not taken back; 0 for a library that never was started.
OVRA_LOG_API int libraryUses(const std::string& library);

} // namespace ovra::reference
