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

/// Any thread. The file holds one "key=integer" a line; blank lines and lines that begin with "#" are for
/// people. Of a key that stands there twice the later line counts.
class Configuration
{
public:
    /// \p file empty: entries live in memory only. The file is read at the first use and need not exist.
    explicit Configuration(std::filesystem::path file);

    std::optional<long long> get(const std::string& key);
    /// Writes the file anew, all at once; that it cannot is logged, and the entry then lives in memory.
    void set(const std::string& key, long long value);

private:
    using Messages = std::vector<std::string>;

    // Under the lock; what there is to say is said by the caller, outside it.
    void readOnce(Messages& messages);
    void readLine(const std::string& line, std::size_t number, Messages& messages);
    void write(Messages& messages) const;

    const std::filesystem::path m_file;
    std::mutex m_mutex;
    bool m_read = false;
    std::map<std::string, long long> m_values;
    std::map<std::string, std::size_t> m_places; // index into m_lines
    std::vector<std::string> m_lines;            // as they stand in the file, broken ones too
};

} // namespace ovra::reference
