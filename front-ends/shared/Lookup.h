// SPDX-License-Identifier: MIT
/// \file
/// Finds boards, applets, DMA channels and ports by the text that a user types.
///
/// GUI thread. If nothing matches, the functions throw RequestError with a text that lists what exists.
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
class HlEnvironmentProcessNode;
} // namespace ovra::core::models

namespace ovra::frontend {

using BoardNode = boost::shared_ptr<core::models::HlEnvironmentBoardNode>;
using DmaNode = boost::shared_ptr<core::models::HlEnvironmentDmaNode>;
using FileNode = boost::shared_ptr<core::models::HlEnvironmentFileNode>;
using PortNode = boost::shared_ptr<core::models::HlEnvironmentLogicalPortNode>;
using ProcessNode = boost::shared_ptr<core::models::HlEnvironmentProcessNode>;

/// The remaining children of an iterator.
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

/// By index or by serial number. If a board has the text as its index, it is not taken for a serial number.
BoardNode findBoard(const std::string& text);
/// Like findBoard; also throws if the board has no applet.
BoardNode findLoadedBoard(const std::string& text);
/// By serial number; empty if there is none.
BoardNode boardOfSerial(unsigned int serial);

/// By path, or by the end of the path from a folder or file name on. If several match, the one in the folder
/// of the board's model counts.
FileNode findApplet(const core::models::HlEnvironmentBoardNode& board, const std::string& text);

DmaNode findDma(const core::models::HlEnvironmentBoardNode& board, int index);
PortNode findPort(const core::models::HlEnvironmentBoardNode& board, int index);
ProcessNode findProcess(const core::models::HlEnvironmentBoardNode& board, int index);

/// The camera at the connector that a port is mapped to; empty if there is none.
boost::shared_ptr<core::models::HlEnvironmentCameraNode>
cameraNodeOf(const core::models::HlEnvironmentLogicalPortNode& port);
/// The model of that camera; empty if there is no camera, or it has no model.
boost::shared_ptr<core::models::GenICamModel>
cameraOf(const core::models::HlEnvironmentLogicalPortNode& port);

} // namespace ovra::frontend
