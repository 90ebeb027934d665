// SPDX-License-Identifier: MIT
#include "images/Histogram.h"
#include "images/ImageFeeds.h"
#include "images/ImageView.h"
#include "server/ImageStreams.h"

#include <gtest/gtest.h>

#include <numeric>

using namespace ovra::viewer;
using ovra::display::Image;
using ovra::display::PixelFormat;

namespace {

Frame greyFrame(int width, int height, const std::function<int(int x, int y)>& value)
{
    Frame frame;
    frame.width = width;
    frame.height = height;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            frame.bytes.push_back(static_cast<std::uint8_t>(value(x, y)));
    return frame;
}

/// Mean of a square that may be cut off, the slow way.
double meanOf(const Frame& frame, const ImageView& view, int column, int row)
{
    int sum = 0;
    int count = 0;
    for (int y = 0; y < view.binning; ++y)
        for (int x = 0; x < view.binning; ++x) {
            const auto samples = pixelAt(frame, view.region.x + column * view.binning + x,
                                         view.region.y + row * view.binning + y);
            if (samples.empty())
                continue;
            sum += static_cast<int>(samples.front());
            ++count;
        }
    return static_cast<double>(sum) / count;
}

struct ViewRow
{
    int line;
    Region wanted;
    int screenWidth, screenHeight;
    ImageView view;
};

ShowView showAll(std::uint32_t channel)
{
    return {.channel = channel,
            .view = 1,
            .region = {0, 0, 100, 100},
            .screenWidth = 10,
            .screenHeight = 10,
            .histogram = true,
            .pixel = {},
            .line = {}};
}

Image imageOf(const std::vector<std::uint8_t>& pixels, int width, std::int64_t number)
{
    Image image;
    image.pixels = pixels.data();
    image.width = width;
    image.height = static_cast<int>(pixels.size()) / width;
    image.bytesPerLine = static_cast<std::size_t>(width);
    image.number = number;
    return image;
}

} // namespace

TEST(ImageView, HasNoFewerPixelsThanTheScreenAndLessThanFourTimesAsMany)
{
    const std::vector<ViewRow> rows{
        {__LINE__, {0, 0, 1000, 800}, 1000, 800, {{0, 0, 1000, 800}, 1, 1000, 800}},
        {__LINE__, {0, 0, 1000, 800}, 501, 400, {{0, 0, 1000, 800}, 1, 1000, 800}},
        {__LINE__, {0, 0, 1000, 800}, 500, 400, {{0, 0, 1000, 800}, 2, 500, 400}},
        {__LINE__,
         {0, 0, 1000, 800},
         300,
         200,
         {{0, 0, 1000, 800}, 3, 334, 267}}, // cut-off squares at the edges
        {__LINE__, {101, 51, 300, 300}, 100, 100, {{99, 51, 303, 300}, 3, 101, 100}},
        {__LINE__, {-50, -50, 100, 100}, 10, 10, {{0, 0, 50, 50}, 5, 10, 10}},
        {__LINE__, {990, 790, 100, 100}, 1, 1, {{990, 790, 10, 10}, 10, 1, 1}},
        {__LINE__, {2000, 0, 10, 10}, 5, 5, {}},
        {__LINE__, {0, 0, -5, 10}, 5, 5, {}},
        {__LINE__, {1048576, 1048576, 1048576, 1048576}, 16384, 16384, {}},
    };
    for (const auto& row : rows) {
        const auto view = fitView(row.wanted, row.screenWidth, row.screenHeight, 1000, 800);
        EXPECT_EQ(view, row.view) << "row of line " << row.line << ": " << view.region.x << ' '
                                  << view.region.y << ' ' << view.region.width << ' ' << view.region.height
                                  << " / " << view.binning << " = " << view.width << ' ' << view.height;
    }
}

TEST(ImageView, EachOfItsPixelsIsTheMeanOfASquare)
{
    const Frame frame = greyFrame(23, 17, [](int x, int y) { return (x * 37 + y * 91) % 256; });
    for (const int binning : {1, 2, 3, 5, 17}) {
        const auto view = fitView({2, 1, 20, 16}, 20 / binning, std::max(16 / binning, 1), 23, 17);
        std::vector<std::uint8_t> result(sizeInBytes(view, frame.layout));
        copyView(frame, view, result.data());
        for (int row = 0; row < view.height; ++row)
            for (int column = 0; column < view.width; ++column)
                EXPECT_NEAR(result[static_cast<std::size_t>(row * view.width + column)],
                            meanOf(frame, view, column, row), 0.5)
                    << "binning " << view.binning << " at " << column << ", " << row;
    }
}

TEST(Mailbox, KeepsTheNewestImageInItsOwnDepth)
{
    int arrivals = 0;
    ImageMailbox mailbox([&] { ++arrivals; });
    EXPECT_EQ(mailbox.newest(), nullptr);

    // 12 bits packed: 0x123, 0xabc.
    const std::vector<std::uint8_t> packed{0x23, 0xc1, 0xab};
    Image image = imageOf(packed, 2, 1);
    image.height = 1;
    image.format = PixelFormat::Mono12Packed;
    image.bytesPerLine = 3;
    mailbox.showImage(image);
    EXPECT_EQ(mailbox.newest()->layout, (PixelLayout{12, 2, 1}));
    EXPECT_EQ(pixelAt(*mailbox.newest(), 0, 0), std::vector<unsigned>{0x123});
    EXPECT_EQ(pixelAt(*mailbox.newest(), 1, 0), std::vector<unsigned>{0xabc});

    const std::vector<std::uint8_t> padded{1, 2, 99, 3, 4, 99};
    image = imageOf(padded, 3, 2);
    image.width = 2;
    mailbox.showImage(image);
    const auto held = mailbox.newest();
    EXPECT_EQ(pixelAt(*held, 1, 1), std::vector<unsigned>{4});

    const std::vector<std::uint8_t> colours{1, 2, 3, 255};
    image = imageOf(colours, 1, 3);
    image.height = 1;
    image.format = PixelFormat::Bgra8;
    image.bytesPerLine = 4;
    for (int i = 0; i < 10; ++i) // more than there are places
        mailbox.showImage(image);
    EXPECT_EQ(pixelAt(*mailbox.newest(), 0, 0), (std::vector<unsigned>{3, 2, 1}));
    EXPECT_EQ(pixelAt(*held, 1, 1), std::vector<unsigned>{4}) << "a frame that is read was overwritten";
    EXPECT_EQ(arrivals, 12);
}

TEST(Mailbox, DropsAnImageRatherThanWaitForReaders)
{
    ImageMailbox mailbox([] {});
    std::vector<std::shared_ptr<const Frame>> readers;
    const std::vector<std::uint8_t> pixel{1};
    for (int number = 1; number <= 100; ++number) {
        mailbox.showImage(imageOf(pixel, 1, number));
        readers.push_back(mailbox.newest());
    }
    const auto last = readers.back()->number;
    EXPECT_LT(last, 100);
    readers.clear();
    mailbox.showImage(imageOf(pixel, 1, 101));
    EXPECT_EQ(mailbox.newest()->number, 101);
}

TEST(Histogram, CountsTheWholeImage)
{
    Frame frame = greyFrame(100, 10, [](int x, int) { return x < 50 ? 10 : 200; });
    frame.bytes[0] = 0;
    frame.bytes[999] = 255;
    const Histogram histogram = measure(frame);
    EXPECT_EQ(std::accumulate(histogram.bins.begin(), histogram.bins.end(), 0U), 1000U);
    EXPECT_EQ(histogram.bins[10], 499U);
    EXPECT_EQ(histogram.minimum, 0U);
    EXPECT_EQ(histogram.maximum, 255U);
    EXPECT_EQ(histogram.dark, 10U); // a single pixel is less than 0.5 %
    EXPECT_EQ(histogram.bright, 200U);
    EXPECT_NEAR(histogram.mean, 105.045, 1e-9);

    Frame deep;
    deep.layout = {12, 2, 1};
    deep.width = 2;
    deep.height = 1;
    deep.words = {16, 0xffff}; // the second has bits that it should not have
    EXPECT_EQ(measure(deep).bins[1], 1U);
    EXPECT_EQ(measure(deep).bins[255], 1U);
    EXPECT_EQ(measure(deep).highest, 4095U);
}

TEST(Streams, OneImageIsUnderWayAndTheNextIsTheNewest)
{
    ImageFeeds channels;
    const auto channel = channels.add();
    ImageStreams streams(channels);
    const std::vector<std::uint8_t> pixels(100 * 100, 7);
    const auto numberOf = [](const ImageStreams::Outgoing& outgoing) {
        double number = 0;
        if (outgoing.image)
            std::memcpy(&number, outgoing.image->header().data() + 16, sizeof number);
        return static_cast<int>(number);
    };
    const auto arrive = [&](int number) { channel->mailbox().showImage(imageOf(pixels, 100, number)); };

    arrive(1);
    EXPECT_EQ(numberOf(streams.next(channel->id())), 0) << "nobody asked";
    streams.show(showAll(channel->id()));
    const auto first = streams.next(channel->id());
    EXPECT_EQ(numberOf(first), 1);
    EXPECT_EQ(first.image->pixels().size(), 10U * 10);
    EXPECT_TRUE(first.histogram);
    arrive(2);
    arrive(3);
    EXPECT_EQ(numberOf(streams.next(channel->id())), 0) << "neither written nor acknowledged";
    streams.acknowledge(channel->id()); // a client may say so before it can know
    EXPECT_EQ(numberOf(streams.next(channel->id())), 0) << "not written";
    streams.written(channel->id());
    EXPECT_EQ(numberOf(streams.next(channel->id())), 3);
    streams.written(channel->id());
    streams.acknowledge(channel->id());
    EXPECT_EQ(numberOf(streams.next(channel->id())), 0) << "nothing new";

    auto pointed = showAll(channel->id());
    pointed.pixel = {5, 5};
    streams.show(pointed);
    const auto values = streams.next(channel->id());
    EXPECT_EQ(numberOf(values), 0) << "it looks as before";
    EXPECT_EQ(values.values, R"({"at":[5,5],"channel":1,"image":3,"pixel":[7],"type":"values"})");
    pointed.region.width = 50;
    streams.show(pointed);
    EXPECT_EQ(numberOf(streams.next(channel->id())), 3) << "it looks different";

    streams.hide(channel->id());
    streams.written(channel->id());
    arrive(4);
    EXPECT_EQ(numberOf(streams.next(channel->id())), 0);
    channels.remove(channel->id());
    streams.show(showAll(channel->id()));
    EXPECT_EQ(numberOf(streams.next(channel->id())), 0) << "there is no such channel any more";
}

TEST(Streams, WhatIsWrittenStaysAsItIsUntilItIsWritten)
{
    ImageFeeds channels;
    const auto channel = channels.add();
    ImageStreams streams(channels);
    std::vector<std::uint8_t> pixels(100 * 100);
    const auto arrive = [&](int number) {
        for (std::size_t i = 0; i < pixels.size(); ++i)
            pixels[i] = static_cast<std::uint8_t>(i / 100 + i % 100 + static_cast<std::size_t>(number));
        channel->mailbox().showImage(imageOf(pixels, 100, number));
    };
    int number = 0;
    for (const Region& region : {Region{0, 20, 100, 30}, Region{40, 20, 60, 30}}) { // whole lines, and parts
        auto view = showAll(channel->id());
        view.region = region;
        view.screenWidth = view.screenHeight = 100;
        streams.show(view);
        const int shown = ++number;
        arrive(shown);
        const auto* const image = streams.next(channel->id()).image;
        ASSERT_TRUE(image);
        for (int i = 0; i < 50; ++i)
            arrive(++number);
        ASSERT_EQ(image->pixels().size(), static_cast<std::size_t>(region.width * region.height));
        EXPECT_EQ(image->pixels().front(), region.x + region.y + shown);
        EXPECT_EQ(image->pixels().back(), 99 + 49 + shown);
        streams.written(channel->id());
        streams.acknowledge(channel->id());
    }
}

TEST(ImageFeeds, TellThatAndWhereImagesHaveArrived)
{
    ImageFeeds channels;
    const auto first = channels.add();
    const auto second = channels.add();
    int calls = 0;
    channels.setListener([&] { ++calls; });
    const std::vector<std::uint8_t> pixel{1};
    second->mailbox().showImage(imageOf(pixel, 1, 1));
    second->mailbox().showImage(imageOf(pixel, 1, 2));
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(channels.takeNews(), std::vector<std::uint32_t>{second->id()});
    EXPECT_EQ(channels.takeNews(), std::vector<std::uint32_t>());
    channels.setListener({});
    first->mailbox().showImage(imageOf(pixel, 1, 1));
    EXPECT_EQ(calls, 2);
}
