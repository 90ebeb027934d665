// SPDX-License-Identifier: MIT
/// \file
/// How often each host library was started and not yet shut down.
#pragma once

#include "ovra_log/Export.h"

#include <string>

namespace ovra::reference {

/// Counts one start of \p library.
OVRA_LOG_API void libraryStarted(const std::string& library);
/// Counts one shut-down of \p library. A shut-down without a start is logged as an error and has no effect.
OVRA_LOG_API void libraryEnded(const std::string& library);
/// Number of starts minus number of shut-downs; 0 for a library that was never started.
OVRA_LOG_API int libraryUses(const std::string& library);

} // namespace ovra::reference
