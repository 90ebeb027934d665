// SPDX-License-Identifier: MIT
/// \file
/// PrivateFolder: a new temporary folder that other users cannot enter.
#pragma once

#include <filesystem>

namespace ovra::viewer {

class PrivateFolder
{
public:
    /// Throws std::filesystem::filesystem_error if the folder cannot be made.
    PrivateFolder();
    /// Removes the folder and its content.
    ~PrivateFolder();
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;

    const std::filesystem::path& path() const { return m_path; }

private:
    const std::filesystem::path m_path;
};

} // namespace ovra::viewer
