// SPDX-License-Identifier: MIT
#include "front-ends/shared/PngWriter.h"
#include "front-ends/shared/ImageKeeper.h"

#include <gmock/gmock.h>

#include <memory>

#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_PNG
#define STBI_NO_STDIO
#include <stb/stb_image.h>

using namespace ovra;
using display::PixelFormat;

namespace {

struct Encoding
{
    PixelFormat format;
    int width, height;
    std::vector<std::uint8_t> bytes;    ///< in memory
    int components, bits;               ///< of the file
    std::vector<std::uint16_t> samples; ///< as the file has them
};

const Encoding ENCODINGS[] = {
    {PixelFormat::Mono8, 3, 2, {0, 1, 2, 253, 254, 255}, 1, 8, {0, 1, 2, 253, 254, 255}},
    {PixelFormat::Bgr8, 2, 1, {1, 2, 3, 40, 50, 60}, 3, 8, {3, 2, 1, 60, 50, 40}},
    {PixelFormat::Mono16, 2, 2, {0x34, 0x12, 0, 0, 0xff, 0xff, 1, 0}, 1, 16, {0x1234, 0, 0xffff, 1}},
    // The highest bits are the format's, the lower ones repeat them, so that white stays white.
    {PixelFormat::Mono12, 2, 1, {0x23, 0x01, 0xff, 0x0f}, 1, 16, {0x1231, 0xffff}},
    {PixelFormat::Mono10Packed, 4, 1, {0xff, 0x03, 0, 0, 0}, 1, 16, {0xffff, 0, 0, 0}},
};

using Samples = std::unique_ptr<stbi_us, void (*)(void*)>;

TEST(PngEncoding, WritesEachFormatSoThatAnotherReaderFindsItsSamples)
{
    for (const auto& row : ENCODINGS) {
        SCOPED_TRACE(display::describe(row.format).name);
        const std::string file =
            frontend::encodePng({row.bytes.data(), row.width, row.height, 1, row.format});
        const auto* const bytes = reinterpret_cast<const stbi_uc*>(file.data());
        const int size = static_cast<int>(file.size());
        int width = 0, height = 0, components = 0;
        const Samples samples(stbi_load_16_from_memory(bytes, size, &width, &height, &components, 0),
                              stbi_image_free);
        ASSERT_TRUE(samples);
        EXPECT_EQ(stbi_is_16_bit_from_memory(bytes, size) ? 16 : 8, row.bits);
        EXPECT_EQ(width, row.width);
        EXPECT_EQ(height, row.height);
        EXPECT_EQ(components, row.components);
        auto expected = row.samples;
        if (row.bits == 8) // the reader widens them
            for (auto& sample : expected)
                sample = static_cast<std::uint16_t>(sample * 257);
        EXPECT_EQ(std::vector<std::uint16_t>(samples.get(), samples.get() + expected.size()), expected);
    }
}

// The reader above ignores checksums, other decoders refuse a wrong one.
TEST(PngEncoding, ColoursOfTwelveBitsKeepDepthAndChecksum)
{
    const std::vector<std::uint8_t> mosaic(2 * 8 * 4, 0x07);
    const std::string file = frontend::encodePng({mosaic.data(), 8, 4, 1, PixelFormat::BayerRg12});
    EXPECT_EQ(file.substr(12, 14), std::string("IHDR\0\0\0\x08\0\0\0\x04\x10\x02", 14));
    EXPECT_EQ(file.substr(29, 4), std::string("\x6c\x3f\x35\xe4", 4));
}

} // namespace
