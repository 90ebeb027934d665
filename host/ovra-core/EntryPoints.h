// SPDX-License-Identifier: MIT
/// \file
/// Start-up and shut-down of ovra-core.
#pragma once

#include "ovra-core/Export.h"

extern "C" {

/// Starts the library. Calls are counted: each needs one OvraCoreDeinit.
OVRA_CORE_API void OvraCoreInit();

/// Balances one start-up; the last call shuts the library down.
OVRA_CORE_API void OvraCoreDeinit();

} // extern "C"
