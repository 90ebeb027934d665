/// \file
/// HardwareDiscovery: boards and cameras of the machine, as the runtime knows them.
#pragma once

#include "Changes.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"

#include <boost/signals2/connection.hpp>

#include <functional>
#include <map>

namespace ovra::core::models {

/// For one thread at a time.
class HardwareDiscovery
{
public:
    /// \p lookAgain is called, on any thread, when a board that is gone has lost its handle and can leave the
    /// model at the next look.
    HardwareDiscovery(boost::shared_ptr<HlEnvironmentRootNode> root, std::function<void()> lookAgain);

    /// Brings the root's board source "ovra" and its cameras up to date; nodes of what is still there stay.
    /// Blocks. Throws std::runtime_error, with nothing changed, when the runtime cannot be used.
    void discover(Changes& changes);

private:
    void noteChanges(Changes found, Changes& changes);
    void followHandles(const Changes& found);

    const boost::shared_ptr<HlEnvironmentRootNode> m_root;
    const std::function<void()> m_lookAgain;
    std::map<unsigned int, boost::signals2::scoped_connection>
        m_handles;     // of boards that are gone, by serial
    Changes m_present; // what there was at the last look; each has come
};

} // namespace ovra::core::models
