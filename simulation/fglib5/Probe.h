/// \file
/// The probe that every call of an entry passes: it counts, and on demand delays, fails and writes down.
///
/// While nothing but counting is asked for, a call costs one increment and one branch.
#pragma once

#include "EntryList.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace simulation {

class Probe
{
public:
    static Probe& instance();

    /// One call of an entry, from its arrival to its return.
    class Visit
    {
    public:
        explicit Visit(Entry entry);
        ~Visit();
        Visit(const Visit&) = delete;
        Visit& operator=(const Visit&) = delete;

        /// The code with which this call has to fail, 0 for none.
        int plannedCode() const noexcept { return m_plannedCode; }

    private:
        int m_plannedCode;
    };

    /// A plan of the machine description goes when the next machine is loaded; one of a client's stays.
    enum class Origin
    {
        Machine,
        Client
    };

    /// \p entry as in SimulationControl.h. Throws FG_INVALID_ARGUMENT.
    void addFault(std::string_view entry, std::uint64_t nth, int code, Origin origin = Origin::Client);
    void setDelay(std::string_view entry, std::uint32_t microseconds, Origin origin = Origin::Client);
    void clearFaults();
    void clearPlansOf(Origin origin);

    std::int64_t calls(std::string_view entry) const;
    std::int64_t totalCalls() const;
    void resetCounts();

    void setJournal(bool on);
    void setListener(void (*listener)(const char* line));
    std::string journal() const;

    static bool isEntry(std::string_view name);
    static const char* nameOf(Entry entry);

private:
    static constexpr auto ENTRY_COUNT = static_cast<std::size_t>(Entry::Count);
    static constexpr std::size_t ANY_ENTRY = ENTRY_COUNT;

    struct Fault
    {
        std::size_t entry;
        std::uint64_t callsLeft; ///< 0: every call
        int code;
        Origin origin;
    };

    struct Delay
    {
        std::size_t entry;
        std::uint32_t microseconds;
        Origin origin;
    };

    static std::size_t entryNamed(std::string_view name);
    int arriveWatched(std::size_t entry);
    int takeFault(std::size_t entry);
    std::uint32_t delayOf(std::size_t entry) const;
    void updateWatched();

    std::array<std::atomic<std::uint64_t>, ENTRY_COUNT> m_counts{};
    std::atomic<bool> m_watched{false};

    mutable std::mutex m_mutex;
    std::vector<Fault> m_faults;
    std::vector<Delay> m_delays;
    bool m_journalOn = false;
    void (*m_listener)(const char* line) = nullptr;
    std::vector<std::string> m_journal;
};

} // namespace simulation
