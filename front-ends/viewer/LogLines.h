// SPDX-License-Identifier: MIT
/// \file
/// LogLines: passes log messages from any thread to the GUI thread.
#pragma once

#include <nlohmann/json.hpp>

#include <mutex>
#include <string>

namespace ovra::viewer {

/// Safe from any thread.
class LogLines
{
public:
    void add(unsigned long level, unsigned long threadId, const char* file, unsigned int line,
             const char* text);
    /// A warning of the program itself.
    void addOwn(const std::string& text);
    /// All lines since the last call, the newest thousand at most.
    nlohmann::json take();

private:
    std::mutex m_mutex;
    nlohmann::json m_lines = nlohmann::json::array();
};

/// A line of the list as text, with its time in UTC.
std::string textOfLogLine(const nlohmann::json& line);

/// Milliseconds since 1970, as a page's clock counts them.
std::int64_t presentTime();

} // namespace ovra::viewer
