// SPDX-License-Identifier: MIT
#include "PrivateFolder.h"

#include "server/Token.h"

#include <system_error>

namespace ovra::viewer {

namespace fs = std::filesystem;

namespace {

/// The name cannot be guessed, so nobody can put a folder or a link there beforehand.
fs::path makeFolder()
{
    const auto folder = fs::temp_directory_path() / ("ovra-viewer-" + makeToken());
    if (!fs::create_directory(folder))
        throw fs::filesystem_error("the folder is there already", folder,
                                   std::make_error_code(std::errc::file_exists));
    fs::permissions(folder, fs::perms::owner_all);
    return folder;
}

} // namespace

PrivateFolder::PrivateFolder() : m_path(makeFolder()) {}

PrivateFolder::~PrivateFolder()
{
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

} // namespace ovra::viewer
