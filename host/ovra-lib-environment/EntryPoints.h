// SPDX-License-Identifier: MIT
/// \file
/// Start-up and shut-down of ovra-lib-environment.
#pragma once

#include "ovra-lib-environment/Export.h"

extern "C" {

/// Starts the library. Calls are counted: each needs one OvraEnvironmentDeinit.
OVRA_ENVIRONMENT_API void OvraEnvironmentInit();

/// Balances one start-up; the last call shuts the library down.
OVRA_ENVIRONMENT_API void OvraEnvironmentDeinit();

} // extern "C"
