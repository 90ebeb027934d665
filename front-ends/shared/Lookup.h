/// \file
/// Finds boards, applets, DMA channels and ports by what a user types.
///
/// GUI thread. What is not found throws RequestError with a text that says what there is.
#pragma once

#include "ovra-core/GenericModel.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace ovra::core::models {
class GenICamModel;
class HlEnvironmentBoardNode;
class HlEnvironmentCameraNode;
class HlEnvironmentDmaNode;
class HlEnvironmentFileNode;
class HlEnvironmentLogicalPortNode;
} // namespace ovra::core::models

namespace ovra::frontend {

using BoardNode = boost::shared_ptr<core::models::HlEnvironmentBoardNode>;
using DmaNode = boost::shared_ptr<core::models::HlEnvironmentDmaNode>;
using FileNode = boost::shared_ptr<core::models::HlEnvironmentFileNode>;
using PortNode = boost::shared_ptr<core::models::HlEnvironmentLogicalPortNode>;

/// What is left of a walk over children.
template <class Node>
std::vector<boost::shared_ptr<Node>>
listOf(const boost::shared_ptr<core::models::GenericModelNodeChildrenIterator<Node>>& children)
{
    std::vector<boost::shared_ptr<Node>> list;
    for (; children->hasNext(); children->advance())
        list.push_back(children->current());
    return list;
}

/// In the order of their indices.
std::vector<BoardNode> allBoards();
/// In the order of their paths.
std::vector<FileNode> allApplets();

/// By index or by serial. A text that is the index of a board is never taken for a serial.
BoardNode findBoard(const std::string& text);
/// Also throws when the board holds no applet.
BoardNode findLoadedBoard(const std::string& text);
/// By serial; empty when there is none.
BoardNode boardOfSerial(unsigned int serial);

/// By path, or by the end of the path from a folder or file name on. Of several, the one that lies in the
/// folder named like the board's model is meant.
FileNode findApplet(const core::models::HlEnvironmentBoardNode& board, const std::string& text);

DmaNode findDma(const core::models::HlEnvironmentBoardNode& board, int index);
PortNode findPort(const core::models::HlEnvironmentBoardNode& board, int index);

/// The camera at the connector that a port is mapped to; empty when there is none.
boost::shared_ptr<core::models::HlEnvironmentCameraNode>
cameraNodeOf(const core::models::HlEnvironmentLogicalPortNode& port);
/// Its controls; empty when there is no camera, or it has none.
boost::shared_ptr<core::models::GenICamModel>
cameraOf(const core::models::HlEnvironmentLogicalPortNode& port);

} // namespace ovra::frontend
