// SPDX-License-Identifier: MIT
#include "ovra_log/reference/Journal.h"

#include <boost/core/demangle.hpp>

#include <memory>
#include <mutex>
#include <string_view>
#include <utility>

namespace ovra::reference {

namespace {

struct Record
{
    std::mutex mutex;
    std::vector<std::string> lines;
    std::size_t calls = 0;
    std::size_t callsUntilFault = 0; // 0: none is armed
    std::string faultPrefix;
    bool faultStruck = false;
    std::shared_ptr<const std::function<void(const std::string&)>> watcher;
};

// Never destroyed: threads that still run at the end of the process call operations.
Record& theRecord()
{
    static auto* record = new Record;
    return *record;
}

thread_local int unrecordedScopes = 0;

} // namespace

namespace detail {

constinit std::atomic<bool> recording{false};

void record(const std::string& line)
{
    if (unrecordedScopes > 0)
        return;
    Record& record = theRecord();
    std::unique_lock lock(record.mutex);
    if (!recording)
        return;
    record.lines.push_back(line);
    ++record.calls;
    const bool counts = record.callsUntilFault > 0 && line.starts_with(record.faultPrefix);
    const bool strikes = counts && --record.callsUntilFault == 0;
    if (strikes)
        record.faultStruck = true;
    const auto watcher = record.watcher;
    lock.unlock();
    if (watcher)
        (*watcher)(line);
    if (strikes)
        throw ReferenceFault(line);
}

} // namespace detail

ReferenceFault::ReferenceFault(const std::string& line) : std::runtime_error("Fault asked for at " + line) {}
ReferenceFault::ReferenceFault(const ReferenceFault&) = default;
ReferenceFault::~ReferenceFault() = default;

void Journal::start()
{
    Record& record = theRecord();
    const std::lock_guard lock(record.mutex);
    record.lines.clear();
    record.calls = 0;
    record.callsUntilFault = 0;
    record.faultStruck = false;
    detail::recording = true;
}

void Journal::stop()
{
    Record& record = theRecord();
    const std::lock_guard lock(record.mutex);
    record.callsUntilFault = 0;
    record.watcher.reset();
    detail::recording = false;
}

void Journal::clear()
{
    Record& record = theRecord();
    const std::lock_guard lock(record.mutex);
    record.lines.clear();
    record.calls = 0;
}

std::vector<std::string> Journal::lines()
{
    Record& record = theRecord();
    const std::lock_guard lock(record.mutex);
    return record.lines;
}

std::size_t Journal::calls()
{
    Record& record = theRecord();
    const std::lock_guard lock(record.mutex);
    return record.calls;
}

void Journal::throwAt(std::size_t n, const std::string& prefix)
{
    Record& record = theRecord();
    const std::lock_guard lock(record.mutex);
    record.callsUntilFault = n;
    record.faultPrefix = prefix;
    record.faultStruck = false;
}

bool Journal::faultStruck()
{
    Record& record = theRecord();
    const std::lock_guard lock(record.mutex);
    return record.faultStruck;
}

void Journal::watch(std::function<void(const std::string& line)> watcher)
{
    auto kept = std::make_shared<const std::function<void(const std::string&)>>(std::move(watcher));
    Record& record = theRecord();
    const std::lock_guard lock(record.mutex);
    record.watcher.swap(kept);
}

void Journal::note(const std::string& line)
{
    Record& record = theRecord();
    const std::lock_guard lock(record.mutex);
    if (detail::recording)
        record.lines.push_back(line);
}

Unrecorded::Unrecorded()
{
    ++unrecordedScopes;
}

Unrecorded::~Unrecorded()
{
    --unrecordedScopes;
}

std::ostream& operator<<(std::ostream& stream, Hex number)
{
    const std::ios_base::fmtflags flags = stream.setf(std::ios_base::hex, std::ios_base::basefield);
    stream << number.value;
    stream.flags(flags);
    return stream;
}

std::ostream& operator<<(std::ostream& stream, ClassName name)
{
    return stream << readableName(name.type);
}

std::string readableName(const std::type_info& type)
{
    std::string name = boost::core::demangle(type.name());
    for (const std::string_view kind : {"class ", "struct "}) // under Microsoft's ABI
        if (name.starts_with(kind))
            name.erase(0, kind.size());
    return name;
}

} // namespace ovra::reference
