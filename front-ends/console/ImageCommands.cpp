// SPDX-License-Identifier: MIT
// Commands that save, record and show images.
#include "Arguments.h"
#include "Channels.h"
#include "CommandTable.h"
#include "Console.h"
#include "Descriptions.h"
#include "Platform.h"
#include "Printer.h"

#include "front-ends/shared/ImageKeeper.h"
#include "front-ends/shared/ImageRecorder.h"
#include "front-ends/shared/OutputFile.h"
#include "front-ends/shared/Paths.h"
#include "front-ends/shared/PngWriter.h"
#include "front-ends/shared/RequestError.h"
#include "front-ends/shared/Titles.h"

#include "ovra-lib-display/PixelConversion.h"
#include "ovra-lib-display/reference/AcquisitionObserver.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

namespace ovra::console {

using namespace frontend;

namespace {

constexpr std::chrono::seconds MAX_NEXT_IMAGE_WAIT{30};

/// Whether no image follows the ones that have been shown, unless a trigger or a cable brings it.
bool isWaiting(const Channel& channel)
{
    using reference::AcquisitionObserver;
    using reference::AcquisitionState;
    const auto state = AcquisitionObserver::status(*channel.scene).state;
    const auto figures = AcquisitionObserver::figures(*channel.scene).sinceStart;
    return (state == AcquisitionState::WaitingForTrigger || state == AcquisitionState::NoSignal) &&
           figures.shown > 0 && figures.shown + figures.skipped >= figures.received;
}

/// The next image of a channel that gets images, the last one of any other channel.
StoredImage currentImage(Console& console, const Channel& channel)
{
    const auto before = channel.images->count();
    const auto there = [&] {
        return channel.images->count() > before || !channel.scene->isGrabbing() || isWaiting(channel);
    };
    if (!console.waitUntil(there, MAX_NEXT_IMAGE_WAIT))
        throw RequestError(channel.title + ": no image within " +
                           std::to_string(MAX_NEXT_IMAGE_WAIT.count()) + " seconds");
    auto image = channel.images->newest();
    if (image.bytes.empty())
        throw RequestError(channel.title + " has got no image, and it does not acquire");
    return image;
}

/// The fields of an image, for output as JSON.
Fields imageFields(const display::Image& image)
{
    return {{"number", image.number},
            {"width", std::int64_t{image.width}},
            {"height", std::int64_t{image.height}},
            {"format", std::string(display::describe(image.format).name)},
            {"timestampNs", static_cast<std::int64_t>(image.timestampNs)}};
}

std::string imageText(const display::Image& image)
{
    return "image " + std::to_string(image.number) + ", " + sizeText(image.width, image.height);
}

void requirePng(const std::string& name)
{
    std::string ending =
        name.substr(name.find_last_of('.') == std::string::npos ? name.size() : name.find_last_of('.'));
    std::transform(ending.begin(), ending.end(), ending.begin(), [](unsigned char character) {
        return static_cast<char>(character >= 'A' && character <= 'Z' ? character + ('a' - 'A') : character);
    });
    if (ending != ".png")
        throw RequestError("images are saved as PNG: the name must end with .png, not '" + name + "'");
}

void saveImage(Console& console, const Arguments& arguments)
{
    const std::string& name = arguments.text(2);
    const auto channel = findChannel(console, arguments, 0);
    requirePng(name);
    const auto image = currentImage(console, channel);
    writeFile(console.outputFile(name), encodePng(image.view()));
    auto fields = channel.fields(imageFields(image.description));
    fields.push_back({"file", name});
    console.printer.result("image", fields,
                           channel.title + ": " + imageText(image.description) + ", saved as " + name + ".");
}

std::string progressBar(std::int64_t done, std::int64_t all)
{
    constexpr std::int64_t WIDTH = 40;
    const auto filled = static_cast<std::size_t>(done * WIDTH / all);
    return "[" + std::string(filled, '#') + std::string(WIDTH - filled, '-') + "] " + std::to_string(done) +
           "/" + std::to_string(all);
}

void record(Console& console, const Arguments& arguments)
{
    const auto channel = findChannel(console, arguments, 0);
    const int count = arguments.integer(2, "COUNT", 1);
    const std::string& folder = arguments.text(3);
    if (!channel.scene->isGrabbing())
        throw RequestError(channel.title + " does not acquire");

    ImageRecorder recorder(console.outputFile(folder), count);
    {
        const Recording recording(channel.images->tap(), recorder);
        std::int64_t shown = -1;
        const auto complete = [&] {
            const auto progress = recorder.progress();
            if (progress.recorded != shown)
                console.printer.status(progressBar(shown = progress.recorded, count));
            return progress.complete || !channel.scene->isGrabbing();
        };
        console.waitUntil(complete, std::chrono::hours(24 * 365));
    }
    const auto result = recorder.finish();
    const std::string missed =
        result.missed > 0 ? ", " + std::to_string(result.missed) + " missed because writing them takes longer"
                          : "";
    console.printer.result(
        "recording",
        channel.fields({{"recorded", result.recorded}, {"missed", result.missed}, {"folder", folder}}),
        channel.title + ": " + imagesText(result.recorded) + " recorded in " + folder + missed + ".");
    if (result.recorded < count)
        throw RequestError(channel.title + " stopped before all of " + imagesText(count) + " had come");
}

using Colour = std::array<unsigned, 3>;

/// The mean colours of an image's parts, \p columns by \p rows.
std::vector<Colour> shrunk(const display::Image& image, int columns, int rows)
{
    std::vector<std::uint8_t> pixels;
    display::unpackRgb8(image, pixels);
    std::vector<Colour> parts;
    for (int row = 0; row < rows; ++row) {
        const int top = row * image.height / rows,
                  bottom = std::max(top + 1, (row + 1) * image.height / rows);
        for (int column = 0; column < columns; ++column) {
            const int left = column * image.width / columns,
                      right = std::max(left + 1, (column + 1) * image.width / columns);
            std::array<std::uint64_t, 3> sum{};
            for (int y = top; y < bottom; ++y)
                for (int x = left; x < right; ++x)
                    for (std::size_t c = 0; c < 3; ++c)
                        sum.at(c) +=
                            pixels[(static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width) +
                                    static_cast<std::size_t>(x)) *
                                       3 +
                                   c];
            const auto area =
                static_cast<std::uint64_t>(bottom - top) * static_cast<std::uint64_t>(right - left);
            Colour mean{};
            std::transform(sum.begin(), sum.end(), mean.begin(),
                           [area](std::uint64_t total) { return static_cast<unsigned>(total / area); });
            parts.push_back(mean);
        }
    }
    return parts;
}

std::string colourCode(const char* plane, const Colour& colour)
{
    return std::string("\x1b[") + plane + ";2;" + std::to_string(colour[0]) + ";" +
           std::to_string(colour[1]) + ";" + std::to_string(colour[2]) + "m";
}

// An upper half block with foreground and background colour shows two pixels in one character.
std::string inColour(const Colour& upper, const Colour& lower)
{
    return colourCode("38", upper) + colourCode("48", lower) + "\u2580";
}

std::string inShades(const Colour& upper, const Colour& lower)
{
    constexpr std::array SHADES{" ", "\u2591", "\u2592", "\u2593", "\u2588"};
    constexpr unsigned MAX_SUM = 2 * 3 * 255;
    const unsigned sum =
        std::accumulate(upper.begin(), upper.end(), 0U) + std::accumulate(lower.begin(), lower.end(), 0U);
    return SHADES.at(sum * SHADES.size() / (MAX_SUM + 1));
}

void show(Console& console, const Arguments& arguments)
{
    const auto channel = findChannel(console, arguments, 0);
    const auto image = currentImage(console, channel);
    const auto& picture = image.description;
    const bool colours = console.printer.hasColours();

    constexpr int MAX_COLUMNS = 100;
    const int columns = std::min({MAX_COLUMNS, terminalColumns() - 1, picture.width});
    const int rows = std::max(1, columns * picture.height / picture.width / 2);
    const auto parts = shrunk(image.view(), columns, 2 * rows);
    for (int row = 0; row < rows; ++row) {
        std::string line;
        for (int column = 0; column < columns; ++column) {
            const auto upper = static_cast<std::size_t>(2 * row * columns + column);
            const auto lower = upper + static_cast<std::size_t>(columns);
            line += colours ? inColour(parts[upper], parts[lower]) : inShades(parts[upper], parts[lower]);
        }
        console.printer.line(colours ? line + "\x1b[0m" : line);
    }
    console.printer.result("shown", channel.fields(imageFields(picture)),
                           channel.title + ": " + imageText(picture) + ".");
}

void histogram(Console& console, const Arguments& arguments)
{
    constexpr std::size_t BINS = 16;
    constexpr std::int64_t BAR_WIDTH = 50;
    const auto channel = findChannel(console, arguments, 0);
    const auto image = currentImage(console, channel);
    std::vector<std::uint16_t> samples;
    display::unpackGrey(image.view(), samples);

    const int bits = display::describe(image.description.format).significantBits;
    const std::size_t values = (std::size_t{1} << bits) / BINS; // in a bin
    std::vector<std::int64_t> counts(BINS);
    for (const auto sample : samples)
        ++counts[std::min(BINS - 1, sample / values)];
    const auto [darkest, brightest] = std::minmax_element(samples.begin(), samples.end());
    const double mean =
        std::accumulate(samples.begin(), samples.end(), 0.0) / static_cast<double>(samples.size());

    auto fields = channel.fields(imageFields(image.description));
    fields.insert(fields.end(), {{"counts", counts},
                                 {"minimum", std::int64_t{*darkest}},
                                 {"maximum", std::int64_t{*brightest}},
                                 {"mean", mean}});
    const std::string summary = channel.title + ": " + imageText(image.description) + ", grey values " +
                                std::to_string(*darkest) + " to " + std::to_string(*brightest) + ", mean " +
                                std::to_string(std::lround(mean)) + ".";
    console.printer.result("histogram", fields, summary);
    if (console.printer.target() == Printer::Target::Objects)
        return;
    const auto highest = *std::max_element(counts.begin(), counts.end());
    for (std::size_t bin = 0; bin < BINS; ++bin) {
        const std::string range = std::to_string(bin * values) + "-" + std::to_string((bin + 1) * values - 1);
        console.printer.line(std::string(12 - std::min<std::size_t>(12, range.size()), ' ') + range + " " +
                             std::string(static_cast<std::size_t>(counts[bin] * BAR_WIDTH / highest), '#') +
                             " " + std::to_string(counts[bin]));
    }
}

} // namespace

std::vector<ConsoleCommand> imageCommands()
{
    return {
        {"save-image", "BOARD DMA FILE.png",
         "saves the next image of a DMA channel, or the last one if it does not acquire", 3, 3, saveImage},
        {"record", "BOARD DMA COUNT FOLDER",
         "records the next COUNT images of a DMA channel: numbered files, and a list of their numbers, time "
         "stamps and arrivals",
         4, 4, record},
        {"show", "BOARD DMA", "draws the next image, or the last one, with characters", 2, 2, show},
        {"histogram", "BOARD DMA", "shows how often each range of grey values occurs in that image", 2, 2,
         histogram},
    };
}

} // namespace ovra::console
