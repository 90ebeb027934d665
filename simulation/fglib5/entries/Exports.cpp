// SPDX-License-Identifier: MIT
// The exported functions, one for each row of a list. Each passes the gate, calls the implementation with
// its name, and turns exceptions into results.

#include "CallGate.h"
#include "Failure.h"
#include "entries/Entries.h"
#include "entries/Linkage.h"
#include "hardware/Runtime.h"

#include <new>
#include <string_view>
#include <tuple>
#include <type_traits>

namespace simulation {

namespace {

// Entries that release a client's object. A client does not retry them, so a planned failure changes their
// result only.
bool releases(Entry entry)
{
    switch (entry) {
    case Entry::Fg_FreeLibraries:
    case Entry::Fg_FreeGrabber:
    case Entry::Fg_FreeMem:
    case Entry::Fg_FreeMemEx:
    case Entry::Fg_FreeMemHead:
    case Entry::Fg_DelMem:
    case Entry::Fg_freeParameterStringWithType:
    case Entry::Fg_stopAcquire:
    case Entry::Fg_stopAcquireEx:
    case Entry::Fg_freeAppletIterator:
    case Entry::FgCam_stop:
        return true;
    default:
        return false;
    }
}

template <class Result>
Result failed(int code, const char* line) noexcept
{
    setLastError(code, line);
    if constexpr (std::is_pointer_v<Result>)
        return nullptr;
    else if constexpr (std::is_unsigned_v<Result>)
        return 0;
    else if constexpr (!std::is_void_v<Result>)
        return code;
}

template <class Result, class Call>
Result guarded(Call call) noexcept
{
    try {
        return call();
    } catch (const Failure& failure) {
        return failed<Result>(failure.code(), failure.what());
    } catch (const std::bad_alloc&) {
        return failed<Result>(FG_NO_MEMORY, descriptionOf(FG_NO_MEMORY));
    } catch (const std::exception& failure) {
        return failed<Result>(FG_INIT_ERROR, failure.what());
    }
}

// Position of the parameter "board" in a list such as "(const char* file, unsigned int board)"; -1 if there
// is none.
constexpr int positionOfBoard(std::string_view parameters)
{
    int position = 0;
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        if (parameters[i] == ',')
            ++position;
        const auto rest = parameters.substr(i);
        if (rest.starts_with(" board,") || rest.starts_with(" board)"))
            return position;
    }
    return -1;
}

// The board that a call concerns: that of its handle, or the one in its argument; -1: none.
template <class... Arguments>
int calledBoard(int position, const Arguments&... arguments)
{
    int board = -1;
    [[maybe_unused]] int each = 0;
    [[maybe_unused]] const auto look = [&](const auto& argument) {
        using Argument = std::remove_cvref_t<decltype(argument)>;
        if constexpr (std::is_same_v<Argument, Fg_Struct*>)
            board = Runtime::instance().indexOf(argument);
        else if constexpr (std::is_integral_v<Argument>)
            board = each == position ? static_cast<int>(argument) : board;
        ++each;
    };
    (look(arguments), ...);
    return board;
}

template <class Result, class BoardOf, class Call>
Result watched(Entry entry, const BoardOf& boardOf, Call call) noexcept
{
    return guarded<Result>([&]() -> Result {
        const CallGate::Passage passage(entry, boardOf());
        if (passage.plannedCode() == 0)
            return call();
        if (releases(entry))
            call();
        throw Failure(passage.plannedCode(), std::string("Planned failure of ") + CallGate::nameOf(entry));
    });
}

} // namespace

} // namespace simulation

// clang-format off
// Makes a function that returns the board that a call concerns.
#define FGSIM_BOARD_OF(parameters, arguments)                                                                  \
    [&] {                                                                                                      \
        return std::apply(                                                                                     \
            [](const auto&... each) {                                                                          \
                return simulation::calledBoard(simulation::positionOfBoard(#parameters), each...);             \
            },                                                                                                 \
            std::tie arguments);                                                                               \
    }
// clang-format on

extern "C" {

#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing)                                 \
    FGSIM_LINKAGE(name) result name parameters                                                             \
    {                                                                                                      \
        return simulation::watched<result>(simulation::Entry::name, FGSIM_BOARD_OF(parameters, arguments), \
                                           [&] { return simulation::entries::name arguments; });           \
    }
#include "fglib5/Fglib5Entries.inc"

#define FGCAM_ENTRY(result, name, parameters, arguments)                                                   \
    FGSIM_LINKAGE(name) result name parameters                                                             \
    {                                                                                                      \
        return simulation::watched<result>(simulation::Entry::name, FGSIM_BOARD_OF(parameters, arguments), \
                                           [&] { return simulation::entries::name arguments; });           \
    }
#include "fglib5/CameraControl.inc"

// The control functions do not pass the gate, since they control it.
#define FGSIM_ENTRY(result, name, parameters, arguments)                                         \
    FGSIM_LINKAGE(name) result name parameters                                                   \
    {                                                                                            \
        return simulation::guarded<result>([&] { return simulation::entries::name arguments; }); \
    }
#include "simulation/fglib5/SimulationControl.inc"

} // extern "C"

// Fglib5.h declares the runtime's own entries, so the compiler compares them with their definitions.
#define FGCAM_ENTRY(result, name, parameters, arguments) \
    static_assert(std::is_same_v<decltype(name), name##_t>);
#include "fglib5/CameraControl.inc"
#define FGSIM_ENTRY(result, name, parameters, arguments) \
    static_assert(std::is_same_v<decltype(name), name##_t>);
#include "simulation/fglib5/SimulationControl.inc"
