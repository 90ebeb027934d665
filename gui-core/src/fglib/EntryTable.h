// SPDX-License-Identifier: MIT
/// \file
/// The table of the frame-grabber runtime's entries, and what fills it.
///
/// The library calls the runtime only through the functions of fglib5/Fglib5.h, which Forwarders.cpp defines:
/// each binds the table on the first call and forwards to its slot. The effect of a missing entry is listed
/// beside the entry in Fglib5Entries.inc.
#pragma once

#include "fglib5/Fglib5Types.h"

#include <atomic>

namespace ovra::gui::fglib {

/// Null slots: not bound yet, or the runtime lacks the entry. There is no separate flag: the table counts as
/// bound when Fg_InitEx is set. It is stored last, so a thread that sees it set sees every other slot as
/// well.
struct EntryTable
{
#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) \
    std::atomic<result(*) parameters> name{nullptr};
#include "fglib5/Fglib5Entries.inc"
};

// Defined in the header, so that the compiler knows it is this library's own and reaches it without the
// loader's tables.
inline constinit EntryTable entryTable;

/// Loads the runtime from \p directory, or from the installation directory when it is null, and fills the
/// table. Returns FG_OK, or FG_RUNTIME_UNAVAILABLE when it cannot be loaded; the table is then unchanged. A
/// name that the runtime lacks is no error. Threads may call it concurrently: they store the same values.
int bindFglib(const char* directory);

inline bool isFglibBound()
{
    return entryTable.Fg_InitEx.load(std::memory_order_acquire) != nullptr;
}

/// Calls bindFglib unless the table is bound. A failure shows as null slots; the next call tries again. The
/// forwarders pass null.
inline void ensureFglibBound(const char* directory)
{
    if (!isFglibBound()) [[unlikely]]
        bindFglib(directory);
}

} // namespace ovra::gui::fglib
