// SPDX-License-Identifier: MIT
/// \file
/// Step: one action of a rehearsal, which causes a fault or ends it. The text of a step is one line:
///
///   fault ENTRY [board B] [nth N] [code C] [once|always]   a call of an entry fails
///   delay ENTRY MS [board B]                               delays its calls; 0 ends the delay
///   calls [ENTRY] [board B]                                number of calls of an entry
///   faults                                                 lists all that is planned, unplugged or short
///   forget                                                 removes all planned faults and delays
///   unplug board B | camera B PORT | link B PORT
///   plug board B | camera B PORT | link B PORT
///   loosen B PORT N lost|torn|late [seed S]                damages one image in N; N 0: none
///   busy THREADS                                           so many threads compute; 0 ends them
///   image-memory BYTES|free                                limits the memory of all rings
///   disk full|free                                         storing of files fails or works
///   scenario FILE | stop | (nothing)                       plays one, ends it, says how far it is
///
/// An entry is a name of Fglib5Entries.inc or CameraControl.inc, or "*" for all of them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace simulation {

struct Step
{
    enum class Action
    {
        Fault,
        Delay,
        Calls,
        Faults,
        Forget,
        Unplug,
        Plug,
        Loosen,
        Busy,
        Memory,
        Disk,
        Scenario
    };
    enum class Part
    {
        Board,
        Camera,
        Link
    };
    enum class Damage
    {
        Lost,
        Torn,
        Late
    };

    static constexpr unsigned int MAX_INDEX = 999; ///< highest index of boards, ports, channels

    Action action = Action::Faults;
    std::string entry;                 ///< fault, delay, calls; scenario: the file, "stop" or ""
    std::optional<unsigned int> board; ///< fault, delay, calls: only calls of this board
    std::uint64_t nth = 1;             ///< fault
    int code = 0;                      ///< fault
    bool always = false;               ///< fault: also all calls after the n-th
    Part part = Part::Board;           ///< unplug, plug
    unsigned int port = 0;             ///< of a camera or a link
    Damage damage = Damage::Lost;      ///< loosen
    std::uint64_t number = 0;          ///< delay: ms; loosen: one in N; busy: threads; memory: bytes
    std::uint64_t seed = 1;            ///< loosen
    bool seeded = false;               ///< loosen: the step has a seed of its own
    bool free = false;                 ///< memory, disk
};

/// Throws FG_INVALID_ARGUMENT with a line that names the wrong word. Does not check whether the machine has
/// the board and the port.
Step readStep(std::string_view words);

/// The text of a part in the notation of readStep: "camera 0 1".
std::string partText(Step::Part part, unsigned int board, unsigned int port);
const char* damageText(Step::Damage damage);

} // namespace simulation
