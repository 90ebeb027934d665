// SPDX-License-Identifier: MIT
/// \file
/// Start-up and shut-down of ovra-lib-gui-core.
///
/// The host calls OvraGuiCoreInit after it has loaded the library and OvraGuiCoreDeinit before it unloads it.
/// From the first OvraGuiCoreInit on the library stays in the process, even if the host unloads it, because
/// the log dispatcher may call it at any time.
#pragma once

#include "gui-core/Export.h"

extern "C" {

/// Starts the host libraries that this one uses: core, environment, parameters, display, display-fglib and
/// fglib-model, in this order. Each call starts them again (they count). Balance it with one
/// OvraGuiCoreDeinit, even if it throws.
///
/// Any thread; concurrent calls wait for each other. Exceptions from the libraries' start-ups, and
/// std::bad_alloc, propagate; libraries already started stay started.
OVRA_GUI_CORE_API void OvraGuiCoreInit();

/// Balances one OvraGuiCoreInit. The last call shuts the host libraries down, in the order of their start-ups
/// and as often as they were started. Then it destroys the library's process-wide objects, except the
/// connection to the log dispatcher, which lasts until the process ends.
///
/// Any thread, and exit handlers of the process. If a shut-down throws, the remaining ones still run; the
/// first exception is rethrown at the end.
OVRA_GUI_CORE_API void OvraGuiCoreDeinit();

} // extern "C"
