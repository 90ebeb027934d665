// SPDX-License-Identifier: MIT
/// \file
/// The namespace entries has one implementation for each exported entry, with the same name.
///
/// An implementation reports a failure by throwing (Failure.h); Exports.cpp turns it into a code or null.
#pragma once

#include "EntryList.h"

namespace simulation::entries {

#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) result name parameters;
#include "fglib5/Fglib5Entries.inc"
#define FGCAM_ENTRY(result, name, parameters, arguments) result name parameters;
#include "fglib5/CameraControl.inc"
#define FGSIM_ENTRY(result, name, parameters, arguments) result name parameters;
#include "simulation/fglib5/SimulationControl.inc"

} // namespace simulation::entries
