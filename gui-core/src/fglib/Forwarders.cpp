// One function for each entry of the runtime, under the runtime's own name.
//
// They must not be visible outside the library: on ELF the runtime's own inner calls would otherwise be
// resolved to them. The library is built with hidden visibility, and opens the runtime with its symbols kept
// local.

#include "fglib/EntryTable.h"

#include "fglib5/Fglib5.h"

using ovra::gui::fglib::ensureFglibBound;
using ovra::gui::fglib::entryTable;

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

#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) \
    result name parameters                                                 \
    {                                                                      \
        ensureFglibBound(nullptr);                                         \
        FORWARD_##missing(result, name, arguments)                         \
    }

extern "C" {
#include "fglib5/Fglib5Entries.inc"
}
