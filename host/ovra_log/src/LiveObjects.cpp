// SPDX-License-Identifier: MIT
#include "ovra_log/reference/LiveObjects.h"

#include "ovra_log/reference/Journal.h"

#include <mutex>

namespace ovra::reference {

namespace {

struct Counters
{
    std::mutex mutex;
    std::map<std::string, std::atomic<long>> byName;
};

// Never destroyed: an object that a static owner releases at the end of the process is still counted down.
Counters& theCounters()
{
    static auto* counters = new Counters;
    return *counters;
}

} // namespace

std::atomic<long>& detail::liveCounter(const std::type_info& type)
{
    Counters& counters = theCounters();
    const std::lock_guard lock(counters.mutex);
    return counters.byName[readableName(type)];
}

std::map<std::string, long> allLiveObjects()
{
    Counters& counters = theCounters();
    const std::lock_guard lock(counters.mutex);
    return {counters.byName.begin(), counters.byName.end()};
}

} // namespace ovra::reference
