// SPDX-License-Identifier: MIT
#include "CallGate.h"

#include "Failure.h"

#include <algorithm>
#include <chrono>
#include <memory>
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

// Number of entries on this thread's stack: the journal indents an entry that another one calls.
constinit thread_local unsigned int depth = 0;

} // namespace

CallGate& CallGate::instance()
{
    static auto* gate = new CallGate; // never destroyed: threads may call entries while the process ends
    return *gate;
}

CallGate::Passage::Passage(Entry entry, int board)
{
    auto& gate = instance();
    const auto index = static_cast<std::size_t>(entry);
    gate.count(index, board);
    ++depth;
    if (gate.m_watched.load(std::memory_order_relaxed)) [[unlikely]]
        m_plannedCode = gate.arriveWatched(index, board);
}

CallGate::Passage::~Passage()
{
    --depth;
}

void CallGate::count(std::size_t entry, int board)
{
    m_counts[entry].fetch_add(1, std::memory_order_relaxed);
    if (board >= 0 && static_cast<std::size_t>(board) < MAX_BOARDS)
        countsOf(static_cast<std::size_t>(board))[entry].fetch_add(1, std::memory_order_relaxed);
}

CallGate::Counts& CallGate::countsOf(std::size_t board)
{
    auto& place = m_boardCounts[board];
    if (auto* counts = place.load())
        return *counts;
    auto made = std::make_unique<Counts>();
    Counts* others = nullptr;
    if (place.compare_exchange_strong(others, made.get()))
        return *made.release();
    return *others;
}

/// Null for a board of which no call has come.
const CallGate::Counts* CallGate::countsOf(std::optional<unsigned int> board) const
{
    if (!board)
        return &m_counts;
    return *board < MAX_BOARDS ? m_boardCounts[*board].load() : nullptr;
}

int CallGate::arriveWatched(std::size_t entry, int board)
{
    int code = 0;
    std::uint32_t delay = 0;
    std::string line;
    void (*listener)(const char*) = nullptr;
    {
        const std::lock_guard lock(m_mutex);
        code = takeFault(entry, board);
        delay = delayOf(entry, board);
        line = std::string(2UL * (depth - 1), ' ') + NAMES[entry] +
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

bool CallGate::concerns(std::size_t entry, std::optional<unsigned int> board, std::size_t called,
                        int calledBoard)
{
    return (entry == called || entry == ANY_ENTRY) && (!board || static_cast<int>(*board) == calledBoard);
}

int CallGate::takeFault(std::size_t entry, int board)
{
    int code = 0;
    // Every plan counts this call, even if an earlier plan already makes it fail.
    std::erase_if(m_faults, [&](Fault& fault) {
        if (!concerns(fault.entry, fault.board, entry, board))
            return false;
        if (fault.callsLeft > 1) {
            --fault.callsLeft;
            return false;
        }
        if (code == 0)
            code = fault.code;
        return !fault.always;
    });
    updateWatched();
    return code;
}

std::uint32_t CallGate::delayOf(std::size_t entry, int board) const
{
    std::uint32_t longest = 0;
    for (const auto& delay : m_delays)
        if (concerns(delay.entry, delay.board, entry, board))
            longest = std::max(longest, delay.microseconds);
    return longest;
}

void CallGate::addFault(const FaultPlan& plan, Origin origin)
{
    if (plan.code >= 0)
        throw Failure(FG_INVALID_ARGUMENT, "A planned fault needs a code below 0");
    const auto index = entryNamed(plan.entry);
    const std::lock_guard lock(m_mutex);
    m_faults.push_back({index, plan.board, plan.nth, plan.code, plan.always, origin});
    updateWatched();
}

void CallGate::setDelay(std::string_view entry, std::optional<unsigned int> board, std::uint32_t microseconds,
                        Origin origin)
{
    const auto index = entryNamed(entry);
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_delays, [&](const Delay& delay) { return delay.entry == index && delay.board == board; });
    if (microseconds > 0)
        m_delays.push_back({index, board, microseconds, origin});
    updateWatched();
}

std::string CallGate::textOf(std::size_t entry, std::optional<unsigned int> board)
{
    return (entry == ANY_ENTRY ? "*" : NAMES[entry]) +
           (board ? " board " + std::to_string(*board) : std::string());
}

std::vector<std::string> CallGate::plans() const
{
    const std::lock_guard lock(m_mutex);
    std::vector<std::string> lines;
    for (const auto& fault : m_faults)
        lines.push_back("fault " + textOf(fault.entry, fault.board) + " nth " +
                        std::to_string(fault.callsLeft) + " code " + std::to_string(fault.code) +
                        (fault.always ? " always" : " once"));
    for (const auto& delay : m_delays) {
        const auto name = textOf(delay.entry, {});
        lines.push_back("delay " + name + " " + std::to_string(delay.microseconds / 1000) +
                        textOf(delay.entry, delay.board).substr(name.size()));
    }
    return lines;
}

void CallGate::clearFaults()
{
    const std::lock_guard lock(m_mutex);
    m_faults.clear();
    updateWatched();
}

void CallGate::clearPlans()
{
    clearPlansOf(Origin::Machine);
    clearPlansOf(Origin::Client);
}

void CallGate::clearPlansOf(Origin origin)
{
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_faults, [&](const Fault& fault) { return fault.origin == origin; });
    std::erase_if(m_delays, [&](const Delay& delay) { return delay.origin == origin; });
    updateWatched();
}

std::int64_t CallGate::calls(std::string_view entry, std::optional<unsigned int> board) const
{
    const auto index = entryNamed(entry);
    if (index == ANY_ENTRY)
        return totalCalls(board);
    const auto* counts = countsOf(board);
    return counts ? static_cast<std::int64_t>((*counts)[index].load()) : 0;
}

std::int64_t CallGate::totalCalls(std::optional<unsigned int> board) const
{
    std::uint64_t total = 0;
    if (const auto* counts = countsOf(board))
        for (const auto& count : *counts)
            total += count.load();
    return static_cast<std::int64_t>(total);
}

void CallGate::resetCounts()
{
    const auto reset = [](Counts& counts) {
        for (auto& count : counts)
            count.store(0);
    };
    reset(m_counts);
    for (const auto& counts : m_boardCounts)
        if (auto* const made = counts.load())
            reset(*made);
}

void CallGate::setJournal(bool on)
{
    const std::lock_guard lock(m_mutex);
    if (on)
        m_journal.clear();
    m_journalOn = on;
    updateWatched();
}

void CallGate::setListener(void (*listener)(const char* line))
{
    const std::lock_guard lock(m_mutex);
    m_listener = listener;
    updateWatched();
}

std::string CallGate::journal() const
{
    const std::lock_guard lock(m_mutex);
    std::string text;
    for (const auto& line : m_journal)
        text += line + '\n';
    return text;
}

bool CallGate::isEntry(std::string_view name)
{
    return name.empty() || name == "*" || std::ranges::find(NAMES, name) != NAMES.end();
}

const char* CallGate::nameOf(Entry entry)
{
    return NAMES[static_cast<std::size_t>(entry)];
}

std::size_t CallGate::entryNamed(std::string_view name)
{
    if (!isEntry(name))
        throw Failure(FG_INVALID_ARGUMENT, "The runtime has no entry '" + std::string(name) + "'");
    if (name.empty() || name == "*")
        return ANY_ENTRY;
    return static_cast<std::size_t>(std::ranges::find(NAMES, name) - NAMES.begin());
}

void CallGate::updateWatched()
{
    m_watched.store(m_journalOn || m_listener || !m_faults.empty() || !m_delays.empty(),
                    std::memory_order_relaxed);
}

} // namespace simulation
