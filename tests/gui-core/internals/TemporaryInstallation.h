/// \file
/// TemporaryInstallation: a folder with a "bin", into which a test copies the libraries that it wants found.
#pragma once

#include <filesystem>
#include <random>
#include <string>

namespace ovra::tests {

class TemporaryInstallation
{
public:
    TemporaryInstallation()
        : m_folder(std::filesystem::temp_directory_path() /
                   ("ovra-test-" + std::to_string(std::random_device()())))
    {
        std::filesystem::create_directories(m_folder / "bin");
    }

    ~TemporaryInstallation()
    {
        std::error_code ignored; // a library that is still loaded cannot be removed everywhere
        std::filesystem::remove_all(m_folder, ignored);
    }

    TemporaryInstallation(const TemporaryInstallation&) = delete;
    TemporaryInstallation& operator=(const TemporaryInstallation&) = delete;

    std::filesystem::path path() const { return m_folder; }
    std::string folder() const { return m_folder.string(); }

    /// Copies \p library into \p place, such as "bin", under the name \p baseName and the library's own
    /// ending.
    std::filesystem::path add(const std::filesystem::path& library, const std::filesystem::path& place,
                              const std::string& baseName)
    {
        std::filesystem::create_directories(m_folder / place);
        const auto file = m_folder / place / (baseName + library.extension().string());
        std::filesystem::copy_file(library, file, std::filesystem::copy_options::overwrite_existing);
        return file;
    }

private:
    std::filesystem::path m_folder;
};

} // namespace ovra::tests
