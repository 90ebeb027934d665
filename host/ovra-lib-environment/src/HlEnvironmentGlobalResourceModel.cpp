// SPDX-License-Identifier: MIT
#include "ovra-lib-environment/HlEnvironmentGlobalResourceModel.h"

#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/LiveObjects.h"

namespace ovra::core::models {

using reference::liveObject;
using reference::probe;

boost::shared_ptr<HlEnvironmentGlobalResourceNode> HlEnvironmentGlobalResourceNode::create()
{
    probe("HlEnvironmentGlobalResourceNode::create");
    return liveObject(new HlEnvironmentGlobalResourceNode);
}

HlEnvironmentGlobalResourceNode::HlEnvironmentGlobalResourceNode() = default;

void HlEnvironmentGlobalResourceNode::setType(Environment::GlobalResourceType type)
{
    probe("HlEnvironmentGlobalResourceNode::setType", static_cast<int>(type));
    m_type = type;
}

void HlEnvironmentGlobalResourceNode::setResource(const boost::weak_ptr<GenericModelNode>& resource)
{
    probe("HlEnvironmentGlobalResourceNode::setResource");
    m_resource = resource;
}

const boost::weak_ptr<GenericModelNode>& HlEnvironmentGlobalResourceNode::getParentResource() const
{
    probe("HlEnvironmentGlobalResourceNode::getParentResource", m_key);
    return m_parentResource;
}

void HlEnvironmentGlobalResourceNode::setParentResource(const boost::weak_ptr<GenericModelNode>& parent)
{
    probe("HlEnvironmentGlobalResourceNode::setParentResource");
    m_parentResource = parent;
}

const std::string& HlEnvironmentGlobalResourceNode::getKey() const
{
    probe("HlEnvironmentGlobalResourceNode::getKey", m_key);
    return m_key;
}

void HlEnvironmentGlobalResourceNode::setKey(const std::string& key)
{
    probe("HlEnvironmentGlobalResourceNode::setKey", key);
    m_key = key;
}

HlEnvironmentGlobalResourceRootNode::HlEnvironmentGlobalResourceRootNode() = default;

boost::shared_ptr<HlEnvironmentGlobalResourceRootNode> HlEnvironmentGlobalResourceRootNode::create()
{
    return liveObject(new HlEnvironmentGlobalResourceRootNode);
}

void HlEnvironmentGlobalResourceRootNode::addChild(
    const std::string& key, const boost::shared_ptr<HlEnvironmentGlobalResourceNode>& resource)
{
    probe("HlEnvironmentGlobalResourceRootNode::addChild", key);
    m_resources.add(key, resource, weak_from_this());
}

void HlEnvironmentGlobalResourceRootNode::removeChild(const std::string& key)
{
    probe("HlEnvironmentGlobalResourceRootNode::removeChild", key);
    m_resources.remove(key);
}

boost::shared_ptr<HlEnvironmentGlobalResourceNode>
HlEnvironmentGlobalResourceRootNode::getChild(const std::string& key) const
{
    probe("HlEnvironmentGlobalResourceRootNode::getChild", key);
    return m_resources.find(key);
}

boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentGlobalResourceNode>>
HlEnvironmentGlobalResourceRootNode::getChildren() const
{
    probe("HlEnvironmentGlobalResourceRootNode::getChildren");
    return m_resources.iterate();
}

KeyedChildren<std::string, HlEnvironmentGlobalResourceNode>& HlEnvironmentGlobalResourceRootNode::_children()
{
    return m_resources;
}

HlEnvironmentGlobalResourceModel::HlEnvironmentGlobalResourceModel()
    : m_root(HlEnvironmentGlobalResourceRootNode::create())
{}

boost::shared_ptr<HlEnvironmentGlobalResourceRootNode> HlEnvironmentGlobalResourceModel::root() const
{
    probe("HlEnvironmentGlobalResourceModel::root");
    return m_root;
}

} // namespace ovra::core::models
