/// \file
/// The exported entries by their names.
///
///   FGCAM_ENTRIES, FGSIM_ENTRIES     lists of the entries beside Fglib5Entries.inc
///   Entry                            a number for each entry that the probe watches
#pragma once

#include "simulation/fglib5/SimulationControl.h"

#include "fglib5/CameraControl.h"
#include "fglib5/Fglib5.h"

// clang-format off
#define FGCAM_ENTRIES(X)                                                                                        \
    X(FgCam_getCount, (unsigned int board), (board))                                                            \
    X(FgCam_getPort, (unsigned int board, unsigned int position), (board, position))                            \
    X(FgCam_getString, (unsigned int board, unsigned int port, int selector, char* text, std::size_t textBytes), \
      (board, port, selector, text, textBytes))                                                                 \
    X(FgCam_getInteger, (unsigned int board, unsigned int port, int selector, int* value),                      \
      (board, port, selector, value))                                                                           \
    X(FgCam_setInteger, (unsigned int board, unsigned int port, int selector, int value),                       \
      (board, port, selector, value))                                                                           \
    X(FgCam_start, (unsigned int board, unsigned int port), (board, port))                                      \
    X(FgCam_stop, (unsigned int board, unsigned int port), (board, port))

#define FGSIM_ENTRIES(X)                                                                                        \
    X(int, FgSim_setMachine, (const char* path), (path))                                                        \
    X(int, FgSim_addFault, (const char* entry, std::uint64_t nth, int code), (entry, nth, code))                \
    X(int, FgSim_clearFaults, (), ())                                                                           \
    X(int, FgSim_setDelay, (const char* entry, std::uint32_t microseconds), (entry, microseconds))              \
    X(std::int64_t, FgSim_callCount, (const char* entry), (entry))                                              \
    X(std::int64_t, FgSim_totalCalls, (), ())                                                                   \
    X(int, FgSim_resetCounts, (), ())                                                                           \
    X(std::int64_t, FgSim_live, (int kind), (kind))                                                             \
    X(int, FgSim_setJournal, (int on), (on))                                                                    \
    X(int, FgSim_getJournal, (char* text, std::size_t* textBytes), (text, textBytes))                           \
    X(int, FgSim_raiseEvent, (unsigned int board, const char* event), (board, event))
// clang-format on

namespace simulation {

enum class Entry : unsigned int
{
#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) name,
#include "fglib5/Fglib5Entries.inc"
#define NUMBERED(name, parameters, arguments) name,
    FGCAM_ENTRIES(NUMBERED)
#undef NUMBERED
        Count
};

} // namespace simulation
