/// \file
/// Global resources: the parts of all boards under string keys, so that a view or a command finds them
/// without a walk through the model.
#pragma once

#include "ovra-core/GenericModel.h"
#include "ovra-lib-environment/Environment.h"
#include "ovra-lib-environment/Export.h"

#include <string>

namespace ovra::core::models {

/// One resource. Its fields are set before it is added to the root and do not change afterwards, so reading
/// them takes no lock. Type and resource, which every walk over all resources asks for, are plain reads: they
/// are not on the record and cannot fail.
class OVRA_ENVIRONMENT_API HlEnvironmentGlobalResourceNode : public GenericModelNode
{
public:
    static boost::shared_ptr<HlEnvironmentGlobalResourceNode> create();

    Environment::GlobalResourceType getType() const { return m_type; }
    void setType(Environment::GlobalResourceType type);
    /// The node it stands for; of the class that goes with the type.
    const boost::weak_ptr<GenericModelNode>& getResource() const { return m_resource; }
    void setResource(const boost::weak_ptr<GenericModelNode>& resource);
    /// The node above it in a view's tree; may be empty.
    const boost::weak_ptr<GenericModelNode>& getParentResource() const;
    void setParentResource(const boost::weak_ptr<GenericModelNode>& parent);
    const std::string& getKey() const;
    void setKey(const std::string& key);

private:
    HlEnvironmentGlobalResourceNode();

    Environment::GlobalResourceType m_type = Environment::ResourceBoard;
    boost::weak_ptr<GenericModelNode> m_resource;
    boost::weak_ptr<GenericModelNode> m_parentResource;
    std::string m_key;
};

/// All resources, in ascending byte order of their keys.
class OVRA_ENVIRONMENT_API HlEnvironmentGlobalResourceRootNode : public GenericModelNode
{
public:
    static boost::shared_ptr<HlEnvironmentGlobalResourceRootNode> create();

    /// Replaces the node of an equal key.
    void addChild(const std::string& key, const boost::shared_ptr<HlEnvironmentGlobalResourceNode>& resource);
    void removeChild(const std::string& key);
    boost::shared_ptr<HlEnvironmentGlobalResourceNode> getChild(const std::string& key) const;
    boost::shared_ptr<GenericModelNodeChildrenIterator<HlEnvironmentGlobalResourceNode>> getChildren() const;
    KeyedChildren<std::string, HlEnvironmentGlobalResourceNode>& _children() override;

private:
    HlEnvironmentGlobalResourceRootNode();

    KeyedChildren<std::string, HlEnvironmentGlobalResourceNode> m_resources;
};

class OVRA_ENVIRONMENT_API HlEnvironmentGlobalResourceModel
{
public:
    HlEnvironmentGlobalResourceModel();
    boost::shared_ptr<HlEnvironmentGlobalResourceRootNode> root() const;

private:
    boost::shared_ptr<HlEnvironmentGlobalResourceRootNode> m_root;
};

} // namespace ovra::core::models
