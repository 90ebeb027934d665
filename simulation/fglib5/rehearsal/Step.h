/// \file
/// Step: one thing that goes wrong on purpose, or is put right again, as one line says it.
///
///   fault ENTRY [board B] [nth N] [code C] [once|always]   a call of an entry fails
///   delay ENTRY MS [board B]                               its calls take longer; 0 ends that
///   calls [ENTRY]                                          how often an entry was called
///   faults                                                 everything planned, unplugged or short
///   forget                                                 no planned fault and no delay any more
///   unplug board B | camera B PORT | link B PORT
///   plug board B | camera B PORT | link B PORT
///   loosen B PORT N lost|torn|late [seed S]                one image in N suffers; N 0: none
///   busy THREADS                                           so many threads compute; 0 ends that
///   image-memory BYTES|free                                as much is there for images at most
///   disk full|free                                         whether the runtime can store files
///   scenario FILE | stop | (nothing)                       plays one, ends it, tells how far it is
///
/// An entry is a name of Fglib5Entries.inc or CameraControl.inc, or "*" for any of them.
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

    static constexpr unsigned int MAX_INDEX = 999; ///< of boards, ports, channels

    Action action = Action::Faults;
    std::string entry;                 ///< fault, delay, calls; scenario: the file, "stop" or ""
    std::optional<unsigned int> board; ///< fault, delay: of this one alone
    std::uint64_t nth = 1;             ///< fault
    int code = 0;                      ///< fault
    bool always = false;               ///< fault: from the n-th call on
    Part part = Part::Board;           ///< unplug, plug
    unsigned int port = 0;             ///< of a camera or a link
    Damage damage = Damage::Lost;      ///< loosen
    std::uint64_t number = 0;          ///< delay: ms; loosen: one in N; busy: threads; memory: bytes
    std::uint64_t seed = 1;            ///< loosen
    bool seeded = false;               ///< loosen: the step itself names the seed
    bool free = false;                 ///< memory, disk
};

/// Throws FG_INVALID_ARGUMENT with a line that says which word is wrong. Whether the machine has the board
/// and the port is not looked at.
Step readStep(std::string_view words);

/// The text of a part as readStep takes it: "camera 0 1".
std::string partText(Step::Part part, unsigned int board, unsigned int port);
const char* damageText(Step::Damage damage);

} // namespace simulation
