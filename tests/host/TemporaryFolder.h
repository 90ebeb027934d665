/// \file
/// A folder of its own for a test, gone with it.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <system_error>

class TemporaryFolder
{
public:
    TemporaryFolder()
        : m_path(std::filesystem::temp_directory_path() /
                 ("ovra-host-" + std::to_string(std::random_device{}())))
    {
        std::filesystem::create_directories(m_path);
    }
    ~TemporaryFolder()
    {
        std::error_code ignored; // what is left behind must not end the test run
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::filesystem::path path() const { return m_path; }
    std::string text() const { return m_path.generic_string(); }

    void write(const std::string& name, const std::string& content) const
    {
        const auto file = m_path / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << content;
    }

    std::string read(const std::string& name) const
    {
        std::ifstream file(m_path / name);
        return {std::istreambuf_iterator<char>(file), {}};
    }

private:
    const std::filesystem::path m_path;
};
