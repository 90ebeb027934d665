// SPDX-License-Identifier: MIT
#include "logging/Logging.h"

#include "fglib/RuntimeLibrary.h"
#include "platform/SharedLibrary.h"
#include "platform/Thread.h"

#include <cstdlib>

namespace ovra::tools::logging {

using templates::platform::ReadWriteLockGuard;
using templates::platform::RecursiveMutexGuard;
using templates::platform::SpinLockVariableGuard;

namespace {

std::atomic<std::int32_t> instanceLock{0};
std::atomic<std::uint32_t> instanceOwner{0};
std::atomic<Logging*> publishedInstance{nullptr};

/// The dispatcher's own objects go at the end of the process. Exit handlers of a host that run later may
/// still end the library, which then writes nothing.
void disconnectAtExit()
{
    Logging::onDisconnect(publishedInstance.load());
}

} // namespace

Logger::Logger(Logging& logging, std::uint64_t id, std::uint32_t threshold)
    : m_logging(logging),
      m_id(id),
      m_threshold(threshold)
{}

Logger::~Logger() = default;

bool Logger::isEnabled(std::uint32_t level)
{
    if (level < threshold())
        return false;
    const RecursiveMutexGuard guard(&m_mutex);
    return !m_mutedThreads.contains(templates::platform::currentThreadId());
}

void Logger::log(std::uint32_t level, const std::string& text, std::uint64_t a, std::uint64_t b)
{
    m_logging.write(m_id, level, text, a, b);
}

void Logger::mute(std::uint32_t threadId)
{
    const RecursiveMutexGuard guard(&m_mutex);
    m_mutedThreads.insert(threadId);
}

void Logger::unmute(std::uint32_t threadId)
{
    const RecursiveMutexGuard guard(&m_mutex);
    m_mutedThreads.erase(threadId);
}

Logging& Logging::instance()
{
    const SpinLockVariableGuard guard(&instanceLock, &instanceOwner);
    if (Logging* logging = publishedInstance.load())
        return *logging;
    auto* logging = new Logging;
    publishedInstance = logging;
    logging->connect();
    return *logging;
}

Logging::Logging() : m_defaultLogger(*this, 0, Logger::DEFAULT_THRESHOLD) {}

Logging::~Logging() = default;

void Logging::connect()
{
    auto dispatcher = gui::fglib::openRuntimeLibrary("common-logging-dispatcher", nullptr);
    if (!dispatcher)
        return;
    const auto* descriptor = static_cast<const LoggingDispatcherDescriptor*>(
        dispatcher->locate(LOGGING_DISPATCHER_DESCRIPTOR_NAME));
    if (!descriptor)
        return;
    m_dispatcher = std::move(dispatcher);
    m_descriptor = descriptor;
    descriptor->connect(this, &Logging::onDisconnect, &Logging::onSetLevel, &m_register, &m_log);
    // Called before the objects are destroyed that the dispatcher made until now. Those that it makes later must live
    // longer by its own means.
    std::atexit(&disconnectAtExit);
}

bool Logging::isConnected() const
{
    return m_descriptor.load() != nullptr;
}

Logger& Logging::getLogger(const std::string& tag)
{
    // The second test matters only to a dispatcher that asks for a logger while it is still connecting.
    if (!isConnected() || !m_register)
        return m_defaultLogger;

    std::uint64_t id = 0;
    std::uint32_t threshold = Logger::DEFAULT_THRESHOLD;
    m_register(tag.c_str(), &id, &threshold);

    const ReadWriteLockGuard guard(&m_tableLock, ReadWriteLockGuard::Write);
    const auto found = m_loggers.find(id);
    if (found != m_loggers.end())
        return *found->second;
    return *m_loggers.emplace(id, std::make_unique<Logger>(*this, id, threshold)).first->second;
}

void Logging::write(std::uint64_t loggerId, std::uint32_t level, const std::string& text, std::uint64_t a,
                    std::uint64_t b)
{
    if (isConnected() && m_log)
        m_log(loggerId, level, text.c_str(), a, b);
}

void Logging::onDisconnect(void* logging)
{
    static_cast<Logging*>(logging)->m_descriptor = nullptr;
}

void Logging::onSetLevel(void* logging, std::uint64_t loggerId, std::uint32_t threshold)
{
    auto& self = *static_cast<Logging*>(logging);
    // Only the logger's own word changes, not the table.
    const ReadWriteLockGuard guard(&self.m_tableLock, ReadWriteLockGuard::Read);
    const auto found = self.m_loggers.find(loggerId);
    if (found != self.m_loggers.end())
        found->second->setThreshold(threshold);
}

} // namespace ovra::tools::logging
