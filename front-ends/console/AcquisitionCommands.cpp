// SPDX-License-Identifier: MIT
// Commands that start and stop acquisition, and wait for images.
#include "Arguments.h"
#include "Channels.h"
#include "ChoiceDialog.h"
#include "CommandTable.h"
#include "Console.h"
#include "Descriptions.h"
#include "Printer.h"

#include "front-ends/shared/Lookup.h"
#include "front-ends/shared/RequestError.h"

#include "gui-core/Gui.h"
#include "gui-core/StartAcquisitionCommand.h"
#include "gui-core/StopAcquisitionCommand.h"
#include "gui-core/keys/Keys.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"

#include <algorithm>
#include <array>

namespace ovra::console {

using namespace frontend;

namespace {

constexpr std::chrono::seconds MAX_IMAGE_WAIT{30};
constexpr int WITHOUT_END = -1; ///< number of images to start with

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
    console.printer.result("syncMode", {{"mode", static_cast<std::int64_t>(mode)}},
                           "Sync mode " + std::to_string(mode) + ": start and stop reach " +
                               REACHES.at(mode) + ".");
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

/// True if the channel has \p wanted images, or has stopped without them.
bool isSettled(const Channel& channel, std::int64_t wanted)
{
    return channel.received() >= wanted || !channel.scene->isGrabbing();
}

void requireImages(const Channel& channel, std::int64_t wanted)
{
    const bool acquires = channel.scene->isGrabbing(); // read first: the last image arrives before the end
    const auto arrived = channel.received();
    if (arrived < wanted)
        throw RequestError(channel.title + ": " + std::to_string(arrived) + " of " + imagesText(wanted) +
                           " arrived" +
                           (acquires ? " within " + std::to_string(MAX_IMAGE_WAIT.count()) + " seconds"
                                     : ", and it does not acquire"));
}

std::string progressText(const std::vector<Channel>& channels, std::int64_t wanted)
{
    std::string text;
    for (const auto& channel : channels)
        text += (text.empty() ? "" : ", ") + channel.title + ": " + std::to_string(channel.received()) + "/" +
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
    for (const auto& channel : channels) {
        const auto arrived = channel.received();
        console.printer.result("arrived", channel.fields({{"images", arrived}}),
                               channel.title + ": " + imagesText(arrived) + ".");
    }
}

/// The channels that acquire, and those that already have the images, since their acquisition may have ended.
std::vector<Channel> channelsToWaitFor(const Console& console, std::int64_t wanted)
{
    auto channels = allChannels(console);
    std::erase_if(channels, [wanted](const auto& channel) {
        return !channel.scene->isGrabbing() && channel.received() < wanted;
    });
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
        return waitForImages(console, channelsToWaitFor(console, wanted), wanted);
    waitForImages(console, {findChannel(console, arguments, 2)}, wanted);
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
         start, 3},
        {"stop", "BOARD dma|port INDEX", "stops acquisition", 3, 3, stop, 3},
        {"wait", "SECONDS | COUNT images [BOARD DMA]",
         "waits; for images: until so many have arrived since the start, on each channel that acquires or on "
         "one",
         1, 4, wait},
    };
}

} // namespace ovra::console
