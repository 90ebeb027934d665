// SPDX-License-Identifier: MIT
/// \file
/// Start-up and shut-down of ovra-lib-fglib-model.
#pragma once

#include "ovra-lib-fglib-model/Export.h"

extern "C" {

/// Starts the library. Calls are counted: each needs one OvraFglibModelDeinit.
OVRA_FGLIB_MODEL_API void OvraFglibModelInit();

/// Balances one start-up; the last call shuts the library down.
OVRA_FGLIB_MODEL_API void OvraFglibModelDeinit();

} // extern "C"
