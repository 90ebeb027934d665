// SPDX-License-Identifier: MIT
/// \file
/// TemporaryFolder: a folder for one test, removed at its end.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <system_error>

/// File names are UTF-8; files are written and read in binary mode.
class TemporaryFolder
{
public:
    TemporaryFolder() { std::filesystem::create_directories(m_path); }
    ~TemporaryFolder()
    {
        std::error_code ignored; // ignored: files that cannot be removed, such as an opened library, must not
                                 // end the test run
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string text() const { return m_path.generic_string(); }
    std::filesystem::path path(const std::string& name = {}) const
    {
        return name.empty() ? m_path : m_path / std::u8string(name.begin(), name.end());
    }

    std::filesystem::path write(const std::string& name, const std::string& content) const
    {
        const auto file = path(name);
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << content;
        return file;
    }

    /// Copies a library into the folder \p place, with another name and its own suffix.
    std::filesystem::path add(const std::filesystem::path& library, const std::filesystem::path& place,
                              const std::string& baseName) const
    {
        std::filesystem::create_directories(m_path / place);
        const auto file = m_path / place / (baseName + library.extension().string());
        std::filesystem::copy_file(library, file);
        return file;
    }

    std::string read(const std::string& name) const
    {
        std::ifstream file(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

private:
    const std::filesystem::path m_path =
        std::filesystem::temp_directory_path() / ("ovra-test-" + std::to_string(std::random_device{}()));
};
