// SPDX-License-Identifier: MIT
/// \file
/// HardwareDiscovery: keeps the model up to date with the boards and cameras that the runtime lists.
#pragma once

#include "Changes.h"
#include "ovra-lib-environment/HlEnvironmentModel.h"

#include <boost/signals2/connection.hpp>

#include <functional>
#include <map>
#include <vector>

namespace ovra::core::models {

struct FoundBoard;

/// For one thread at a time.
class HardwareDiscovery
{
public:
    /// \p lookAgain is called, on any thread, when the handle of an unplugged board has been freed, so that
    /// the next search can remove the board from the model.
    HardwareDiscovery(boost::shared_ptr<HlEnvironmentRootNode> root, std::function<void()> lookAgain);

    /// Updates the root's board source "ovra" and its cameras; nodes of hardware that still exists stay.
    /// Blocks.
    ///
    /// \throws std::runtime_error  if the runtime cannot be used; nothing changes
    void discover(Changes& changes);

private:
    void updateBoards(const std::vector<FoundBoard>& found);
    void replace(const boost::shared_ptr<HlEnvironmentBoardNode>& old,
                 const boost::shared_ptr<HlEnvironmentBoardNode>& successor);
    void noteChanges(Changes found, Changes& changes);
    void followHandles(const Changes& found);

    const boost::shared_ptr<HlEnvironmentRootNode> m_root;
    const std::function<void()> m_lookAgain;
    std::map<unsigned int, boost::signals2::scoped_connection>
        m_handles;                                          // of unplugged boards, by serial number
    std::vector<boost::signals2::scoped_connection> m_left; // to boards that left the model
    Changes m_present; // the hardware of the last search, as changes of kind Came
};

} // namespace ovra::core::models
