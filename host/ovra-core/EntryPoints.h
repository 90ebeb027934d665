/// \file
/// Start-up and shut-down of ovra-core.
#pragma once

#include "ovra-core/Export.h"

extern "C" {

/// Starts the library. Calls are counted: each needs one OvraCoreDeinit.
OVRA_CORE_API void OvraCoreInit();

/// Takes one start-up back; the last one shuts the library down.
OVRA_CORE_API void OvraCoreDeinit();

} // extern "C"
