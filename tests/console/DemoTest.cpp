// SPDX-License-Identifier: MIT
#include "Picture.h"
#include "Workspace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

using namespace ovra::tests;
using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/// A picture of the demo: its size is that of the channel it comes from. A camera's picture has nearly all
/// shades, a generator's has those of its pattern.
struct Expected
{
    const char* name;
    int width, height;
    std::size_t greyValues; ///< at least
};

constexpr Expected PICTURES[] = {
    {"landscape.png", 1024, 768, 200},      {"ramp.png", 512, 384, 103},
    {"bottles.png", 960, 720, 200},         {"chart-of-another-size.png", 1023, 768, 200},
    {"chart.png", 1024, 768, 200},          {"landscape-again.png", 1024, 768, 200},
    {"circuit-board.png", 1280, 1024, 200}, {"checkerboard.png", 640, 480, 2},
};

struct Demo : testing::Test
{
    Picture picture(const char* name) const { return readPng(workspace.read(std::string("out/") + name)); }

    const Workspace workspace;
    const Outcome outcome =
        workspace.console("", {"--script", OVRA_DEMO_SCRIPT, "--output-dir", workspace.path("out").string()});
};

/// Mean difference between a pixel and the one below it.
double roughness(const Picture& picture)
{
    const auto width = static_cast<std::size_t>(picture.width);
    double sum = 0;
    for (std::size_t i = width; i < picture.samples.size(); ++i)
        sum += std::abs(picture.samples[i] - picture.samples[i - width]);
    return sum / static_cast<double>(picture.samples.size() - width);
}

// One test, because each would play the whole demo.
TEST_F(Demo, RunsWithoutErrorAndSavesAPictureOfEveryChannelThatShowsWhetherItsSizeFits)
{
    EXPECT_EQ(outcome.exitCode, 0) << outcome.text();
    EXPECT_THAT(outcome.linesWith("error:"), IsEmpty()) << outcome.text();
    EXPECT_EQ(outcome.lines.front(), "Starting...");
    EXPECT_EQ(outcome.lines.back(), "Application closed.");
    EXPECT_THAT(outcome.lines, Contains("Initialization done."));

    // Storing, unloading and loading restores the values.
    const auto reloaded = std::find(outcome.lines.begin(), outcome.lines.end(), "> load-mcf 0 ramp.mcf");
    EXPECT_THAT(std::vector(reloaded, outcome.lines.end()),
                AllOf(Contains("    DMA 0: 512 x 384, buffers: 16, timeout: 10 s"),
                      Contains(HasSubstr("FG_GEN_PATTERN 0, GAIN 2.5, "))))
        << outcome.text();

    EXPECT_TRUE(outcome.linesWith("DMA memory: ").back().starts_with("DMA memory: 0.0 of "))
        << outcome.text();

    for (const auto& expected : PICTURES) {
        SCOPED_TRACE(expected.name);
        const auto saved = picture(expected.name);
        EXPECT_EQ(saved.components, 1);
        EXPECT_EQ(saved.width, expected.width);
        EXPECT_EQ(saved.height, expected.height);
        EXPECT_GE(saved.values(), expected.greyValues);
    }

    // Lines that are a pixel too long shift each row against the one above it: every upright edge slants.
    EXPECT_GT(roughness(picture("chart-of-another-size.png")), 1.2 * roughness(picture("chart.png")));
}

} // namespace
