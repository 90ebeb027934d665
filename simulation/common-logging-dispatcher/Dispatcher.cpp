// SPDX-License-Identifier: MIT
#include "Dispatcher.h"

#include "fglib5/PathText.h"

#include <atomic>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <utility>

namespace simulation {

namespace {

std::string environment(const char* name)
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): set before the dispatcher is opened
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : value;
}

std::vector<std::string> parts(const std::string& list)
{
    std::vector<std::string> found;
    std::istringstream stream(list);
    for (std::string part; std::getline(stream, part, ';');)
        if (!part.empty())
            found.push_back(part);
    return found;
}

std::optional<std::uint32_t> number(const std::string& text)
{
    std::uint32_t value = 0;
    const auto* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (text.empty() || stop != end || error != std::errc())
        return {};
    return value;
}

constinit std::atomic<bool> ended{false};

} // namespace

Dispatcher& Dispatcher::instance()
{
    // A real dispatcher is gone by then, and the call has undefined behaviour. Here it ends with a message.
    if (ended) {
        std::fputs("common-logging-dispatcher: called after its end\n", stderr);
        std::abort();
    }
    static Dispatcher dispatcher;
    return dispatcher;
}

Dispatcher::~Dispatcher()
{
    ended = true;
}

void Dispatcher::connect(void* client, LoggingOnDisconnect onDisconnect, LoggingOnSetLevel onSetLevel)
{
    const std::lock_guard lock(m_mutex);
    readEnvironment();
    m_client = Client{client, onDisconnect, onSetLevel};
}

void Dispatcher::readEnvironment()
{
    m_defaultThreshold = number(environment("OVRA_LOG_LEVEL")).value_or(7);
    m_thresholds.clear();
    for (const auto& part : parts(environment("OVRA_LOG_LEVELS"))) {
        const auto equals = part.find('=');
        if (equals == std::string::npos)
            continue;
        if (const auto threshold = number(part.substr(equals + 1)))
            m_thresholds[part.substr(0, equals)] = *threshold;
    }
    m_announced = parts(environment("OVRA_LOG_CALLBACK_ON_CONNECT"));
    m_file.close();
    m_file.clear();
    const auto file = environment("OVRA_LOG_FILE");
    if (!file.empty())
        m_file.open(fglib5::pathOf(file), std::ios::app | std::ios::binary);
}

Dispatcher::Logger& Dispatcher::loggerLocked(const std::string& tag)
{
    const auto known = m_loggers.find(tag);
    if (known != m_loggers.end())
        return known->second;
    m_tags.push_back(tag);
    const auto own = m_thresholds.find(tag);
    const auto threshold = own == m_thresholds.end() ? m_defaultThreshold : own->second;
    return m_loggers.emplace(tag, Logger{m_tags.size(), threshold}).first->second;
}

Dispatcher::Logger Dispatcher::logger(const std::string& tag)
{
    const std::lock_guard lock(m_mutex);
    return loggerLocked(tag);
}

std::uint64_t Dispatcher::knownId(const std::string& tag)
{
    const std::lock_guard lock(m_mutex);
    const auto known = m_loggers.find(tag);
    return known == m_loggers.end() ? 0 : known->second.id;
}

void Dispatcher::announceLevels()
{
    std::unique_lock lock(m_mutex);
    const auto tags = m_announced;
    lock.unlock();
    for (const auto& tag : tags)
        setLevel(tag, logger(tag).threshold);
}

void Dispatcher::setLevel(const std::string& tag, std::uint32_t threshold)
{
    std::unique_lock lock(m_mutex);
    auto& logger = loggerLocked(tag);
    logger.threshold = threshold;
    const auto id = logger.id;
    const auto client = m_client;
    lock.unlock();
    if (client)
        client->onSetLevel(client->object, id, threshold);
}

void Dispatcher::disconnect()
{
    std::unique_lock lock(m_mutex);
    const auto client = std::exchange(m_client, {});
    lock.unlock();
    if (client)
        client->onDisconnect(client->object);
}

// The client has compared level and threshold already, so every message is written.
void Dispatcher::log(std::uint64_t id, std::uint32_t level, const char* text)
{
    const std::lock_guard lock(m_mutex);
    if (!m_client || id == 0 || id > m_tags.size())
        return;
    ++m_messages;
    auto& stream = m_file.is_open() ? static_cast<std::ostream&>(m_file) : std::cerr;
    stream << level << ' ' << m_tags[id - 1] << ' ' << text
           << std::endl; // flush, so that a crash loses no line
}

std::uint64_t Dispatcher::messages()
{
    const std::lock_guard lock(m_mutex);
    return m_messages;
}

} // namespace simulation
