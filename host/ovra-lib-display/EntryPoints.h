// SPDX-License-Identifier: MIT
/// \file
/// Start-up and shut-down of ovra-lib-display.
#pragma once

#include "ovra-lib-display/Export.h"

extern "C" {

/// Starts the library. Calls are counted: each needs one OvraDisplayDeinit.
OVRA_DISPLAY_API void OvraDisplayInit();

/// Balances one start-up; the last call shuts the library down.
OVRA_DISPLAY_API void OvraDisplayDeinit();

} // extern "C"
