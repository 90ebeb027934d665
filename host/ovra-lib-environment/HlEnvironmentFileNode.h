// SPDX-License-Identifier: MIT
/// \file
/// HlEnvironmentFileNode: an applet file.
#pragma once

#include "ovra-core/GenericModel.h"
#include "ovra-lib-environment/Export.h"

#include <set>
#include <string>

namespace ovra::core::models {

/// Path and name never change. Everything else is the result of the last scan; each function reads one value,
/// so a scan between two calls may show in the second. Before a scan, and for a broken file, the type is
/// empty and the number of processes is -1. Any thread. Texts are UTF-8.
///
/// The start scans all files, and so does each search later on if Environment::enableAutoScan is on, as after
/// the start.
///
/// \code
/// for (const auto files = root->getFilesEntryNode()->getAllFiles(); files->hasNext(); files->advance())
///     if (files->current()->getBrokenReason().empty())
///         offer(files->current()->getFileName(), files->current()->getTags());
/// \endcode
class OVRA_ENVIRONMENT_API HlEnvironmentFileNode : public GenericModelNode
{
public:
    [[nodiscard]] static boost::shared_ptr<HlEnvironmentFileNode> create(const std::string& path);

    /// The path's last part, such as "SingleAreaGray.hap".
    const std::string& getFileName() const;
    /// The whole path, with "/" between folders: the argument of LoadAppletCommand.
    const std::string& getFilePath() const;

    /// "DLL", "HAP", or another type that the file names.
    std::string getType() const;
    /// For "DLL": true if the runtime describes the applet's structure, false if only the library's own
    /// function does (a legacy applet).
    bool getWrapped() const;
    /// Properties that the file names, such as "interface=cl-full" or "sensor=area", for a front end that
    /// sorts or filters applets. The library does not interpret them.
    std::set<std::string> getTags() const;
    /// Number of processes; negative if the file does not contain it.
    int getNrOfProcesses() const;
    /// The error in the file; empty if there is none.
    std::string getBrokenReason() const;

    /// Reads the file through the runtime; blocks meanwhile. An error in the file, or no runtime, sets the
    /// broken reason, is logged as a warning and not thrown.
    virtual void scan();

protected:
    explicit HlEnvironmentFileNode(const std::string& path);

private:
    struct Content
    {
        std::string type;
        bool wrapped = false;
        std::set<std::string> tags;
        int nrOfProcesses = -1;
        std::string brokenReason;
    };

    static Content read(const std::string& path);

    const std::string m_path;
    const std::string m_name;
    Guarded<Content> m_content;
};

} // namespace ovra::core::models
