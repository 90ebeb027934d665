// Images: starting, waiting, counting, saving, stopping.
#include "Arguments.h"
#include "ChoiceDialog.h"
#include "CommandTable.h"
#include "Console.h"
#include "ConsoleViews.h"
#include "Descriptions.h"
#include "Printer.h"

#include "front-ends/shared/ImageCollection.h"
#include "front-ends/shared/Lookup.h"
#include "front-ends/shared/OutputFile.h"
#include "front-ends/shared/PngWriter.h"
#include "front-ends/shared/RequestError.h"
#include "front-ends/shared/Titles.h"

#include "gui-core/Gui.h"
#include "gui-core/StartAcquisitionCommand.h"
#include "gui-core/StopAcquisitionCommand.h"
#include "gui-core/keys/Keys.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-lib-display-fglib/FglibFrameBufferGroup.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"

#include <algorithm>
#include <array>
#include <iomanip>
#include <sstream>

namespace ovra::console {

using namespace frontend;

namespace {

constexpr std::chrono::seconds MAX_IMAGE_WAIT{30};
constexpr int WITHOUT_END = -1; ///< number of images to start with

/// A DMA channel that has a display scene.
struct Channel
{
    std::string title;
    DmaNode dma;
    boost::shared_ptr<display::DisplayScene> scene;
    const ImageKeeper* images;
};

void appendChannel(std::vector<Channel>& channels, Console& console, const BoardNode& board,
                   const DmaNode& dma)
{
    const auto scene = dma->getDisplayScene();
    const auto* images = console.images.find(*board, *dma);
    if (scene && images)
        channels.push_back({channelTitle(*board, *dma), dma, scene, images});
}

std::vector<Channel> allChannels(Console& console)
{
    std::vector<Channel> channels;
    for (const auto& board : allBoards())
        for (const auto& dma : listOf(board->getDmas()))
            appendChannel(channels, console, board, dma);
    return channels;
}

/// The channel that two arguments name: board, and index of the DMA channel.
Channel findChannel(Console& console, const Arguments& arguments, std::size_t position)
{
    const auto board = findLoadedBoard(arguments.text(position));
    const auto dma = findDma(*board, arguments.integer(position + 1, "DMA", 0));
    std::vector<Channel> channels;
    appendChannel(channels, console, board, dma);
    if (channels.empty())
        throw RequestError(channelTitle(*board, *dma) + " has no display");
    return channels.front();
}

bool namesDma(const Arguments& arguments)
{
    if (arguments.text(1) == "dma")
        return true;
    if (arguments.text(1) == "port")
        return false;
    throw RequestError("what starts and stops is a 'dma' or a 'port', not '" + arguments.text(1) + "'");
}

void start(Console& console, const Arguments& arguments)
{
    using gui::commands::StartAcquisitionCommand;
    const auto board = findLoadedBoard(arguments.text(0));
    const bool dma = namesDma(arguments);
    const int index = arguments.integer(2, "INDEX", 0);
    const int images = arguments.count() > 3 ? arguments.integer(3, "COUNT", 1) : WITHOUT_END;
    if (dma)
        return console.run(StartAcquisitionCommand::create(findDma(*board, index), images));
    console.run(StartAcquisitionCommand::create(findPort(*board, index), images));
}

void stop(Console& console, const Arguments& arguments)
{
    using gui::commands::StopAcquisitionCommand;
    const auto board = findLoadedBoard(arguments.text(0));
    const bool dma = namesDma(arguments);
    const int index = arguments.integer(2, "INDEX", 0);
    if (dma)
        return console.run(StopAcquisitionCommand::create(findDma(*board, index)));
    console.run(StopAcquisitionCommand::create(findPort(*board, index)));
}

void syncMode(Console& console, const Arguments& arguments)
{
    constexpr std::array REACHES{"what is named", "the whole process", "the whole board", "all boards"};
    if (arguments.count() > 0)
        gui::Gui::setSyncMode(static_cast<gui::Gui::SyncMode>(arguments.integer(0, "MODE", 0, 3)));
    const auto mode = static_cast<std::size_t>(gui::Gui::getSyncMode());
    console.printer.line("Sync mode " + std::to_string(mode) + ": start and stop reach " + REACHES.at(mode) +
                         ".");
}

void setAnswer(Console& console, const Arguments& arguments)
{
    if (arguments.text(0) == "forget")
        return core::HarloApplication::setConfigEntry(gui::keys::ANSWER_REMEMBERED.name, 0);

    const bool remember = arguments.count() > 1;
    if (remember && arguments.text(1) != "remember")
        throw RequestError("an answer is followed by 'remember' or nothing, not by '" + arguments.text(1) +
                           "'");
    console.dialog.setAnswer({arguments.integer(0, "BUTTON", 0, 2), remember});
}

std::int64_t received(const Channel& channel)
{
    return channel.scene->statistics().received;
}

/// True when the channel has \p wanted images, or will not get them any more.
bool isSettled(const Channel& channel, std::int64_t wanted)
{
    return received(channel) >= wanted || !channel.scene->isGrabbing();
}

void requireImages(const Channel& channel, std::int64_t wanted)
{
    const auto arrived = received(channel);
    if (arrived < wanted)
        throw RequestError(channel.title + ": " + std::to_string(arrived) + " of " + std::to_string(wanted) +
                           " images arrived" +
                           (channel.scene->isGrabbing()
                                ? " within " + std::to_string(MAX_IMAGE_WAIT.count()) + " seconds"
                                : ", and it does not acquire"));
}

std::string progressText(const std::vector<Channel>& channels, std::int64_t wanted)
{
    std::string text;
    for (const auto& channel : channels)
        text += (text.empty() ? "" : ", ") + channel.title + ": " + std::to_string(received(channel)) + "/" +
                std::to_string(wanted);
    return text;
}

void waitForImages(Console& console, const std::vector<Channel>& channels, std::int64_t wanted)
{
    std::string shown;
    const auto settled = [&] {
        if (auto text = progressText(channels, wanted); text != shown)
            console.printer.status(shown = std::move(text));
        return std::all_of(channels.begin(), channels.end(),
                           [&](const auto& channel) { return isSettled(channel, wanted); });
    };
    console.waitUntil(settled, MAX_IMAGE_WAIT);

    for (const auto& channel : channels)
        requireImages(channel, wanted);
    for (const auto& channel : channels)
        console.printer.line(channel.title + ": " + std::to_string(received(channel)) + " images.");
}

std::vector<Channel> acquiringChannels(Console& console)
{
    auto channels = allChannels(console);
    std::erase_if(channels, [](const auto& channel) { return !channel.scene->isGrabbing(); });
    if (channels.empty())
        throw RequestError("no DMA channel acquires");
    return channels;
}

void wait(Console& console, const Arguments& arguments)
{
    if (arguments.count() == 1) {
        console.waitUntil([] { return false; }, arguments.seconds(0));
        return;
    }
    if (arguments.text(1) != "images" || arguments.count() == 3)
        throw RequestError("usage: wait SECONDS, or wait COUNT images [BOARD DMA]");
    const int wanted = arguments.integer(0, "COUNT", 1);
    if (arguments.count() == 2)
        return waitForImages(console, acquiringChannels(console), wanted);
    waitForImages(console, {findChannel(console, arguments, 2)}, wanted);
}

/// The next image of a channel that acquires, the last one of a channel at rest.
StoredImage imageToSave(Console& console, const Channel& channel)
{
    const auto before = channel.images->count();
    const auto there = [&] { return channel.images->count() > before || !channel.scene->isGrabbing(); };
    if (!console.waitUntil(there, MAX_IMAGE_WAIT))
        throw RequestError(channel.title + ": no image within " + std::to_string(MAX_IMAGE_WAIT.count()) +
                           " seconds");
    auto image = channel.images->newest();
    if (image.pixels.empty())
        throw RequestError(channel.title + " has got no image, and it does not acquire");
    return image;
}

void saveImage(Console& console, const Arguments& arguments)
{
    const auto channel = findChannel(console, arguments, 0);
    const auto image = imageToSave(console, channel);
    writeFile(console.outputFile(arguments.text(2)), encodePng(image));
    console.printer.line(channel.title + ": image " + std::to_string(image.number) + ", " +
                         sizeText(image.width, image.height) + ", saved as " + arguments.text(2) + ".");
}

std::int64_t lostImages(const core::models::HlEnvironmentDmaNode& dma)
{
    const auto group = boost::dynamic_pointer_cast<display::FglibFrameBufferGroup>(dma.getFrameBufferGroup());
    return group ? group->lostImages() : 0; // other groups know of none
}

void showStatistics(Console& console, const Channel& channel)
{
    const auto statistics = channel.scene->statistics();
    std::ostringstream text;
    text << channel.title << ": " << statistics.received << " images, " << std::fixed << std::setprecision(1)
         << channel.images->imagesPerSecond() << " per second, " << statistics.shown << " shown, "
         << statistics.skipped << " skipped, " << lostImages(*channel.dma) << " lost";
    console.printer.line(text.str());
}

void showEvents(Console& console)
{
    std::string text;
    for (const auto& [name, count] : console.views.eventCounts())
        text += (text.empty() ? "" : ", ") + name + " " + std::to_string(count);
    if (!text.empty())
        console.printer.line("events since the program's start: " + text);
}

void showAllStatistics(Console& console, const Arguments&)
{
    const auto channels = allChannels(console);
    if (channels.empty())
        console.printer.line("There are no DMA channels.");
    for (const auto& channel : channels)
        showStatistics(console, channel);
    showEvents(console);
}

} // namespace

std::vector<ConsoleCommand> acquisitionCommands()
{
    return {
        {"sync-mode", "[MODE]",
         "shows or sets how far start and stop reach: 0 what is named, 1 its process, 2 its board, 3 all "
         "boards",
         0, 1, syncMode},
        {"answer", "BUTTON [remember] | forget",
         "answers the next questions with button 0, 1 or 2; forget: a remembered answer is no longer used", 1,
         2, setAnswer},
        {"start", "BOARD dma|port INDEX [COUNT]", "starts acquisition, of COUNT images or without end", 3, 4,
         start},
        {"stop", "BOARD dma|port INDEX", "stops acquisition", 3, 3, stop},
        {"wait", "SECONDS | COUNT images [BOARD DMA]",
         "waits; for images: until so many have arrived since the start, on each channel that acquires or on "
         "one",
         1, 4, wait},
        {"save-image", "BOARD DMA FILE.png",
         "saves the next image of a DMA channel, or the last one if it does not acquire", 3, 3, saveImage},
        {"statistics", "",
         "shows the images of each DMA channel since its start: arrived, shown, skipped because a newer one "
         "was "
         "there, lost on the way; and events",
         0, 0, showAllStatistics},
    };
}

} // namespace ovra::console
