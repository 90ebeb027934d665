// SPDX-License-Identifier: MIT
#include "fglib/EntryTable.h"

#include "fglib/RuntimeLibrary.h"
#include "platform/SharedLibrary.h"

#include "gui-core/RuntimeBinding.h"

namespace ovra::gui::fglib {

namespace {

constexpr int ENTRY_COUNT = 0
#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) +1
#include "fglib5/Fglib5Entries.inc"
    ;
static_assert(ENTRY_COUNT == 106, "an entry was added to, or lost from, the runtime's interface");

/// One look-up's results, before they are published.
struct FoundEntries
{
#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) void* name;
#include "fglib5/Fglib5Entries.inc"
};

template <class Entry>
void store(std::atomic<Entry>& slot, void* found, std::memory_order order)
{
    slot.store(reinterpret_cast<Entry>(found), order);
}

/// Looks every entry up and stores what comes, null or not.
void resolveEntries(const SharedLibrary& runtime)
{
    FoundEntries found{};
#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) \
    found.name = runtime.locate(symbol);
#define FGLIB5_SECOND_LOOKUP(name) found.name = runtime.locate(#name);
#include "fglib5/Fglib5Entries.inc"

#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) \
    if (static_cast<void*>(&entryTable.name) != &entryTable.Fg_InitEx)     \
        store(entryTable.name, found.name, std::memory_order_relaxed);
#include "fglib5/Fglib5Entries.inc"
    store(entryTable.Fg_InitEx, found.Fg_InitEx, std::memory_order_release);
}

} // namespace

int bindFglib(const char* directory)
{
    const auto runtime = openRuntimeLibrary("fglib5", directory);
    if (!runtime)
        return FG_RUNTIME_UNAVAILABLE;
    resolveEntries(*runtime);
    return FG_OK;
}

} // namespace ovra::gui::fglib

int bindFglibFromDirectory(const char* installationDirectory)
{
    return installationDirectory ? ovra::gui::fglib::bindFglib(installationDirectory) : FG_INVALID_ARGUMENT;
}
