// SPDX-License-Identifier: MIT
/// \file
/// Global resources: the parts of all loaded boards in one list under string keys, so that a view or a
/// command finds them without a walk through every board. A load adds the resources of its board, an unload
/// removes them. A front end that follows the boards itself does not need the list. Any thread.
///
///   | key                          | resource                                     |
///   |------------------------------|----------------------------------------------|
///   | board-1a2b3c                 | the board; serial number in hexadecimal      |
///   | board-1a2b3c-process-0       | its process 0                                |
///   | board-1a2b3c-process-0-dma-0 | DMA channel 0 of that process                |
///   | board-1a2b3c-process-0-port-0| logical port 0 of that process               |
///   | board-1a2b3c-common, -events, -group-... | views of the board as a whole    |
///
/// \code
/// const auto root = gui::Gui::environment()->globalResourceModel()->root();
/// for (const auto each = root->getChildren(); each->hasNext(); each->advance())
///     if (each->current()->getType() == core::Environment::ResourceDma)
///         if (const auto node = each->current()->getResource().lock()) // null: just unloaded
///             use(boost::static_pointer_cast<HlEnvironmentDmaNode>(node));
/// \endcode
#pragma once

#include "ovra-core/GenericModel.h"
#include "ovra-lib-environment/Environment.h"
#include "ovra-lib-environment/Export.h"

#include <string>

namespace ovra::core::models {

/// One resource. Set its fields before you add it to the root; they do not change afterwards, so reading them
/// takes no lock. getType and getResource, which every pass over all resources reads, are plain reads: the
/// journal does not record them and they cannot fail.
class OVRA_ENVIRONMENT_API HlEnvironmentGlobalResourceNode : public GenericModelNode
{
public:
    [[nodiscard]] static boost::shared_ptr<HlEnvironmentGlobalResourceNode> create();

    Environment::GlobalResourceType getType() const { return m_type; }
    void setType(Environment::GlobalResourceType type);
    /// The node that the resource stands for; the type determines its class. A weak link: the node may be
    /// gone.
    const boost::weak_ptr<GenericModelNode>& getResource() const { return m_resource; }
    void setResource(const boost::weak_ptr<GenericModelNode>& resource);
    /// The parent node in a view's tree; may be empty.
    const boost::weak_ptr<GenericModelNode>& getParentResource() const;
    void setParentResource(const boost::weak_ptr<GenericModelNode>& parent);
    /// The key under which the root holds this resource.
    const std::string& getKey() const;
    void setKey(const std::string& key);

private:
    HlEnvironmentGlobalResourceNode();

    Environment::GlobalResourceType m_type = Environment::ResourceBoard;
    boost::weak_ptr<GenericModelNode> m_resource;
    boost::weak_ptr<GenericModelNode> m_parentResource;
    std::string m_key;
};

/// All resources, in ascending byte order of their keys: "...-dma-10" stands before "...-dma-2".
class OVRA_ENVIRONMENT_API HlEnvironmentGlobalResourceRootNode : public GenericModelNode
{
public:
    [[nodiscard]] static boost::shared_ptr<HlEnvironmentGlobalResourceRootNode> create();

    /// Adds a resource; replaces one with the same key. Throws std::invalid_argument for null.
    void addChild(const std::string& key, const boost::shared_ptr<HlEnvironmentGlobalResourceNode>& resource);
    /// No effect if there is none.
    void removeChild(const std::string& key);
    /// Empty if there is none.
    boost::shared_ptr<HlEnvironmentGlobalResourceNode> getChild(const std::string& key) const;
    boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentGlobalResourceNode>> getChildren() const;
    KeyedChildren<std::string, HlEnvironmentGlobalResourceNode>& _children() override;

private:
    HlEnvironmentGlobalResourceRootNode();

    KeyedChildren<std::string, HlEnvironmentGlobalResourceNode> m_resources;
};

/// Holds the root; both live as long as the environment, and longer while somebody holds them.
class OVRA_ENVIRONMENT_API HlEnvironmentGlobalResourceModel
{
public:
    HlEnvironmentGlobalResourceModel();
    /// Never null, and the same object each time.
    boost::shared_ptr<HlEnvironmentGlobalResourceRootNode> root() const;

private:
    boost::shared_ptr<HlEnvironmentGlobalResourceRootNode> m_root;
};

} // namespace ovra::core::models
