/// \file
/// entries:: has one implementation for each exported entry, of the same name.
///
/// An implementation reports failure by throwing (Failure.h); Exports.cpp turns that into codes and nulls.
#pragma once

#include "EntryList.h"

namespace simulation::entries {

#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) result name parameters;
#include "fglib5/Fglib5Entries.inc"
#define DECLARED(name, parameters, arguments) int name parameters;
FGCAM_ENTRIES(DECLARED)
#undef DECLARED
#define DECLARED(result, name, parameters, arguments) result name parameters;
FGSIM_ENTRIES(DECLARED)
#undef DECLARED

} // namespace simulation::entries
