#include "Probe.h"

#include "Failure.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace simulation {

namespace {

constexpr std::array NAMES = {
#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) #name,
#include "fglib5/Fglib5Entries.inc"
#define FGCAM_ENTRY(result, name, parameters, arguments) #name,
#include "fglib5/CameraControl.inc"
};
static_assert(NAMES.size() == static_cast<std::size_t>(Entry::Count));

// How many entries of this thread are under way: an entry called by another one is indented in the journal.
constinit thread_local unsigned int depth = 0;

} // namespace

Probe& Probe::instance()
{
    static auto* probe = new Probe; // outlives every thread that may still call in while the process ends
    return *probe;
}

Probe::Visit::Visit(Entry entry) : m_plannedCode(0)
{
    auto& probe = instance();
    const auto index = static_cast<std::size_t>(entry);
    probe.m_counts[index].fetch_add(1, std::memory_order_relaxed);
    if (probe.m_watched.load(std::memory_order_relaxed))
        m_plannedCode = probe.arriveWatched(index);
    ++depth;
}

Probe::Visit::~Visit()
{
    --depth;
}

int Probe::arriveWatched(std::size_t entry)
{
    int code = 0;
    std::uint32_t delay = 0;
    std::string line;
    void (*listener)(const char*) = nullptr;
    {
        const std::lock_guard lock(m_mutex);
        code = takeFault(entry);
        delay = delayOf(entry);
        line = std::string(2UL * depth, ' ') + NAMES[entry] +
               (code == 0 ? std::string() : " -> " + std::to_string(code));
        if (m_journalOn)
            m_journal.push_back(line);
        listener = m_listener;
    }
    if (listener)
        listener(line.c_str());
    if (delay > 0)
        std::this_thread::sleep_for(std::chrono::microseconds(delay));
    return code;
}

int Probe::takeFault(std::size_t entry)
{
    int code = 0;
    // Every plan counts this call, also when an earlier one already makes it fail.
    std::erase_if(m_faults, [&](Fault& fault) {
        if (fault.entry != entry && fault.entry != ANY_ENTRY)
            return false;
        const bool everyCall = fault.callsLeft == 0;
        const bool due = everyCall || --fault.callsLeft == 0;
        if (due && code == 0)
            code = fault.code;
        return due && !everyCall;
    });
    updateWatched();
    return code;
}

std::uint32_t Probe::delayOf(std::size_t entry) const
{
    std::uint32_t longest = 0;
    for (const auto& delay : m_delays)
        if (delay.entry == entry || delay.entry == ANY_ENTRY)
            longest = std::max(longest, delay.microseconds);
    return longest;
}

void Probe::addFault(std::string_view entry, std::uint64_t nth, int code, Origin origin)
{
    if (code >= 0)
        throw Failure(FG_INVALID_ARGUMENT, "A planned fault needs a code below 0");
    const auto index = entryNamed(entry);
    const std::lock_guard lock(m_mutex);
    m_faults.push_back({index, nth, code, origin});
    updateWatched();
}

void Probe::setDelay(std::string_view entry, std::uint32_t microseconds, Origin origin)
{
    const auto index = entryNamed(entry);
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_delays, [&](const Delay& delay) { return delay.entry == index; });
    if (microseconds > 0)
        m_delays.push_back({index, microseconds, origin});
    updateWatched();
}

void Probe::clearFaults()
{
    const std::lock_guard lock(m_mutex);
    m_faults.clear();
    updateWatched();
}

void Probe::clearPlansOf(Origin origin)
{
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_faults, [&](const Fault& fault) { return fault.origin == origin; });
    std::erase_if(m_delays, [&](const Delay& delay) { return delay.origin == origin; });
    updateWatched();
}

std::int64_t Probe::calls(std::string_view entry) const
{
    const auto index = entryNamed(entry);
    return index == ANY_ENTRY ? totalCalls() : static_cast<std::int64_t>(m_counts[index].load());
}

std::int64_t Probe::totalCalls() const
{
    std::uint64_t total = 0;
    for (const auto& count : m_counts)
        total += count.load();
    return static_cast<std::int64_t>(total);
}

void Probe::resetCounts()
{
    for (auto& count : m_counts)
        count.store(0);
}

void Probe::setJournal(bool on)
{
    const std::lock_guard lock(m_mutex);
    if (on)
        m_journal.clear();
    m_journalOn = on;
    updateWatched();
}

void Probe::setListener(void (*listener)(const char* line))
{
    const std::lock_guard lock(m_mutex);
    m_listener = listener;
    updateWatched();
}

std::string Probe::journal() const
{
    const std::lock_guard lock(m_mutex);
    std::string text;
    for (const auto& line : m_journal)
        text += line + '\n';
    return text;
}

bool Probe::isEntry(std::string_view name)
{
    return name.empty() || name == "*" || std::ranges::find(NAMES, name) != NAMES.end();
}

const char* Probe::nameOf(Entry entry)
{
    return NAMES[static_cast<std::size_t>(entry)];
}

std::size_t Probe::entryNamed(std::string_view name)
{
    if (!isEntry(name))
        throw Failure(FG_INVALID_ARGUMENT, "The runtime has no entry '" + std::string(name) + "'");
    if (name.empty() || name == "*")
        return ANY_ENTRY;
    return static_cast<std::size_t>(std::ranges::find(NAMES, name) - NAMES.begin());
}

void Probe::updateWatched()
{
    m_watched.store(m_journalOn || m_listener || !m_faults.empty() || !m_delays.empty(),
                    std::memory_order_relaxed);
}

} // namespace simulation
