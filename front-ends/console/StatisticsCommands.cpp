// SPDX-License-Identifier: MIT
// Commands that show the statistics of acquisitions.
#include "Arguments.h"
#include "Channels.h"
#include "CommandTable.h"
#include "Console.h"
#include "ConsoleViews.h"
#include "Descriptions.h"
#include "Interrupts.h"
#include "Printer.h"

#include "front-ends/shared/RequestError.h"

#include "ovra-core/reference/Application.h"
#include "ovra-lib-display/FrameBufferGroup.h"
#include "ovra-lib-display/reference/AcquisitionObserver.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"

#include <algorithm>
#include <iomanip>
#include <sstream>

namespace ovra::console {

using namespace frontend;

namespace {

using reference::AcquisitionFigures;
using reference::AcquisitionObserver;

/// Number of buffers that hold an image of the current acquisition.
std::int64_t filledBuffers(const Channel& channel, std::int64_t received)
{
    const auto group = channel.dma->getFrameBufferGroup();
    return group ? std::min<std::int64_t>(received, group->bufferCount()) : 0;
}

Fields statisticsFields(const Channel& channel, const AcquisitionFigures& figures)
{
    const auto group = channel.dma->getFrameBufferGroup();
    const auto& counters = figures.sinceStart;
    return channel.fields(
        {{"state", std::string(reference::textOf(AcquisitionObserver::status(*channel.scene).state))},
         {"received", counters.received},
         {"shown", counters.shown},
         {"skipped", counters.skipped},
         {"lost", counters.lost},
         {"perSecond", figures.imagesPerSecond},
         {"bytesPerSecond", figures.bytesPerSecond},
         {"buffers", group ? std::int64_t{group->bufferCount()} : 0},
         {"filledBuffers", filledBuffers(channel, counters.received)},
         {"newestAgeSeconds", figures.newestAgeSeconds}});
}

std::string countsText(const Channel& channel, const AcquisitionFigures& figures)
{
    const auto& counters = figures.sinceStart;
    std::ostringstream text;
    text << channel.title << ": " << imagesText(counters.received) << ", " << std::fixed
         << std::setprecision(1) << figures.imagesPerSecond << " per second, " << counters.shown << " shown, "
         << counters.skipped << " skipped, " << counters.lost << " lost";
    return text.str();
}

/// With the state where it says why no image comes.
std::string statisticsText(const Channel& channel, const AcquisitionFigures& figures)
{
    using reference::AcquisitionState;
    const auto state = AcquisitionObserver::status(*channel.scene).state;
    const bool ordinary = state == AcquisitionState::Running || state == AcquisitionState::Stopped ||
                          state == AcquisitionState::CountReached;
    return countsText(channel, figures) + (ordinary ? "" : std::string(", ") + reference::textOf(state));
}

std::string watchText(const Channel& channel, const AcquisitionFigures& figures)
{
    constexpr double BYTES_PER_MEGABYTE = 1e6;
    const auto group = channel.dma->getFrameBufferGroup();
    std::ostringstream text;
    text << countsText(channel, figures) << std::fixed << std::setprecision(1) << "; "
         << figures.bytesPerSecond / BYTES_PER_MEGABYTE << " MB/s, ring "
         << filledBuffers(channel, figures.sinceStart.received) << "/" << (group ? group->bufferCount() : 0);
    if (figures.newestAgeSeconds >= 0)
        text << ", newest " << std::setprecision(2) << figures.newestAgeSeconds << " s old";
    text << ", " << reference::textOf(AcquisitionObserver::status(*channel.scene).state);
    return text.str();
}

void showEvents(Console& console)
{
    std::string text;
    for (const auto& [event, count] : console.views.eventCounts()) {
        if (console.printer.target() == Printer::Target::Objects)
            console.printer.result(
                "event", {{"board", std::int64_t{event.board}}, {"name", event.name}, {"count", count}}, "");
        text += (text.empty() ? "board " : ", board ") + std::to_string(event.board) + " " + event.name +
                " " + std::to_string(count);
    }
    if (!text.empty() && console.printer.target() != Printer::Target::Objects)
        console.printer.line("events since the program's start: " + text);
}

void showStatistics(Console& console, const Arguments&)
{
    const auto channels = allChannels(console);
    if (channels.empty() && console.printer.target() != Printer::Target::Objects)
        console.printer.line("There are no DMA channels.");
    for (const auto& channel : channels) {
        const auto figures = AcquisitionObserver::figures(*channel.scene);
        console.printer.result("statistics", statisticsFields(channel, figures),
                               statisticsText(channel, figures));
    }
    showEvents(console);
}

void redraw(Console& console, const std::vector<Channel>& channels, bool first)
{
    std::vector<std::string> lines;
    for (const auto& channel : channels) {
        const auto figures = AcquisitionObserver::figures(*channel.scene);
        lines.push_back(watchText(channel, figures));
        if (console.printer.target() == Printer::Target::Objects)
            console.printer.result("statistics", statisticsFields(channel, figures), "");
    }
    if (console.printer.target() != Printer::Target::Objects)
        console.printer.redraw(lines, first);
}

void watch(Console& console, const Arguments& arguments)
{
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::seconds INTERVAL{1};
    const auto channels = allChannels(console);
    if (channels.empty())
        throw RequestError("there are no DMA channels");
    const bool endless = arguments.count() == 0;
    const auto end = Clock::now() + (endless ? std::chrono::hours(0) : arguments.seconds(0));
    bool first = true;
    do {
        redraw(console, channels, first);
        first = false;
        console.application.pumpUntil([&] { return console.interrupts.commandEnds(); }, INTERVAL);
    } while (!console.interrupts.commandEnds() && (endless || Clock::now() < end));
    if (console.interrupts.commandEnds() && console.printer.target() == Printer::Target::Terminal)
        console.printer.line(""); // the terminal has written "^C"
}

} // namespace

std::vector<ConsoleCommand> statisticsCommands()
{
    return {
        {"statistics", "",
         "shows the images of each DMA channel since its start: arrived, shown, skipped because a newer one "
         "was there, lost on the way; and events",
         0, 0, showStatistics},
        {"watch", "[SECONDS]",
         "shows once a second for so long, or until Ctrl-C: also MB/s, how many buffers of the ring hold an "
         "image, the age of the newest, and what the acquisition is doing",
         0, 1, watch},
    };
}

} // namespace ovra::console
