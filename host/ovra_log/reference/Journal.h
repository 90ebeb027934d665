/// \file
/// The record of the host operations that a client calls, and a way to let one of them fail.
///
///   probe            what every such operation calls first, a library's shut-down last
///   Journal          switches the record on and off, reads it, arms a fault
///   ReferenceFault   what an armed fault throws
///   Unrecorded       a scope of this thread in which the host calls its own operations
///   Hex, ClassName   details that are costly to print, printed only on the record
///
/// A line is the operation, and after a space its details: "DisplayScene::stopGrabbing dma=1".
#pragma once

#include "ovra_log/Export.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <vector>

namespace ovra::reference {

/// Says "Fault asked for at <line of the journal>".
class OVRA_LOG_API ReferenceFault : public std::runtime_error
{
public:
    explicit ReferenceFault(const std::string& line);
    ReferenceFault(const ReferenceFault& other);
    ~ReferenceFault() override;
};

/// One for the process. All operations are safe from any thread.
class OVRA_LOG_API Journal
{
public:
    /// Begins a new, empty record without a fault.
    static void start();
    /// Ends the record and disarms the fault; what was recorded stays readable.
    static void stop();
    /// Empties the record and counts anew; an armed fault stays armed.
    static void clear();

    static std::vector<std::string> lines();
    /// Number of probed operations since the start or the last clear.
    static std::size_t calls();

    /// Lets the \p n-th call from now (1: the next) throw ReferenceFault before it has an effect, but for a
    /// library's shut-down, which nobody would try again and which has its effect nevertheless. Only calls
    /// whose line begins with \p prefix count. The call is on the record as well. One fault is armed at a
    /// time; it strikes once. 0 disarms.
    static void throwAt(std::size_t n, const std::string& prefix = "");
    /// True when the armed fault has struck: a sweep over n ends where it stays false.
    static bool faultStruck();

    /// Lets \p watcher see each operation's line before the operation has an effect, on the thread that calls
    /// it, without a lock: it may wait for another thread there. stop() ends it.
    static void watch(std::function<void(const std::string& line)> watcher);

    /// Adds a line that is no operation: it is not counted and never fails. Nothing when the record is off.
    static void note(const std::string& line);
};

/// While it lives, operations of this thread are not on the record. For the host's own calls.
class OVRA_LOG_API Unrecorded
{
public:
    Unrecorded();
    ~Unrecorded();
    Unrecorded(const Unrecorded&) = delete;
    Unrecorded& operator=(const Unrecorded&) = delete;
};

/// Lowercase hexadecimal, as serial numbers are written.
struct Hex
{
    unsigned int value;
};
OVRA_LOG_API std::ostream& operator<<(std::ostream& stream, Hex number);

/// What a link or a pointer is set to.
template <class Pointer>
const char* given(const Pointer& pointer)
{
    return pointer ? " set" : " null";
}

/// The readable name of a class.
struct ClassName
{
    const std::type_info& type;
};
OVRA_LOG_API std::ostream& operator<<(std::ostream& stream, ClassName name);
OVRA_LOG_API std::string readableName(const std::type_info& type);

namespace detail {

OVRA_LOG_API extern std::atomic<bool> recording;
OVRA_LOG_API void record(const std::string& line);

template <class... Details>
void recordDetails(const char* operation, const Details&... details)
{
    std::ostringstream line;
    line << std::boolalpha << operation;
    if constexpr (sizeof...(details) > 0) {
        line << ' ';
        (line << ... << details);
    }
    record(line.str());
}

} // namespace detail

/// Stands at the head of an operation, before it has an effect (Journal::throwAt). \p details are streamed
/// one after the other. Costs a load and a branch when the record is off. Throws ReferenceFault when a fault
/// is armed for this call.
template <class... Details>
void probe(const char* operation, const Details&... details)
{
    if (detail::recording.load(std::memory_order_relaxed)) [[unlikely]]
        detail::recordDetails(operation, details...);
}

} // namespace ovra::reference
