// SPDX-License-Identifier: MIT
// Reads images of every format from bytes that were computed by hand.

#include "ovra-lib-display/PixelConversion.h"

#include <gmock/gmock.h>

namespace {

using namespace ovra::display;
using Bytes = std::vector<std::uint8_t>;
using Words = std::vector<std::uint16_t>;

Image imageOf(const Bytes& bytes, int width, PixelFormat format)
{
    const auto line = bytesPerLine(format, width);
    return {.pixels = bytes.data(),
            .width = width,
            .height = static_cast<int>(bytes.size() / line),
            .format = format};
}

struct Row
{
    PixelFormat format;
    int width;
    Bytes bytes;
    std::size_t lineBytes;
    Words grey;
    Bytes rgb8;
};

TEST(PixelFormats, AreReadSampleBySample)
{
    const std::vector<Row> rows = {
        {PixelFormat::Mono8,
         2,
         {1, 250, 3, 4},
         2,
         {1, 250, 3, 4},
         {1, 1, 1, 250, 250, 250, 3, 3, 3, 4, 4, 4}},
        {PixelFormat::Mono10, 2, {0x01, 0x02, 0xff, 0x03}, 4, {513, 1023}, {128, 128, 128, 255, 255, 255}},
        {PixelFormat::Mono12, 1, {0x34, 0x02}, 2, {564}, {35, 35, 35}},
        {PixelFormat::Mono14, 1, {0x00, 0x20}, 2, {8192}, {128, 128, 128}},
        {PixelFormat::Mono16, 1, {0x34, 0xfe}, 2, {65076}, {254, 254, 254}},
        // 513, 1023, 0, 1 in the bits 0 to 39; a line of five pixels ends within its seventh byte.
        {PixelFormat::Mono10Packed,
         5,
         {0x01, 0xfe, 0x0f, 0x40, 0x00, 0x02, 0x00, 0xff, 0x03, 0, 0, 0, 0, 0},
         7,
         {513, 1023, 0, 1, 2, 1023, 0, 0, 0, 0},
         {128, 128, 128, 255, 255, 255, 0, 0, 0, 0, 0, 0, 0, 0, 0,
          255, 255, 255, 0,   0,   0,   0, 0, 0, 0, 0, 0, 0, 0, 0}},
        {PixelFormat::Mono12Packed,
         3,
         {0x21, 0x43, 0x65, 0x87, 0xf9},
         5,
         {0x321, 0x654, 0x987},
         {50, 50, 50, 101, 101, 101, 152, 152, 152}},
        {PixelFormat::Rgb8, 2, {255, 0, 0, 10, 20, 30}, 6, {76, 18}, {255, 0, 0, 10, 20, 30}},
        {PixelFormat::Bgr8, 2, {255, 0, 0, 30, 20, 10}, 6, {29, 18}, {0, 0, 255, 10, 20, 30}},
        {PixelFormat::Bgra8, 1, {30, 20, 10, 255}, 4, {18}, {10, 20, 30}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(describe(row.format).name);
        const auto image = imageOf(row.bytes, row.width, row.format);
        EXPECT_EQ(image.bytesPerLine, row.lineBytes);
        EXPECT_EQ(image.bytes(), row.bytes.size());
        EXPECT_EQ(image.bitsPerPixel, describe(row.format).bitsPerPixel);
        EXPECT_EQ(pixelFormatOf(static_cast<int>(row.format)), row.format);
        Words words;
        unpackGrey(image, words);
        EXPECT_EQ(words, row.grey);
        Bytes bytes;
        unpackRgb8(image, bytes);
        EXPECT_EQ(bytes, row.rgb8);
    }
    EXPECT_EQ(pixelFormatOf(9), std::nullopt);
}

// A red, a green and a blue field keep their colours through each mosaic, including the edges.
TEST(PixelFormats, OfABayerMosaicGiveTheColourOfAnEvenField)
{
    constexpr int SIDE = 3;
    const std::pair<PixelFormat, const char*> formats[] = {
        {PixelFormat::BayerRg8, "RGGB"},  {PixelFormat::BayerGr8, "GRBG"},  {PixelFormat::BayerGb8, "GBRG"},
        {PixelFormat::BayerBg8, "BGGR"},  {PixelFormat::BayerRg12, "RGGB"}, {PixelFormat::BayerGr12, "GRBG"},
        {PixelFormat::BayerGb12, "GBRG"}, {PixelFormat::BayerBg12, "BGGR"}};
    for (const auto& [format, order] : formats) {
        const bool deep = describe(format).bitsPerPixel == 16;
        const Words colour = deep ? Words{4000, 2001, 30} : Words{250, 101, 30};
        Bytes bytes;
        for (int y = 0; y < SIDE; ++y) {
            for (int x = 0; x < SIDE; ++x) {
                const auto sample = colour[std::string("RGB").find(order[2 * (y % 2) + x % 2])];
                bytes.push_back(static_cast<std::uint8_t>(sample));
                if (deep)
                    bytes.push_back(static_cast<std::uint8_t>(sample >> 8U));
            }
        }
        Words expected, words;
        for (int i = 0; i < SIDE * SIDE; ++i)
            expected.insert(expected.end(), colour.begin(), colour.end());
        unpackRgb(imageOf(bytes, SIDE, format), words);
        EXPECT_EQ(words, expected) << describe(format).name;
    }
}

} // namespace
