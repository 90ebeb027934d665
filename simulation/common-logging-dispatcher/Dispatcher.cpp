#include "Dispatcher.h"

#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <utility>

namespace simulation {

namespace {

std::string environment(const char* name)
{
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

// Calls of the client that this thread is in the middle of.
constinit thread_local unsigned int ownCalls = 0;

} // namespace

template <class Call>
void Dispatcher::callClient(std::unique_lock<std::mutex>& lock, std::optional<Client> client, Call call)
{
    if (!client)
        return;
    ++calls_;
    ++ownCalls;
    lock.unlock();
    call(*client);
    lock.lock();
    --ownCalls;
    --calls_;
    quiet_.notify_all();
}

Dispatcher& Dispatcher::instance()
{
    static auto* dispatcher = new Dispatcher; // clients log until the process is gone
    return *dispatcher;
}

void Dispatcher::connect(void* client, LoggingOnDisconnect onDisconnect, LoggingOnSetLevel onSetLevel)
{
    const std::lock_guard lock(mutex_);
    readEnvironment();
    client_ = Client{client, onDisconnect, onSetLevel};
}

void Dispatcher::readEnvironment()
{
    defaultThreshold_ = number(environment("OVRA_LOG_LEVEL")).value_or(7);
    thresholds_.clear();
    for (const auto& part : parts(environment("OVRA_LOG_LEVELS"))) {
        const auto equals = part.find('=');
        if (equals == std::string::npos)
            continue;
        if (const auto threshold = number(part.substr(equals + 1)))
            thresholds_[part.substr(0, equals)] = *threshold;
    }
    announced_ = parts(environment("OVRA_LOG_CALLBACK_ON_CONNECT"));
    file_.close();
    file_.clear();
    const auto file = environment("OVRA_LOG_FILE");
    if (!file.empty())
        file_.open(std::filesystem::path(std::u8string(file.begin(), file.end())),
                   std::ios::app | std::ios::binary);
}

Dispatcher::Logger& Dispatcher::loggerLocked(const std::string& tag)
{
    const auto known = loggers_.find(tag);
    if (known != loggers_.end())
        return known->second;
    tags_.push_back(tag);
    const auto own = thresholds_.find(tag);
    const auto threshold = own == thresholds_.end() ? defaultThreshold_ : own->second;
    return loggers_.emplace(tag, Logger{tags_.size(), threshold}).first->second;
}

Dispatcher::Logger Dispatcher::logger(const std::string& tag)
{
    const std::lock_guard lock(mutex_);
    return loggerLocked(tag);
}

std::uint64_t Dispatcher::knownId(const std::string& tag)
{
    const std::lock_guard lock(mutex_);
    const auto known = loggers_.find(tag);
    return known == loggers_.end() ? 0 : known->second.id;
}

void Dispatcher::announceLevels()
{
    std::unique_lock lock(mutex_);
    const auto tags = announced_;
    lock.unlock();
    for (const auto& tag : tags)
        setLevel(tag, logger(tag).threshold);
}

void Dispatcher::setLevel(const std::string& tag, std::uint32_t threshold)
{
    std::unique_lock lock(mutex_);
    auto& logger = loggerLocked(tag);
    logger.threshold = threshold;
    const auto id = logger.id;
    callClient(lock, client_, [&](const Client& client) { client.onSetLevel(client.object, id, threshold); });
}

void Dispatcher::release(void* client)
{
    std::unique_lock lock(mutex_);
    if (!client_ || client_->object != client)
        return;
    client_.reset();
    quiet_.wait(lock, [&] { return calls_ <= ownCalls; });
}

void Dispatcher::disconnect()
{
    std::unique_lock lock(mutex_);
    const auto client = std::exchange(client_, {});
    callClient(lock, client, [](const Client& gone) { gone.onDisconnect(gone.object); });
}

// The client has compared level and threshold already; a message that is here is wanted.
void Dispatcher::log(std::uint64_t id, std::uint32_t level, const char* text)
{
    const std::lock_guard lock(mutex_);
    if (!client_ || id == 0 || id > tags_.size())
        return;
    ++messages_;
    auto& stream = file_.is_open() ? static_cast<std::ostream&>(file_) : std::cerr;
    stream << level << ' ' << tags_[id - 1] << ' ' << text
           << std::endl; // a crash must not lose the last lines
}

std::uint64_t Dispatcher::messages()
{
    const std::lock_guard lock(mutex_);
    return messages_;
}

} // namespace simulation
