// SPDX-License-Identifier: MIT
#include "PluggedCameras.h"

#include "ovra-lib-environment/HlEnvironmentModel.h"

namespace ovra::core::models {

namespace {

boost::shared_ptr<HlEnvironmentRootNode> rootOf(HlEnvironmentBoardNode& board)
{
    const auto source = board._parent().get();
    return source ? boost::dynamic_pointer_cast<HlEnvironmentRootNode>(source->_parent().get()) : nullptr;
}

} // namespace

std::map<unsigned int, boost::shared_ptr<HlEnvironmentCameraNode>> camerasOf(HlEnvironmentBoardNode& board)
{
    std::map<unsigned int, boost::shared_ptr<HlEnvironmentCameraNode>> plugged;
    const auto root = rootOf(board);
    if (!root)
        return plugged;
    for (const auto cameras = root->getCameras(); cameras->hasNext(); cameras->advance())
        if (static_cast<int>(cameras->current()->getBoard()) == board.getIndex())
            plugged[cameras->current()->getPort()] = cameras->current();
    return plugged;
}

void attachCameras(HlEnvironmentBoardNode& board)
{
    const auto plugged = camerasOf(board);
    for (const auto ports = board.getPorts(); ports->hasNext(); ports->advance()) {
        const auto camera = plugged.find(ports->current()->getIndex());
        ports->current()->setConnectedCameraEntry(camera == plugged.end() ? nullptr : camera->second);
    }
}

} // namespace ovra::core::models
