// SPDX-License-Identifier: MIT
#include "ovra-core/GenericModel.h"

#include "ovra_log/reference/Journal.h"

namespace ovra::core::models {

using reference::probe;

namespace {

class NoChildren final : public aspects::Children
{
public:
    void clear() override { aboutToClear(); }
    std::size_t count() const override { return 0; }
};

} // namespace

boost::shared_ptr<GenericModelNode> aspects::Parent::get() const
{
    probe("Parent::get");
    return m_parent.get().lock();
}

void aspects::Parent::set(const boost::weak_ptr<GenericModelNode>& parent)
{
    m_parent.set(parent);
}

aspects::Children::~Children() = default;

void aspects::Children::aboutToClear() const
{
    probe("Children::clear", "count=", count());
}

GenericModelNode::GenericModelNode() = default;
GenericModelNode::~GenericModelNode() = default;

aspects::Parent& GenericModelNode::_parent()
{
    return m_parent;
}

aspects::Children& GenericModelNode::_children()
{
    static NoChildren none;
    return none;
}

} // namespace ovra::core::models
