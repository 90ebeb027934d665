// SPDX-License-Identifier: MIT
/// \file
/// bindFglibFromDirectory: opens the frame-grabber runtime of a given directory and uses it from then on.
///
/// For hosts, and optional: without it the library opens the runtime of its own installation with the first
/// call that needs it (docs/host-guide.md says where that is). Call the function after OvraGuiCoreInit and
/// before the application starts, to choose another runtime or to know beforehand whether there is one. A
/// front end on the reference host names the runtime in reference::ApplicationOptions; both must be the same.
#pragma once

#include "gui-core/Export.h"

extern "C" {

/// Opens the runtime `fglib5` in the folder `bin` of \p installationDirectory, and sends the library's later
/// calls there. The host's own libraries must use the same runtime. A runtime that was opened before stays
/// loaded. The path is absolute, without a trailing separator, UTF-8 on Linux and in the process's code page
/// on Windows.
///
///   | result                          | meaning                                                  |
///   |---------------------------------|----------------------------------------------------------|
///   | 0 (FG_OK)                       | opened                                                   |
///   | -5 (FG_INVALID_ARGUMENT)        | \p installationDirectory is null; nothing has changed    |
///   | -2130 (FG_RUNTIME_UNAVAILABLE)  | the runtime could not be opened; nothing has changed     |
///
/// (fglib5/Fglib5Types.h declares the codes.) The result is also 0 for a library of that name which lacks the
/// entry `Fg_InitEx`, but then the choice does not last: the next call searches for a runtime again.
///
/// Any thread, while no other thread calls the runtime. Call it while no board is loaded: a board handle is
/// valid only in the runtime that created it.
///
/// \throws std::bad_alloc  if there is no memory; nothing has changed. The function is for C++ callers; its C
///     name is for those that open the library at run time.
OVRA_GUI_CORE_API int bindFglibFromDirectory(const char* installationDirectory);

} // extern "C"
