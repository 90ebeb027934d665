/// \file
/// AppletFolders: the applet files below the runtime directory, and the file collection that follows them.
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

    /// Walks the folders: adds nodes for new files, removes those of files that are gone. With \p scan new
    /// and changed files are read; without it a changed file waits for the next walk with it.
    void follow(bool scan, Changes& changes);
    /// Adds the file under the path that is given, and reads it. Nothing when there is no such file.
    void addFile(const std::string& path, Changes& changes);

private:
    /// What tells that a file has changed.
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
