// SPDX-License-Identifier: MIT
/// \file
/// AppletFolders: keeps the file collection up to date with the applet files below the runtime directory.
#pragma once

#include "Changes.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>

namespace ovra::core::models {

/// For one thread at a time.
class AppletFolders
{
public:
    explicit AppletFolders(boost::shared_ptr<HlEnvironmentFileCollectionNode> files);

    /// Searches the folders: adds nodes for new files and removes those of deleted files. With \p scan it
    /// reads new and changed files; without it, changed files wait for the next call with \p scan.
    void follow(bool scan, Changes& changes);
    /// Adds the file under \p path and reads it. No effect if there is no such file.
    void addFile(const std::string& path, Changes& changes);

private:
    /// Differs if the file has changed.
    struct Stamp
    {
        std::filesystem::file_time_type time;
        std::uintmax_t bytes = 0;
        bool operator==(const Stamp&) const = default;
    };
    using Listing = std::map<std::string, Stamp>; // by path, "/" between folders

    static Listing list();
    static void listFolder(const std::string& folder, Listing& listing);
    void removeVanished(Changes& changes);
    void addOrRead(const std::string& path, const Stamp& stamp, bool scan, Changes& changes);

    const boost::shared_ptr<HlEnvironmentFileCollectionNode> m_files;
    Listing m_known;
};

} // namespace ovra::core::models
