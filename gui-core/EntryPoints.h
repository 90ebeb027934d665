/// \file
/// Start-up and shut-down of ovra-lib-gui-core.
///
/// The host calls OvraGuiCoreInit after it has loaded the library and OvraGuiCoreDeinit before it unloads it.
/// From the first OvraGuiCoreInit on the library stays in the process, also when the host unloads it: the log
/// dispatcher may call it at any time.
#pragma once

#include "gui-core/Export.h"

extern "C" {

/// Starts the host libraries this one stands on: core, environment, parameters, display, display-fglib and
/// fglib-model, in this order. Each call starts them again (they count) and needs one OvraGuiCoreDeinit.
///
/// Any thread; concurrent calls wait for each other. An exception, of a host library's start-up or for want
/// of memory, passes through; what was started before it stays started until the OvraGuiCoreDeinit that
/// balances this call like any other.
OVRA_GUI_CORE_API void OvraGuiCoreInit();

/// Takes one OvraGuiCoreInit back. The last one shuts the host libraries down, in the order of their
/// start-ups and as often as they were started, and destroys the library's process-wide objects, except its
/// connection to the log dispatcher, which lasts until the process ends. Any thread. May be called from an
/// exit handler of the process.
///
/// An exception of a host library's shut-down keeps none of this from being done; the first one is thrown at
/// the end.
OVRA_GUI_CORE_API void OvraGuiCoreDeinit();

} // extern "C"
