// SPDX-License-Identifier: MIT
#include "Configuration.h"

#include "ovra_log/reference/Log.h"

#include <cerrno>
#include <charconv>
#include <fstream>
#include <system_error>

namespace ovra::reference {

namespace {

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view BLANKS = " \t\r";
    const auto first = text.find_first_not_of(BLANKS);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(BLANKS) - first + 1);
}

std::optional<long long> integer(std::string_view text)
{
    long long value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

/// Returns the system's error if writing fails; opening and writing leave it in errno.
std::error_code writeLines(const std::filesystem::path& file, const std::vector<std::string>& lines)
{
    errno = 0;
    std::ofstream stream(file);
    for (const auto& line : lines)
        stream << line << '\n';
    stream.close();
    if (stream)
        return {};
    return {errno != 0 ? errno : EIO, std::generic_category()};
}

/// A name beside \p file that nothing has yet: a file of the user's stays.
std::filesystem::path freeNameBeside(const std::filesystem::path& file)
{
    std::error_code ignored;
    std::filesystem::path name;
    int number = 0;
    do {
        name = file;
        name += ".new" + (number == 0 ? "" : std::to_string(number));
        ++number;
    } while (std::filesystem::exists(std::filesystem::symlink_status(name, ignored)));
    return name;
}

void warn(const std::vector<std::string>& messages)
{
    for (const auto& message : messages)
        log(LogLevel::Warning, message);
}

} // namespace

Configuration::Configuration(std::filesystem::path file) : m_file(std::move(file)) {}

std::optional<long long> Configuration::get(const std::string& key)
{
    Messages messages;
    std::optional<long long> value;
    {
        const std::lock_guard lock(m_mutex);
        readOnce(messages);
        if (const auto found = m_values.find(key); found != m_values.end())
            value = found->second;
    }
    warn(messages);
    return value;
}

void Configuration::set(const std::string& key, long long value)
{
    Messages messages;
    {
        const std::lock_guard lock(m_mutex);
        readOnce(messages);
        m_values[key] = value;
        const auto [place, isNew] = m_places.try_emplace(key, m_lines.size());
        if (isNew)
            m_lines.emplace_back();
        m_lines[place->second] = key + '=' + std::to_string(value);
        write(messages);
    }
    warn(messages);
}

void Configuration::readOnce(Messages& messages)
{
    if (m_read)
        return;
    m_read = true;
    if (m_file.empty())
        return;
    std::error_code error;
    if (!std::filesystem::exists(m_file, error))
        return;
    // Opening a folder succeeds on some systems, and then it looks like an empty file.
    if (std::filesystem::is_directory(m_file, error)) {
        messages.push_back(m_file.string() + ": is a folder, not a file; entries have their defaults");
        return;
    }
    std::ifstream stream(m_file);
    if (!stream) {
        messages.push_back(m_file.string() + ": cannot be read; entries have their defaults");
        return;
    }
    for (std::string line; std::getline(stream, line);) {
        readLine(line, m_lines.size() + 1, messages);
        m_lines.push_back(std::move(line));
    }
}

void Configuration::readLine(const std::string& line, std::size_t number, Messages& messages)
{
    const std::string_view text = trimmed(line);
    if (text.empty() || text.front() == '#')
        return;
    const auto separator = text.find('=');
    const std::string key(trimmed(text.substr(0, separator)));
    const auto value =
        separator == std::string_view::npos ? std::nullopt : integer(trimmed(text.substr(separator + 1)));
    if (key.empty() || !value) {
        messages.push_back(m_file.string() + ':' + std::to_string(number) +
                           ": expected key=integer, found \"" + std::string(text) + '"');
        return;
    }
    m_values[key] = *value;
    m_places[key] = number - 1;
}

void Configuration::write(Messages& messages) const
{
    if (m_file.empty())
        return;
    // Replaced by a rename: a reader, or a crash half-way, finds the old file or the new one, never a part.
    const auto fresh = freeNameBeside(m_file);
    std::error_code error = writeLines(fresh, m_lines);
    if (!error)
        std::filesystem::rename(fresh, m_file, error);
    if (!error)
        return;
    messages.push_back(m_file.string() + ": cannot be written (" + error.message() + ')');
    std::filesystem::remove(fresh, error);
}

} // namespace ovra::reference
