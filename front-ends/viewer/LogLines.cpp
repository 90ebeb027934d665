// SPDX-License-Identifier: MIT
#include "LogLines.h"

#include "front-ends/shared/TimeText.h"
#include "front-ends/shared/Titles.h"

#include <chrono>
#include <string>
#include <utility>

namespace ovra::viewer {

namespace {

std::string fileName(const std::string& path)
{
    return path.substr(path.find_last_of("/\\") + 1); // all of it where there is no separator
}

} // namespace

void LogLines::add(unsigned long level, unsigned long threadId, const char* file, unsigned int line,
                   const char* text)
{
    constexpr std::size_t MAX_LINES = 1000;
    nlohmann::json entry = {{"time", presentTime()},
                            {"level", level},
                            {"thread", threadId},
                            {"place", fileName(file) + ":" + std::to_string(line)},
                            {"text", text}};
    const std::lock_guard lock(m_mutex);
    if (m_lines.size() >= MAX_LINES)
        m_lines.erase(m_lines.begin());
    m_lines.push_back(std::move(entry));
}

void LogLines::addOwn(const std::string& text)
{
    constexpr unsigned long WARNING = 1;
    add(WARNING, 0, "ovra-viewer", 0, text.c_str());
}

nlohmann::json LogLines::take()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_lines, nlohmann::json::array());
}

std::string textOfLogLine(const nlohmann::json& line)
{
    const std::chrono::milliseconds time(line["time"].get<std::int64_t>());
    return frontend::utcText(std::chrono::system_clock::time_point(time)) + ' ' +
           frontend::logLevelName(line["level"].get<unsigned long>()) + ": " +
           line["text"].get<std::string>() + " (" + line["place"].get<std::string>() + ')';
}

std::int64_t presentTime()
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

} // namespace ovra::viewer
