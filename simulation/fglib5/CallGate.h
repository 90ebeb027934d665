// SPDX-License-Identifier: MIT
/// \file
/// CallGate: every call of an entry passes it. It counts calls and, on demand, delays, fails and records
/// them.
///
/// While it only counts, it costs each call two increments, one branch and the search for its board.
#pragma once

#include "EntryList.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace simulation {

class CallGate
{
public:
    static CallGate& instance();

    /// One call of an entry, from its arrival to its return.
    class Passage
    {
    public:
        /// \p board is the one that the call concerns, -1 for none.
        Passage(Entry entry, int board);
        ~Passage();
        Passage(const Passage&) = delete;
        Passage& operator=(const Passage&) = delete;

        /// The code with which this call has to fail, 0: none.
        int plannedCode() const noexcept { return m_plannedCode; }

    private:
        int m_plannedCode = 0;
    };

    /// Loading the next machine removes the plans of a machine description; those of a client stay.
    enum class Origin
    {
        Machine,
        Client
    };

    /// The n-th call of an entry from now on fails.
    struct FaultPlan
    {
        std::string entry; ///< as in SimulationControl.h
        std::optional<unsigned int> board = {};
        std::uint64_t nth = 1;
        int code = 0;        ///< below 0
        bool always = false; ///< and all later calls
    };

    // All of these throw FG_INVALID_ARGUMENT.
    void addFault(const FaultPlan& plan, Origin origin = Origin::Client);
    /// 0 ends the delay. If several delays match a call, the longest one applies.
    void setDelay(std::string_view entry, std::optional<unsigned int> board, std::uint32_t microseconds,
                  Origin origin = Origin::Client);
    void clearFaults();
    void clearPlans();
    void clearPlansOf(Origin origin);
    /// Planned faults and delays, each as the step that would plan it.
    std::vector<std::string> plans() const;

    /// Of one board alone, where it is named.
    std::int64_t calls(std::string_view entry, std::optional<unsigned int> board = {}) const;
    std::int64_t totalCalls(std::optional<unsigned int> board = {}) const;
    void resetCounts();

    void setJournal(bool on);
    void setListener(void (*listener)(const char* line));
    std::string journal() const;

    static bool isEntry(std::string_view name);
    static const char* nameOf(Entry entry);

private:
    static constexpr auto ENTRY_COUNT = static_cast<std::size_t>(Entry::Count);
    static constexpr std::size_t ANY_ENTRY = ENTRY_COUNT;
    static constexpr std::size_t MAX_BOARDS = 1000; ///< that are counted for themselves

    using Counts = std::array<std::atomic<std::uint64_t>, ENTRY_COUNT>;

    struct Fault
    {
        std::size_t entry = ANY_ENTRY;
        std::optional<unsigned int> board;
        std::uint64_t callsLeft = 1; ///< until it strikes, including that call
        int code = 0;
        bool always = false;
        Origin origin = Origin::Client;
    };

    struct Delay
    {
        std::size_t entry = ANY_ENTRY;
        std::optional<unsigned int> board;
        std::uint32_t microseconds = 0;
        Origin origin = Origin::Client;
    };

    static std::size_t entryNamed(std::string_view name);
    static bool concerns(std::size_t entry, std::optional<unsigned int> board, std::size_t called,
                         int calledBoard);
    static std::string textOf(std::size_t entry, std::optional<unsigned int> board);
    void count(std::size_t entry, int board);
    Counts& countsOf(std::size_t board);
    const Counts* countsOf(std::optional<unsigned int> board) const;
    int arriveWatched(std::size_t entry, int board);
    int takeFault(std::size_t entry, int board);
    std::uint32_t delayOf(std::size_t entry, int board) const;
    void updateWatched();

    Counts m_counts{};
    /// Made by a board's first call, never freed.
    std::array<std::atomic<Counts*>, MAX_BOARDS> m_boardCounts{};
    std::atomic<bool> m_watched{false};

    mutable std::mutex m_mutex;
    std::vector<Fault> m_faults;
    std::vector<Delay> m_delays;
    bool m_journalOn = false;
    void (*m_listener)(const char* line) = nullptr;
    std::vector<std::string> m_journal;
};

} // namespace simulation
