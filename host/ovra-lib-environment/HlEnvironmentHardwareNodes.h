// SPDX-License-Identifier: MIT
/// \file
/// The hardware that does not depend on the applet: physical ports and cameras. Any thread. The environment
/// and the loads set the links; a front end follows them.
///
///   HlEnvironmentPortNode     a connector of a board; exists while the board has an applet
///   HlEnvironmentCameraNode   a camera that is plugged into a connector
///
/// From the logical port of an applet to its camera:
///
/// \code
/// if (const auto connector = port->getMappedPortEntry())
///     if (const auto camera = connector->getConnectedCameraEntry())
///         std::cout << camera->getName() << '\n';
/// \endcode
#pragma once

#include "ovra-core/GenericModel.h"
#include "ovra-lib-environment/Export.h"

#include <string>

namespace ovra::core::models {

class GenICamModel;
class HlEnvironmentLogicalPortNode;

/// A camera that is plugged into a connector of a board. An unplugged camera leaves the model; the node that
/// a front end holds stays, and its GenICamModel then throws std::runtime_error (only a stop succeeds).
/// Plugged in again, it is another node.
class OVRA_ENVIRONMENT_API HlEnvironmentCameraNode : public GenericModelNode
{
public:
    [[nodiscard]] static boost::shared_ptr<HlEnvironmentCameraNode>
    create(const std::string& name, unsigned int board, unsigned int port);

    /// Model and serial number.
    const std::string& getName() const;
    /// Index of the board, and of its physical port.
    unsigned int getBoard() const;
    unsigned int getPort() const;

    /// The camera's parameters and controls; empty if it has none, and after the application's clean-up.
    boost::shared_ptr<GenICamModel> getGenICamModelEntry() const;
    /// Empty removes the model.
    void setGenICamModelEntry(boost::shared_ptr<GenICamModel> model) const;

private:
    HlEnvironmentCameraNode(const std::string& name, unsigned int board, unsigned int port);

    const std::string m_name;
    const unsigned int m_board;
    const unsigned int m_port;
    mutable Guarded<boost::shared_ptr<GenICamModel>> m_model;
};

/// A connector of a board. The board creates its connectors when it gets a handle, so a load creates new
/// nodes.
class OVRA_ENVIRONMENT_API HlEnvironmentPortNode : public GenericModelNode
{
public:
    [[nodiscard]] static boost::shared_ptr<HlEnvironmentPortNode> create(unsigned int index);

    /// Number of the connector on the board, from 0.
    unsigned int getIndex() const;

    /// The camera; empty if none is plugged in. The node keeps the camera's node alive.
    boost::shared_ptr<HlEnvironmentCameraNode> getConnectedCameraEntry() const;
    void setConnectedCameraEntry(const boost::shared_ptr<HlEnvironmentCameraNode>& camera);

    /// The applet's port that uses this connector; empty if there is none. The node keeps a weak link.
    boost::shared_ptr<HlEnvironmentLogicalPortNode> getMappedLogicalPortEntry() const;
    void setMappedLogicalPortEntry(const boost::weak_ptr<HlEnvironmentLogicalPortNode>& port);

private:
    explicit HlEnvironmentPortNode(unsigned int index);

    const unsigned int m_index;
    Guarded<boost::shared_ptr<HlEnvironmentCameraNode>> m_camera;
    Guarded<boost::weak_ptr<HlEnvironmentLogicalPortNode>> m_logicalPort;
};

} // namespace ovra::core::models
