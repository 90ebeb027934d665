/// \file
/// Start-up and shut-down of ovra-lib-fglib-model.
#pragma once

#include "ovra-lib-fglib-model/Export.h"

extern "C" {

/// Starts the library. Calls are counted: each needs one OvraFglibModelDeinit.
OVRA_FGLIB_MODEL_API void OvraFglibModelInit();

/// Takes one start-up back; the last one shuts the library down.
OVRA_FGLIB_MODEL_API void OvraFglibModelDeinit();

} // extern "C"
