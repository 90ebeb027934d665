// SPDX-License-Identifier: MIT
/// \file
/// Start-up and shut-down of ovra-lib-display-fglib.
#pragma once

#include "ovra-lib-display-fglib/Export.h"

extern "C" {

/// Starts the library. Calls are counted: each needs one OvraDisplayFglibDeinit.
OVRA_DISPLAY_FGLIB_API void OvraDisplayFglibInit();

/// Balances one start-up; the last call shuts the library down.
OVRA_DISPLAY_FGLIB_API void OvraDisplayFglibDeinit();

} // extern "C"
