// SPDX-License-Identifier: MIT
/// \file
/// Start-up and shut-down of ovra-lib-genicam-model.
#pragma once

#include "ovra-lib-genicam-model/Export.h"

extern "C" {

/// Starts the library. Calls are counted: each needs one OvraGenicamModelDeinit. The start-up and the
/// shut-down of ovra-lib-environment, which uses this library, call these functions.
OVRA_GENICAM_MODEL_API void OvraGenicamModelInit();

/// Balances one start-up; the last call shuts the library down.
OVRA_GENICAM_MODEL_API void OvraGenicamModelDeinit();

} // extern "C"
