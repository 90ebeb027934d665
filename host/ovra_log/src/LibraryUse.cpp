// SPDX-License-Identifier: MIT
#include "ovra_log/reference/LibraryUse.h"

#include "ovra_log/reference/Log.h"

#include <map>
#include <mutex>

namespace ovra::reference {

namespace {

struct Uses
{
    std::mutex mutex;
    std::map<std::string, int> byLibrary;
};

// Never destroyed: a static owner may shut a library down at the end of the process.
Uses& theUses()
{
    static auto* uses = new Uses;
    return *uses;
}

bool takeBack(const std::string& library)
{
    Uses& uses = theUses();
    const std::lock_guard lock(uses.mutex);
    int& count = uses.byLibrary[library];
    if (count == 0)
        return false;
    --count;
    return true;
}

} // namespace

void libraryStarted(const std::string& library)
{
    Uses& uses = theUses();
    const std::lock_guard lock(uses.mutex);
    ++uses.byLibrary[library];
}

void libraryEnded(const std::string& library)
{
    if (!takeBack(library))
        log(LogLevel::Error, library + " is shut down more often than it was started");
}

int libraryUses(const std::string& library)
{
    Uses& uses = theUses();
    const std::lock_guard lock(uses.mutex);
    const auto found = uses.byLibrary.find(library);
    return found == uses.byLibrary.end() ? 0 : found->second;
}

} // namespace ovra::reference
