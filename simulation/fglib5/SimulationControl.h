/// \file
/// Simulation control: what the simulated runtime exports beside the frame-grabber interface, for tests and
/// for curious people. The functions are looked up by name in the opened runtime, so this header declares
/// function types only.
///
///   machine      FgSim_setMachine
///   fault plan   FgSim_addFault, FgSim_clearFaults
///   delays       FgSim_setDelay
///   counting     FgSim_callCount, FgSim_totalCalls, FgSim_resetCounts, FgSim_live
///   journal      FgSim_setJournal, FgSim_getJournal
///   events       FgSim_raiseEvent
///
/// An "entry" is a name of Fglib5Entries.inc or of CameraControl.h, such as "Fg_Init"; null, "" or "*" stands
/// for any of them. Calls that the runtime makes inside itself (Fg_InitConfig calls Fg_Init) go through the
/// same entries and are counted, failed, delayed and written down like a client's.
///
/// All functions may be called from any thread. Results are FG_OK or a status code of Fglib5Types.h where
/// nothing else is said.
#pragma once

#include <cstddef>
#include <cstdint>

/// What FgSim_live counts.
enum FgSimLive : int
{
    FGSIM_BOARD_HANDLES = 1,
    FGSIM_RINGS = 2,
    FGSIM_RING_BYTES = 3, ///< image memory that the runtime has allocated, of all rings
    FGSIM_ACQUIRING_CHANNELS = 4,
    FGSIM_APPLET_ITERATORS = 5,
};

extern "C" {

/// The machine description that the next Fg_InitLibraries reads (UTF-8 path). Goes before the environment
/// variable OVRA_MACHINE; null gives way to it again.
using FgSim_setMachine_t = int(const char* path);

/// The \p nth call of \p entry from now on fails with \p code (below 0), once; \p nth 0 is every call. The
/// entry then does nothing but fail, except that entries which release something still release it: only their
/// result is that of a failure. FG_INVALID_ARGUMENT for an unknown entry or another code.
using FgSim_addFault_t = int(const char* entry, std::uint64_t nth, int code);

/// Forgets all planned faults, those of the machine description too.
using FgSim_clearFaults_t = int();

/// Every call of \p entry first takes this long; 0 ends that.
using FgSim_setDelay_t = int(const char* entry, std::uint32_t microseconds);

/// Calls of \p entry since the runtime was opened or FgSim_resetCounts; FG_INVALID_ARGUMENT when it is
/// unknown.
using FgSim_callCount_t = std::int64_t(const char* entry);
using FgSim_totalCalls_t = std::int64_t();
using FgSim_resetCounts_t = int();

/// How many of a kind (FgSimLive) exist at present.
using FgSim_live_t = std::int64_t(int kind);

/// Starts an empty journal (1) or ends writing (0).
using FgSim_setJournal_t = int(int on);

/// The journal, one line a call: the entry's name, two blanks deeper for each entry that it was called from,
/// and " -> -4" behind it where the call was made to fail. \p textBytes is the room on the way in, the needed
/// size with the closing zero on the way out; a null \p text asks for the size alone.
using FgSim_getJournal_t = int(char* text, std::size_t* textBytes);

/// Lets an event of a board with an applet on it happen.
using FgSim_raiseEvent_t = int(unsigned int board, const char* event);

} // extern "C"
