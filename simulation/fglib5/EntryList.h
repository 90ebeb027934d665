// SPDX-License-Identifier: MIT
/// \file
/// Entry: a number for each exported entry that the gate counts.
#pragma once

#include "simulation/fglib5/SimulationControl.h"

#include "fglib5/CameraControl.h"
#include "fglib5/Fglib5.h"

namespace simulation {

enum class Entry : unsigned int
{
#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) name,
#include "fglib5/Fglib5Entries.inc"
#define FGCAM_ENTRY(result, name, parameters, arguments) name,
#include "fglib5/CameraControl.inc"
    Count
};

} // namespace simulation
