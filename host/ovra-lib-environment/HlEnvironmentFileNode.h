/// \file
/// HlEnvironmentFileNode: an applet file.
#pragma once

#include "ovra-core/GenericModel.h"
#include "ovra-lib-environment/Export.h"

#include <set>
#include <string>

namespace ovra::core::models {

/// Path and name are fixed; the rest is what the last scan found. Before a scan, and for a broken file, the
/// type is empty and the number of processes is -1.
class OVRA_ENVIRONMENT_API HlEnvironmentFileNode : public GenericModelNode
{
public:
    static boost::shared_ptr<HlEnvironmentFileNode> create(const std::string& path);

    const std::string& getFileName() const;
    const std::string& getFilePath() const;

    /// "DLL", "HAP", or what the file says of itself.
    std::string getType() const;
    /// For "DLL": described by the runtime (true) or by the file's own entry (false).
    bool getWrapped() const;
    /// Such as "interface=cl-full".
    std::set<std::string> getTags() const;
    /// Negative when the file does not tell.
    int getNrOfProcesses() const;
    /// What is wrong with the file; empty for a good one.
    std::string getBrokenReason() const;

    /// Reads the file through the runtime. A broken file is marked, not thrown.
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
