/// \file
/// Start-up and shut-down of ovra-lib-parameters.
#pragma once

#include "ovra-lib-parameters/Export.h"

extern "C" {

/// Starts the library. Calls are counted: each needs one OvraParametersDeinit.
OVRA_PARAMETERS_API void OvraParametersInit();

/// Takes one start-up back; the last one shuts the library down.
OVRA_PARAMETERS_API void OvraParametersDeinit();

} // extern "C"
