// SPDX-License-Identifier: MIT
/// \file
/// The reach of a start or stop: the global resources of a board and process, or of more.
#pragma once

#include "gui-core/Gui.h"

#include "ovra-lib-environment/Environment.h"
#include "ovra-lib-environment/HlEnvironmentAppletNodes.h"
#include "ovra-lib-environment/HlEnvironmentGlobalResourceModel.h"

#include <optional>

namespace ovra::gui::acquisition {

/// Which nodes a sweep accepts: those of one board and process, or of any where none is named.
struct ResourceFilter
{
    std::optional<unsigned int> board;
    std::optional<unsigned int> process;

    /// For DMA and logical-port nodes.
    template <class Node>
    bool accepts(const Node& node) const
    {
        return (!board || node.getBoard() == *board) && (!process || node.getProcess() == *process);
    }
};

/// The node that an acquisition command was made for: a DMA channel, or else a logical port.
struct AcquisitionTarget
{
    boost::shared_ptr<core::models::HlEnvironmentDmaNode> dma;
    boost::shared_ptr<core::models::HlEnvironmentLogicalPortNode> port;

    bool isEmpty() const { return !dma && !port; }
};

/// How far \p mode widens a start or stop of \p target. std::nullopt for SyncNone, for an unknown mode, and
/// for an empty target.
std::optional<ResourceFilter> reachOf(const AcquisitionTarget& target, Gui::SyncMode mode);

/// Holds on to the environment's resources at construction. Each forEach walks a snapshot taken when it
/// starts, in the order of the keys.
class ResourceSweep
{
public:
    ResourceSweep() : m_root(Gui::environment()->globalResourceModel()->root()) {}

    /// Calls \p action for each DMA channel that the filter accepts.
    template <class Action>
    void forEachDma(const ResourceFilter& filter, Action action) const
    {
        forEach<core::models::HlEnvironmentDmaNode>(core::Environment::ResourceDma, filter, action);
    }

    /// The same for each logical port.
    template <class Action>
    void forEachLogicalPort(const ResourceFilter& filter, Action action) const
    {
        forEach<core::models::HlEnvironmentLogicalPortNode>(core::Environment::ResourceLogicalPort, filter,
                                                            action);
    }

private:
    template <class Node, class Action>
    void forEach(core::Environment::GlobalResourceType type, const ResourceFilter& filter,
                 Action& action) const
    {
        for (const auto resources = m_root->getChildren(); resources->hasNext(); resources->advance()) {
            const auto& resource = *resources->current();
            if (resource.getType() != type)
                continue;
            // The type determines the node's class.
            const auto node = boost::static_pointer_cast<Node>(resource.getResource().lock());
            if (node && filter.accepts(*node))
                action(*node);
        }
    }

    const boost::shared_ptr<core::models::HlEnvironmentGlobalResourceRootNode> m_root;
};

} // namespace ovra::gui::acquisition
