/// \file
/// Start-up and shut-down of ovra-lib-display-fglib.
#pragma once

#include "ovra-lib-display-fglib/Export.h"

extern "C" {

/// Starts the library. Calls are counted: each needs one OvraDisplayFglibDeinit.
OVRA_DISPLAY_FGLIB_API void OvraDisplayFglibInit();

/// Takes one start-up back; the last one shuts the library down.
OVRA_DISPLAY_FGLIB_API void OvraDisplayFglibDeinit();

} // extern "C"
