// SPDX-License-Identifier: MIT
/// \file
/// bindFglibFromDirectory: binds the frame-grabber runtime of a given directory.
///
/// Optional: the library finds the runtime itself in the first call that needs it. Call this function to
/// choose another runtime, or to know beforehand whether there is one.
#pragma once

#include "gui-core/Export.h"

extern "C" {

/// Loads the runtime `fglib5` from the folder `bin` of \p installationDirectory, and sends the library's
/// later calls there, if it has `Fg_InitEx`; without that entry, the next call searches for a runtime again.
/// The host's own libraries must use the same runtime. A runtime that was bound before stays loaded.
///
/// \p installationDirectory is in the process's narrow encoding, without a trailing separator.
///
///   | result | meaning                                                  |
///   |--------|----------------------------------------------------------|
///   | 0      | bound                                                    |
///   | -5     | \p installationDirectory is null; nothing has changed    |
///   | -2130  | the runtime could not be loaded; nothing has changed     |
///
/// Any thread, while no other thread calls the runtime. Call it while no board is loaded: a board handle is
/// valid only in the runtime that created it.
///
/// \throws std::bad_alloc  if there is no memory; nothing has changed
OVRA_GUI_CORE_API int bindFglibFromDirectory(const char* installationDirectory);

} // extern "C"
