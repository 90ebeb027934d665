/// \file
/// bindFglibFromDirectory: binds the frame-grabber runtime of a directory that the host knows.
///
/// The library finds the runtime by itself with the first call that needs it. This is for a host that wants
/// another one, or wants to know beforehand whether there is one.
#pragma once

#include "gui-core/Export.h"

extern "C" {

/// Loads the runtime `fglib5` from the folder `bin` of \p installationDirectory, a path in the process's
/// narrow encoding without a separator at its end, and sends the library's calls there from now on. A runtime
/// that was bound before stays loaded.
///
///   | result | meaning                                                  |
///   |--------|----------------------------------------------------------|
///   | 0      | bound                                                    |
///   | -5     | \p installationDirectory is null; nothing has changed    |
///   | -2130  | the runtime could not be loaded; nothing has changed     |
///
/// Any thread, while no board is loaded: a handle belongs to the runtime that gave it.
OVRA_GUI_CORE_API int bindFglibFromDirectory(const char* installationDirectory);

} // extern "C"
