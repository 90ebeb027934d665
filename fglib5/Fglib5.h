/// \file
/// The frame-grabber runtime's C interface as this project declares it: one function for each row of
/// Fglib5Entries.inc.
///
/// Nobody links the runtime. Who declares these functions either defines them as forwarders to a runtime
/// opened at run time, or is a runtime. Thread safety, ownership and errors follow the runtime:
/// handles may be used from any thread; results that are texts live until the next call for the
/// same handle; failures are negative status codes (Fglib5Types.h) or null.
#pragma once

#include "fglib5/Fglib5Types.h"

extern "C" {

#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) result name parameters;
#include "fglib5/Fglib5Entries.inc"

} // extern "C"
