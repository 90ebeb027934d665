// SPDX-License-Identifier: MIT
// Saving an image and recording a number of them.
#include "RequestTable.h"
#include "Viewer.h"

#include "front-ends/shared/OutputFile.h"
#include "front-ends/shared/PngWriter.h"
#include "front-ends/shared/RequestError.h"
#include "front-ends/shared/Titles.h"

#include "gui-core/StartAcquisitionCommand.h"
#include "ovra-core/Command.h"
#include "ovra-lib-display/DisplayScene.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"

#include <boost/make_shared.hpp>

#include <limits>

namespace ovra::viewer {

using nlohmann::json;

namespace {

/// Encodes on the worker thread: a large image takes about a second.
class SaveImage final : public core::Command
{
public:
    SaveImage(const Frame& frame, std::filesystem::path file)
        : core::Command(core::Command::Asynchronous),
          m_frame(frame),
          m_file(std::move(file))
    {}

    void executeAsync() override
    {
        const auto& [bits, bytesPerSample, components] = m_frame.layout;
        frontend::writeFile(m_file, frontend::encodePng({.width = m_frame.width,
                                                         .height = m_frame.height,
                                                         .components = components,
                                                         .bits = bits,
                                                         .bytes = m_frame.bytes,
                                                         .words = m_frame.words}));
    }

private:
    const Frame m_frame;
    const std::filesystem::path m_file;
};

struct NamedChannel
{
    frontend::BoardNode board;
    frontend::DmaNode dma;
    std::shared_ptr<ChannelVisualizer> images;

    std::string title() const { return frontend::channelTitle(*board, *dma); }
    std::string fileName() const
    {
        return "board" + std::to_string(board->getIndex()) + "-dma" + std::to_string(dma->getIndex());
    }
};

NamedChannel channelArgument(Viewer& viewer, const json& arguments)
{
    NamedChannel channel{loadedBoardArgument(arguments), {}, {}};
    channel.dma = frontend::findDma(*channel.board, indexArgument(arguments, "dma"));
    channel.images = viewer.images().findVisualizer(channel.board->getSerial(), channel.dma->getIndex());
    if (!channel.images || !channel.dma->getDisplayScene())
        throw frontend::RequestError(channel.title() + " has no display");
    return channel;
}

json saveImage(Viewer& viewer, const json& arguments)
{
    const auto channel = channelArgument(viewer, arguments);
    const auto frame = channel.images->channel()->mailbox().newest();
    if (!frame)
        throw frontend::RequestError(channel.title() + " has got no image yet");
    const auto name = viewer.readyName(channel.fileName() + "-image" + std::to_string(frame->number), ".png");
    viewer.run(boost::make_shared<SaveImage>(*frame, viewer.outputFolder() / name));
    return {{"name", name}, {"folder", viewer.outputFolderText()}};
}

/// Starts a channel that is not acquiring, for as many images as are recorded.
json record(Viewer& viewer, const json& arguments)
{
    const auto channel = channelArgument(viewer, arguments);
    const auto count =
        static_cast<int>(numberArgument(arguments, "images", 1, std::numeric_limits<int>::max()));
    const auto scene = channel.dma->getDisplayScene();
    const bool grabbing = scene->isGrabbing();
    auto& recordings = viewer.recordings();
    const auto name = viewer.readyName(channel.fileName(), "");
    const auto id = recordings.begin(viewer.outputFolder() / name, count, scene, channel.images);
    if (!grabbing) {
        viewer.afterwards([&recordings, id] { recordings.beStarted(id); });
        viewer.run(gui::commands::StartAcquisitionCommand::create(channel.dma, count));
    }
    return {{"recording", id}, {"name", name}};
}

json cancelRecording(Viewer& viewer, const json& arguments)
{
    viewer.recordings().cancel(
        numberArgument(arguments, "recording", 1, std::numeric_limits<std::int32_t>::max()));
    return nullptr;
}

} // namespace

std::vector<RequestEntry> imageRequests()
{
    return {{"save-image", saveImage}, {"record", record}, {"cancel-recording", cancelRecording}};
}

} // namespace ovra::viewer
