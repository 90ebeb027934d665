// SPDX-License-Identifier: MIT
#include "Descriptions.h"

#include "front-ends/shared/Lookup.h"
#include "front-ends/shared/Titles.h"

#include "gui-core/Gui.h"
#include "ovra-lib-display/DisplayScene.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentHardwareNodes.h"
#include "ovra-lib-genicam-model/GenICamModel.h"

#include <iomanip>
#include <sstream>

namespace ovra::console {

using namespace frontend;

namespace {

std::string mebibytes(unsigned long long bytes)
{
    constexpr double BYTES_PER_MEBIBYTE = 1024.0 * 1024.0;
    std::ostringstream text;
    text << std::fixed << std::setprecision(1) << static_cast<double>(bytes) / BYTES_PER_MEBIBYTE;
    return text.str();
}

void appendAcquiring(std::vector<std::string>& list, const core::models::HlEnvironmentBoardNode& board)
{
    for (const auto& dma : listOf(board.getDmas())) {
        const auto scene = dma->getDisplayScene();
        if (scene && scene->isGrabbing())
            list.push_back(channelTitle(board, *dma));
    }
    for (const auto& port : listOf(board.getLogicalPorts())) {
        const auto camera = cameraOf(*port);
        if (camera && camera->isAcquiring())
            list.push_back("camera of board " + std::to_string(board.getIndex()) + " port " +
                           std::to_string(port->getIndex()));
    }
}

} // namespace

std::string connectorText(const core::models::HlEnvironmentLogicalPortNode& port)
{
    const auto physical = port.getMappedPortEntry();
    return physical ? "connector " + std::to_string(physical->getIndex()) : "no connector";
}

std::string cameraText(const core::models::HlEnvironmentLogicalPortNode& port)
{
    const auto camera = cameraNodeOf(port);
    if (!camera)
        return "";
    const auto model = cameraOf(port);
    return "camera " + camera->getName() + (model ? ": " + sizeText(model->width(), model->height()) : "");
}

std::vector<std::string> acquiring()
{
    std::vector<std::string> list;
    for (const auto& board : allBoards())
        appendAcquiring(list, *board);
    return list;
}

std::string imagesText(std::int64_t count)
{
    return std::to_string(count) + (count == 1 ? " image" : " images");
}

std::string memoryText()
{
    return "DMA memory: " + mebibytes(gui::Gui::getUsedDmaMemory()) + " of " +
           mebibytes(gui::Gui::getTotalDmaMemory()) + " MiB used.";
}

Fields memoryFields()
{
    return {{"usedBytes", static_cast<std::int64_t>(gui::Gui::getUsedDmaMemory())},
            {"totalBytes", static_cast<std::int64_t>(gui::Gui::getTotalDmaMemory())}};
}

} // namespace ovra::console
