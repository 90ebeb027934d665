// SPDX-License-Identifier: MIT
/// \file
/// Dispatcher: one client, loggers by tag, lines in a file.
#pragma once

#include "fglib5/LoggingDispatcher.h"

#include <cstdint>
#include <fstream>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace simulation {

class Dispatcher
{
public:
    /// Exists until the process ends. A call after that ends the program with a message.
    static Dispatcher& instance();
    ~Dispatcher();

    void connect(void* client, LoggingOnDisconnect onDisconnect, LoggingOnSetLevel onSetLevel);
    /// Reports the thresholds of OVRA_LOG_CALLBACK_ON_CONNECT to the client while it connects.
    void announceLevels();
    /// Accepts no more messages and calls the client's onDisconnect.
    void disconnect();

    struct Logger
    {
        std::uint64_t id;
        std::uint32_t threshold;
    };

    /// The logger of a tag, created on its first use; ids start at 1.
    Logger logger(const std::string& tag);
    std::uint64_t knownId(const std::string& tag);
    void setLevel(const std::string& tag, std::uint32_t threshold);
    void log(std::uint64_t id, std::uint32_t level, const char* text);
    std::uint64_t messages();

private:
    struct Client
    {
        void* object;
        LoggingOnDisconnect onDisconnect;
        LoggingOnSetLevel onSetLevel;
    };

    void readEnvironment();
    Logger& loggerLocked(const std::string& tag);

    std::mutex m_mutex;
    std::optional<Client> m_client;
    std::uint32_t m_defaultThreshold = 7;
    std::map<std::string, std::uint32_t> m_thresholds;
    std::vector<std::string> m_announced;
    std::map<std::string, Logger> m_loggers;
    std::vector<std::string> m_tags; ///< of the loggers by id - 1
    std::ofstream m_file;
    std::uint64_t m_messages = 0;
};

} // namespace simulation
