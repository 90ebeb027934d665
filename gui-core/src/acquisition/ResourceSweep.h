/// \file
/// The reach of a start or stop: the global resources of a board and process, or of more.
#pragma once

#include "gui-core/Gui.h"

#include "ovra-lib-environment/Environment.h"
#include "ovra-lib-environment/HlEnvironmentAppletNodes.h"
#include "ovra-lib-environment/HlEnvironmentGlobalResourceModel.h"

#include <optional>

namespace ovra::gui::commands {

/// Which nodes a sweep takes in: those of one board and process, or of any where none is named.
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

/// How far \p mode widens a start or stop of \p target. Empty when there is nothing to sweep: in the mode for
/// a single channel, in one that does not exist, and for a target that is not there.
std::optional<ResourceFilter> reachOf(const AcquisitionTarget& target, Gui::SyncMode mode);

/// Walks over the global resources of the environment that there is when it is made. Each walk sees what is
/// there when it begins, in the order of the keys.
class ResourceSweep
{
public:
    ResourceSweep() : m_root(Gui::environment()->globalResourceModel()->root()) {}

    /// Calls \p action for each DMA channel that the filter takes in.
    template <class Action>
    void forEachDma(const ResourceFilter& filter, Action action) const
    {
        forEach<core::models::HlEnvironmentDmaNode>(core::Environment::ResourceDma, filter, action);
    }

    /// Likewise for each logical port.
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
            // The type tells the class of the node.
            const auto node = boost::static_pointer_cast<Node>(resource.getResource().lock());
            if (node && filter.accepts(*node))
                action(*node);
        }
    }

    const boost::shared_ptr<core::models::HlEnvironmentGlobalResourceRootNode> m_root;
};

} // namespace ovra::gui::commands
