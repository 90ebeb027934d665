// SPDX-License-Identifier: MIT
// One function for each entry of the runtime, under the runtime's own name.
//
// They must not be visible outside the library: on ELF the runtime's own inner calls would otherwise be
// resolved to them. The library is built with hidden visibility, and opens the runtime with its symbols kept
// local.

#include "fglib/EntryTable.h"
#include "platform/OutOfLine.h"

#include "fglib5/Fglib5.h"

using ovra::gui::fglib::ensureFglibBound;
using ovra::gui::fglib::entryTable;
using ovra::gui::fglib::isFglibBound;

#define FORWARD_UNGUARDED(result, name, arguments) \
    return entryTable.name.load(std::memory_order_relaxed) arguments;

#define FORWARD_GUARDED(result, name, arguments, missingResult)         \
    const auto entry = entryTable.name.load(std::memory_order_relaxed); \
    if (!entry)                                                         \
        return static_cast<result>(missingResult);                      \
    return entry arguments;

#define FORWARD_ERROR_CODE(result, name, arguments) \
    FORWARD_GUARDED(result, name, arguments, FG_RUNTIME_UNAVAILABLE)

#define FORWARD_ZERO(result, name, arguments) FORWARD_GUARDED(result, name, arguments, 0)

// The first call has functions of its own: as part of the forwarder, the binding would make every call set up
// a stack frame to save its arguments.
namespace first_call {

#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) \
    OVRA_OUT_OF_LINE static result name parameters                         \
    {                                                                      \
        ensureFglibBound(nullptr);                                         \
        FORWARD_##missing(result, name, arguments)                         \
    }
#include "fglib5/Fglib5Entries.inc"

} // namespace first_call

#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) \
    result name parameters                                                 \
    {                                                                      \
        if (!isFglibBound()) [[unlikely]]                                  \
            return first_call::name arguments;                             \
        FORWARD_##missing(result, name, arguments)                         \
    }

extern "C" {
#include "fglib5/Fglib5Entries.inc"
}
