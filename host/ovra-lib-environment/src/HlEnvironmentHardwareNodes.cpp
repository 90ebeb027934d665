// SPDX-License-Identifier: MIT
#include "ovra-lib-environment/HlEnvironmentHardwareNodes.h"

#include "ovra-lib-environment/HlEnvironmentAppletNodes.h"
#include "ovra_log/reference/Journal.h"
#include "ovra_log/reference/LiveObjects.h"

namespace ovra::core::models {

using reference::given;
using reference::liveObject;
using reference::probe;

// --- camera -------------------------------------------------------------------------------------------

HlEnvironmentCameraNode::HlEnvironmentCameraNode(const std::string& name, unsigned int board,
                                                 unsigned int port)
    : m_name(name),
      m_board(board),
      m_port(port)
{}

boost::shared_ptr<HlEnvironmentCameraNode>
HlEnvironmentCameraNode::create(const std::string& name, unsigned int board, unsigned int port)
{
    probe("HlEnvironmentCameraNode::create", "board=", board, " port=", port);
    return liveObject(new HlEnvironmentCameraNode(name, board, port));
}

const std::string& HlEnvironmentCameraNode::getName() const
{
    probe("HlEnvironmentCameraNode::getName");
    return m_name;
}

unsigned int HlEnvironmentCameraNode::getBoard() const
{
    probe("HlEnvironmentCameraNode::getBoard");
    return m_board;
}

unsigned int HlEnvironmentCameraNode::getPort() const
{
    probe("HlEnvironmentCameraNode::getPort");
    return m_port;
}

boost::shared_ptr<GenICamModel> HlEnvironmentCameraNode::getGenICamModelEntry() const
{
    probe("HlEnvironmentCameraNode::getGenICamModelEntry", "board=", m_board, " port=", m_port);
    return m_model.get();
}

void HlEnvironmentCameraNode::setGenICamModelEntry(boost::shared_ptr<GenICamModel> model) const
{
    probe("HlEnvironmentCameraNode::setGenICamModelEntry", "board=", m_board, " port=", m_port, given(model));
    m_model.set(std::move(model));
}

// --- physical port ------------------------------------------------------------------------------------

HlEnvironmentPortNode::HlEnvironmentPortNode(unsigned int index) : m_index(index) {}

boost::shared_ptr<HlEnvironmentPortNode> HlEnvironmentPortNode::create(unsigned int index)
{
    probe("HlEnvironmentPortNode::create", "index=", index);
    return liveObject(new HlEnvironmentPortNode(index));
}

unsigned int HlEnvironmentPortNode::getIndex() const
{
    probe("HlEnvironmentPortNode::getIndex");
    return m_index;
}

boost::shared_ptr<HlEnvironmentCameraNode> HlEnvironmentPortNode::getConnectedCameraEntry() const
{
    probe("HlEnvironmentPortNode::getConnectedCameraEntry", "port=", m_index);
    return m_camera.get();
}

void HlEnvironmentPortNode::setConnectedCameraEntry(const boost::shared_ptr<HlEnvironmentCameraNode>& camera)
{
    probe("HlEnvironmentPortNode::setConnectedCameraEntry", "port=", m_index, given(camera));
    m_camera.set(camera);
}

boost::shared_ptr<HlEnvironmentLogicalPortNode> HlEnvironmentPortNode::getMappedLogicalPortEntry() const
{
    probe("HlEnvironmentPortNode::getMappedLogicalPortEntry", "port=", m_index);
    return m_logicalPort.get().lock();
}

void HlEnvironmentPortNode::setMappedLogicalPortEntry(
    const boost::weak_ptr<HlEnvironmentLogicalPortNode>& port)
{
    probe("HlEnvironmentPortNode::setMappedLogicalPortEntry", "port=", m_index,
          port.expired() ? " null" : " set");
    m_logicalPort.set(port);
}

} // namespace ovra::core::models
