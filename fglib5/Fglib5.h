// SPDX-License-Identifier: MIT
/// \file
/// The frame-grabber runtime's C interface as this project declares it: one function for each row of
/// Fglib5Entries.inc.
///
/// No module links to the runtime. The library defines these functions as forwarders to a runtime that it
/// opens; the virtual installation defines them as a runtime.
///
/// Handles may be used from any thread. Returned texts are valid until the next call for the same handle.
/// Failures are negative status codes (Fglib5Types.h) or null.
#pragma once

#include "fglib5/Fglib5Types.h"

extern "C" {

#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) result name parameters;
#include "fglib5/Fglib5Entries.inc"

} // extern "C"
