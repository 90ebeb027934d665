/// \file
/// Start-up and shut-down of ovra-lib-genicam-model.
#pragma once

#include "ovra-lib-genicam-model/Export.h"

extern "C" {

/// Starts the library. Calls are counted: each needs one OvraGenicamModelDeinit. ovra-lib-environment, which
/// stands on it, starts and ends it with itself.
OVRA_GENICAM_MODEL_API void OvraGenicamModelInit();

/// Takes one start-up back; the last one shuts the library down.
OVRA_GENICAM_MODEL_API void OvraGenicamModelDeinit();

} // extern "C"
