// SPDX-License-Identifier: MIT
/// \file
/// Journal: records the host operations that a client calls, and lets one of them fail. For tests.
///
///   probe            every such operation calls it first; a library's shut-down calls it last
///   Journal          starts and stops the record, reads it, arms a fault
///   ReferenceFault   the exception of an armed fault
///   Unrecorded       a scope in which this thread's operations are not recorded
///   Hex, ClassName   details that are formatted only if the record is on
///
/// A line is the operation, and after a space its details: "DisplayScene::stopGrabbing dma=1".
///
/// \code
/// reference::Journal::start();
/// reference::Journal::throwAt(1, "DisplayScene::stopGrabbing"); // the next such call throws
/// runTheCommand();
/// for (const auto& line : reference::Journal::lines())
///     std::cout << line << '\n';
/// reference::Journal::stop();
/// \endcode
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

/// Its text is "Fault asked for at <line of the journal>".
class OVRA_LOG_API ReferenceFault : public std::runtime_error
{
public:
    explicit ReferenceFault(const std::string& line);
    ReferenceFault(const ReferenceFault& other);
    ~ReferenceFault() override;
};

/// The process has one journal. Any thread.
class OVRA_LOG_API Journal
{
public:
    /// Begins a new, empty record without a fault.
    static void start();
    /// Ends the record and disarms the fault; the recorded lines stay readable.
    static void stop();
    /// Removes all lines and resets the number of calls; an armed fault stays armed.
    static void clear();

    static std::vector<std::string> lines();
    /// Number of recorded operations since start() or the last clear().
    static std::size_t calls();

    /// Makes the \p n-th call from now (1: the next) throw ReferenceFault before the operation has any
    /// effect. Exception: a library's shut-down takes effect first, because callers do not retry it. Only
    /// calls whose line begins with \p prefix count. The journal also records the call that throws. Only one
    /// fault is armed at a time, and it strikes once. 0 disarms it.
    static void throwAt(std::size_t n, const std::string& prefix = "");
    /// True if the armed fault has struck. A sweep over n ends when it stays false.
    static bool faultStruck();

    /// Calls \p watcher with each operation's line before the operation has an effect, on the calling thread
    /// and without a lock: the watcher may wait for another thread. stop() removes the watcher.
    static void watch(std::function<void(const std::string& line)> watcher);

    /// Adds a line that is not an operation: it does not count as a call and never fails. No effect while the
    /// record is off.
    static void note(const std::string& line);
};

/// While an object of this class exists, the journal does not record operations of this thread. The host uses
/// it for calls of its own operations.
class OVRA_LOG_API Unrecorded
{
public:
    Unrecorded();
    ~Unrecorded();
    Unrecorded(const Unrecorded&) = delete;
    Unrecorded& operator=(const Unrecorded&) = delete;
};

/// Prints a number in lowercase hexadecimal, like serial numbers.
struct Hex
{
    unsigned int value;
};
OVRA_LOG_API std::ostream& operator<<(std::ostream& stream, Hex number);

/// " set" or " null", for a link or a pointer.
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

/// Records an operation. Each operation calls this first, before it has an effect (Journal::throwAt), with
/// its name and \p details, which are streamed one after the other. Costs a load and a branch while the
/// record is off.
///
/// \throws ReferenceFault  if a fault is armed for this call
template <class... Details>
void probe(const char* operation, const Details&... details)
{
    if (detail::recording.load(std::memory_order_relaxed)) [[unlikely]]
        detail::recordDetails(operation, details...);
}

} // namespace ovra::reference
