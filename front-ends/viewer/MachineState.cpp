// SPDX-License-Identifier: MIT
#include "MachineState.h"

#include "ChannelImages.h"

#include "front-ends/shared/EventCounter.h"
#include "front-ends/shared/Lookup.h"
#include "front-ends/shared/Titles.h"

#include "gui-core/Gui.h"
#include "gui-core/keys/Keys.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-lib-display/DisplayScene.h"
#include "ovra-lib-display/FrameBufferGroup.h"
#include "ovra-lib-display/reference/AcquisitionObserver.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentFileNode.h"
#include "ovra-lib-environment/HlEnvironmentHardwareNodes.h"
#include "ovra-lib-genicam-model/GenICamModel.h"

#include <chrono>
#include <cmath>
#include <stdexcept>

namespace ovra::viewer {

using frontend::listOf;
using nlohmann::json;

namespace {

long long entry(const gui::keys::IntegerKey& key)
{
    return core::HarloApplication::getConfigIntEntry(key.name, key.defaultValue);
}

json describeCamera(const core::models::HlEnvironmentLogicalPortNode& port)
{
    const auto node = frontend::cameraNodeOf(port);
    if (!node)
        return nullptr;
    json camera = {{"name", node->getName()}, {"acquiring", false}};
    const auto model = node->getGenICamModelEntry();
    if (!model)
        return camera;
    try {
        camera["acquiring"] = model->isAcquiring();
        camera["width"] = model->width();
        camera["height"] = model->height();
    } catch (const std::runtime_error& error) {
        camera["error"] = error.what();
    }
    return camera;
}

json describePort(const core::models::HlEnvironmentLogicalPortNode& port)
{
    const auto connector = port.getMappedPortEntry();
    return {{"index", port.getIndex()},
            {"type", port.getPortType()},
            {"connector", connector ? json(connector->getIndex()) : json()},
            {"generator", port.getGeneratorActive()},
            {"camera", describeCamera(port)}};
}

/// Why an acquisition ended by itself before it had all its images; empty for others.
std::string earlyEnd(const reference::AcquisitionStatus& status)
{
    return status.state == reference::AcquisitionState::CountReached ? "" : status.reason;
}

json describeChannel(const core::models::HlEnvironmentBoardNode& board,
                     const core::models::HlEnvironmentDmaNode& dma, const ChannelImages& images)
{
    const auto scene = dma.getDisplayScene();
    const auto group = dma.getFrameBufferGroup();
    const auto channel = images.find(board.getSerial(), dma.getIndex());
    return {{"id", channel ? json(channel->id()) : json()},
            {"index", dma.getIndex()},
            {"title", frontend::channelTitle(board, dma)},
            {"width", scene ? scene->width() : 0},
            {"height", scene ? scene->height() : 0},
            {"grabbing", scene && scene->isGrabbing()},
            {"ended", scene ? earlyEnd(reference::AcquisitionObserver::status(*scene)) : ""},
            {"buffers", group ? group->bufferCount() : 0},
            {"requestedBuffers", group ? group->requestedBufferCount() : 0}};
}

json describeProcess(const core::models::HlEnvironmentBoardNode& board,
                     const core::models::HlEnvironmentProcessNode& process, const ChannelImages& images)
{
    json channels = json::array();
    for (const auto& dma : listOf(process.getDmas()))
        channels.push_back(describeChannel(board, *dma, images));
    json ports = json::array();
    for (const auto& port : listOf(process.getLogicalPorts()))
        ports.push_back(describePort(*port));
    return {{"index", process.getIndex()}, {"channels", channels}, {"ports", ports}};
}

json describeBoard(const core::models::HlEnvironmentBoardNode& board, const ChannelImages& images)
{
    json processes = json::array();
    for (const auto& process : listOf(board.getProcesses()))
        processes.push_back(describeProcess(board, *process, images));
    const auto applet = board.getLoadedAppletEntry();
    return {{"index", board.getIndex()},
            {"serial", frontend::serialText(board)},
            {"model", board.getBoardName()},
            {"applet", applet ? json(applet->getFileName()) : json()},
            {"processes", processes}};
}

std::string folderOf(const std::string& path)
{
    const auto end = path.rfind('/');
    if (end == std::string::npos)
        return "";
    const auto begin = path.rfind('/', end - 1);
    return path.substr(begin + 1, end - begin - 1);
}

json describeApplet(const core::models::HlEnvironmentFileNode& file)
{
    return {{"path", file.getFilePath()},
            {"name", file.getFileName()},
            {"folder", folderOf(file.getFilePath())},
            {"type", file.getType()},
            {"tags", file.getTags()},
            {"processes", file.getNrOfProcesses()},
            {"broken", file.getBrokenReason()}};
}

/// Arrival of the newest image in milliseconds since 1970; null before the first.
json arrivalOf(const ImageFeed& channel)
{
    const auto frame = channel.mailbox().newest();
    if (!frame)
        return nullptr;
    return std::chrono::duration_cast<std::chrono::milliseconds>(frame->arrival.time_since_epoch()).count();
}

/// Why a channel's image is old; empty if it is not.
const char* reasonOfAge(const reference::AcquisitionStatus& status, bool hasImage)
{
    using reference::AcquisitionState;
    switch (status.state) {
    case AcquisitionState::Running:
        return "";
    case AcquisitionState::WaitingForTrigger:
        return "Waiting for a trigger";
    case AcquisitionState::NoSignal:
        return "No signal: no camera sends";
    case AcquisitionState::CountReached:
        return "All images have arrived";
    case AcquisitionState::TimedOut:
        return "Timed out";
    case AcquisitionState::DeviceLost:
        return "Device lost";
    case AcquisitionState::Failed:
        return "Failed";
    case AcquisitionState::Stopped:
        break;
    }
    return hasImage ? "Stopped" : "Not started";
}

json describeStatistics(const display::DisplayScene& scene, const ImageFeed& channel)
{
    constexpr double TENTHS = 10;
    const auto status = reference::AcquisitionObserver::status(scene);
    const auto figures = reference::AcquisitionObserver::figures(scene);
    const auto arrival = arrivalOf(channel);
    return {{"received", figures.sinceStart.received},
            {"shown", figures.sinceStart.shown},
            {"skipped", figures.sinceStart.skipped},
            {"lost", figures.sinceStart.lost},
            {"rate", std::round(figures.imagesPerSecond * TENTHS) / TENTHS},
            {"bytesPerSecond", std::round(figures.bytesPerSecond)},
            {"arrival", arrival},
            {"why", reasonOfAge(status, !arrival.is_null())}};
}

} // namespace

json describeBoards(const ChannelImages& images)
{
    json boards = json::array();
    for (const auto& board : frontend::allBoards())
        boards.push_back(describeBoard(*board, images));
    return boards;
}

json describeApplets()
{
    json applets = json::array();
    for (const auto& file : frontend::allApplets())
        applets.push_back(describeApplet(*file));
    return applets;
}

json describeMemory()
{
    return {{"used", gui::Gui::getUsedDmaMemory()}, {"total", gui::Gui::getTotalDmaMemory()}};
}

json describeSettings()
{
    const bool remembered = entry(gui::keys::ANSWER_REMEMBERED) != 0;
    return {{"syncMode", static_cast<int>(gui::Gui::getSyncMode())},
            {"compareSizes", entry(gui::keys::COMPARE_IMAGE_SIZES) != 0},
            {"remembered", remembered ? json(entry(gui::keys::ANSWER)) : json()}};
}

json describeEvents(const frontend::EventCounter& events)
{
    json all = json::array();
    for (const auto& [event, count] : events.counts())
        all.push_back({{"board", event.board}, {"name", event.name}, {"count", count}});
    return all;
}

json describeStatistics(const ChannelImages& images)
{
    json all = json::object();
    for (const auto& board : frontend::allBoards())
        for (const auto& dma : listOf(board->getDmas())) {
            const auto scene = dma->getDisplayScene();
            const auto channel = images.find(board->getSerial(), dma->getIndex());
            if (scene && channel)
                all[std::to_string(channel->id())] = describeStatistics(*scene, *channel);
        }
    return all;
}

} // namespace ovra::viewer
