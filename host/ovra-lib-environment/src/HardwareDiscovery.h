/// \file
/// HardwareDiscovery: boards and cameras of the machine, as the runtime knows them.
#pragma once

#include "Changes.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"

namespace ovra::core::models {

/// For one thread at a time.
class HardwareDiscovery
{
public:
    explicit HardwareDiscovery(boost::shared_ptr<HlEnvironmentRootNode> root);

    /// Brings the root's board source "ovra" and its cameras up to date; nodes of what is still there stay.
    /// Blocks. Throws std::runtime_error, with nothing changed, when the runtime cannot be used.
    void discover(Changes& changes);

private:
    void noteChanges(Changes found, Changes& changes);

    const boost::shared_ptr<HlEnvironmentRootNode> m_root;
    Changes m_present; // what there was at the last look; each has come
};

} // namespace ovra::core::models
