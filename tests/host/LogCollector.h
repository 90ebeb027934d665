// SPDX-License-Identifier: MIT
/// \file
/// LogCollector: collects log messages while it exists.
#pragma once

#include "ovra_log/OvraLog.h"

#include <mutex>
#include <string>
#include <vector>

class LogCollector
{
public:
    LogCollector()
    {
        OvraLogInit();
        OvraLogSetMessageCallback(&LogCollector::take, this);
    }
    ~LogCollector()
    {
        OvraLogSetMessageCallback(nullptr, nullptr);
        OvraLogDeinit();
    }
    LogCollector(const LogCollector&) = delete;
    LogCollector& operator=(const LogCollector&) = delete;

    /// Texts of the messages of that level or a more severe one.
    std::vector<std::string> texts(unsigned long level = 1) const
    {
        const std::lock_guard lock(m_mutex);
        std::vector<std::string> chosen;
        for (const auto& message : m_messages)
            if (message.level <= level)
                chosen.push_back(message.text);
        return chosen;
    }
    std::vector<std::string> files() const
    {
        const std::lock_guard lock(m_mutex);
        std::vector<std::string> all;
        for (const auto& message : m_messages)
            all.push_back(message.file);
        return all;
    }

private:
    struct Message
    {
        unsigned long level;
        std::string file;
        std::string text;
    };

    static void take(unsigned long level, unsigned long, const char* file, unsigned int, const char* text,
                     unsigned int, const tOvraLogTag*, void* userData)
    {
        auto& self = *static_cast<LogCollector*>(userData);
        const std::lock_guard lock(self.m_mutex);
        self.m_messages.push_back({level, file, text});
    }

    mutable std::mutex m_mutex;
    std::vector<Message> m_messages;
};
