// SPDX-License-Identifier: MIT
/// \file
/// Simulation control: the exports of the simulated runtime beside the frame-grabber interface, for tests and
/// rehearsals. Clients look the functions up by name in the opened runtime, so this header declares function
/// types only. SimulationControl.inc lists and documents them.
///
///   machine      FgSim_setMachine
///   fault plan   FgSim_addFault, FgSim_clearFaults
///   delays       FgSim_setDelay
///   counting     FgSim_callCount, FgSim_totalCalls, FgSim_resetCounts, FgSim_live
///   journal      FgSim_setJournal, FgSim_getJournal, FgSim_setListener
///   events       FgSim_raiseEvent
///   rehearsals   FgSim_perform
///
/// An "entry" is a name of Fglib5Entries.inc or of CameraControl.inc, such as "Fg_Init"; null, "" or "*"
/// stands for all of them. The runtime's inner calls (Fg_InitConfig calls Fg_Init) go through the same
/// entries and are counted, failed, delayed and recorded like a client's.
///
/// All functions may be called from any thread. Unless stated otherwise they return FG_OK or a status code of
/// Fglib5Types.h.
#pragma once

#include <cstddef>
#include <cstdint>

/// The objects that FgSim_live counts.
enum FgSimLive : int
{
    FGSIM_BOARD_HANDLES = 1,
    FGSIM_RINGS = 2,
    FGSIM_RING_BYTES = 3, ///< image memory that the runtime has allocated, of all rings
    FGSIM_ACQUIRING_CHANNELS = 4,
    FGSIM_APPLET_ITERATORS = 5,
};

extern "C" {

// FgSim_setMachine_t and so on: the types of the functions.
#define FGSIM_ENTRY(result, name, parameters, arguments) using name##_t = result parameters;
#include "simulation/fglib5/SimulationControl.inc"

} // extern "C"
