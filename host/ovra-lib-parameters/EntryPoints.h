// SPDX-License-Identifier: MIT
/// \file
/// Start-up and shut-down of ovra-lib-parameters.
#pragma once

#include "ovra-lib-parameters/Export.h"

extern "C" {

/// Starts the library. Calls are counted: each needs one OvraParametersDeinit.
OVRA_PARAMETERS_API void OvraParametersInit();

/// Balances one start-up; the last call shuts the library down.
OVRA_PARAMETERS_API void OvraParametersDeinit();

} // extern "C"
