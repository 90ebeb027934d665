// SPDX-License-Identifier: MIT
/// \file
/// Configuration: the application's integer entries, in memory or in a file.
#pragma once

#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ovra::reference {

/// Any thread. The file has one "key=integer" per line, blank lines, and comments that begin with "#". If a
/// key occurs twice, the later line counts.
class Configuration
{
public:
    /// \p file empty: entries are kept in memory only. The first use reads the file, which need not exist.
    explicit Configuration(std::filesystem::path file);

    std::optional<long long> get(const std::string& key);
    /// Replaces the whole file. If that fails, logs the reason and keeps the entry in memory.
    void set(const std::string& key, long long value);

private:
    using Messages = std::vector<std::string>;

    // Under the lock. The caller logs the messages, outside the lock.
    void readOnce(Messages& messages);
    void readLine(const std::string& line, std::size_t number, Messages& messages);
    void write(Messages& messages) const;

    const std::filesystem::path m_file;
    std::mutex m_mutex;
    bool m_read = false;
    std::map<std::string, long long> m_values;
    std::map<std::string, std::size_t> m_places; // index into m_lines
    std::vector<std::string> m_lines;            // all lines of the file unchanged, also invalid ones
};

} // namespace ovra::reference
