/// \file
/// Start-up and shut-down of ovra-lib-environment.
#pragma once

#include "ovra-lib-environment/Export.h"

extern "C" {

/// Starts the library. Calls are counted: each needs one OvraEnvironmentDeinit.
OVRA_ENVIRONMENT_API void OvraEnvironmentInit();

/// Takes one start-up back; the last one shuts the library down.
OVRA_ENVIRONMENT_API void OvraEnvironmentDeinit();

} // extern "C"
