// SPDX-License-Identifier: MIT
/// \file
/// Logging and Logger: the library's own diagnostic lines.
///
/// They go through a dispatcher library, "common-logging-dispatcher", that is looked for beside the
/// frame-grabber runtime. Where it is missing everything works, and the lines are dropped.
///
///     Logger& logger = Logging::instance().getLogger("guard.library");
///     if (logger.isEnabled(2))
///         logger.log(2, text, 0, 0);
#pragma once

#include "platform/GuardedSingleton.h"
#include "platform/ReadWriteLock.h"
#include "platform/RecursiveMutex.h"

#include "fglib5/LoggingDispatcher.h"

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>

class SharedLibrary;

namespace ovra::tools::logging {

class Logging;

/// The messages of one tag. Lives as long as Logging. Any thread.
class Logger
{
public:
    static constexpr std::uint32_t DEFAULT_THRESHOLD = 7;

    Logger(Logging& logging, std::uint64_t id, std::uint32_t threshold);
    virtual ~Logger();
    Logger(const Logger&) = delete;
    Logger& operator=(const Logger&) = delete;

    /// Whether messages of that level are written: neither below the threshold nor from a muted thread. Takes no
    /// lock below the threshold.
    bool isEnabled(std::uint32_t level);

    /// Writes a message, whatever its level: the caller asks isEnabled first. Dropped while no dispatcher is
    /// connected. \p a and \p b go to the dispatcher as they are.
    void log(std::uint32_t level, const std::string& text, std::uint64_t a, std::uint64_t b);

    /// The dispatcher's number for the tag; 0: the default logger.
    std::uint64_t id() const { return m_id; }
    std::uint32_t threshold() const { return m_threshold.load(std::memory_order_relaxed); }
    void setThreshold(std::uint32_t threshold) { m_threshold.store(threshold, std::memory_order_relaxed); }

    /// A muted thread writes nothing through this logger. The library itself mutes no thread: a logger keeps
    /// the set for code that writes on behalf of others.
    void mute(std::uint32_t threadId);
    void unmute(std::uint32_t threadId);

private:
    Logging& m_logging;
    const std::uint64_t m_id;
    std::atomic<std::uint32_t> m_threshold;
    templates::platform::RecursiveMutex m_mutex;
    std::set<std::uint32_t> m_mutedThreads;
};

/// Connects to the dispatcher once, when it is made. After a disconnection it stays unconnected.
/// Lives until the process ends, across any number of OvraGuiCoreInit and OvraGuiCoreDeinit: it is never
/// destroyed, and the dispatcher keeps its address. At the end of the process it disconnects itself.
class Logging : public templates::patterns::GuardedSingleton<Logging>
{
public:
    /// Hides the base's accessor: this singleton is published before it connects, because the dispatcher may
    /// call back at once, and it is not registered for destruction.
    static Logging& instance();

    Logging();
    ~Logging() override;

    /// The logger for \p tag; the default one, which is silent, while no dispatcher is connected. Any thread.
    Logger& getLogger(const std::string& tag);
    bool isConnected() const;

    // Called by the dispatcher, on any thread.
    static void onDisconnect(void* logging);
    static void onSetLevel(void* logging, std::uint64_t loggerId, std::uint32_t threshold);

private:
    friend class Logger;

    void connect();
    void write(std::uint64_t loggerId, std::uint32_t level, const std::string& text, std::uint64_t a,
               std::uint64_t b);

    Logger m_defaultLogger;
    templates::platform::ReadWriteLock m_tableLock;
    std::map<std::uint64_t, std::unique_ptr<Logger>> m_loggers;
    std::unique_ptr<SharedLibrary> m_dispatcher; ///< null while there is none; stays loaded all the same
    // Non-null means connected.
    std::atomic<const LoggingDispatcherDescriptor*> m_descriptor{nullptr};
    LoggingRegisterFunction m_register = nullptr;
    LoggingLogFunction m_log = nullptr;
};

} // namespace ovra::tools::logging
