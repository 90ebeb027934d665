// SPDX-License-Identifier: MIT
// The script with every format, trigger and rehearsal: what a user is told, and what the pictures show.

#include "Picture.h"
#include "Workspace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using namespace ovra::tests;
using testing::ElementsAreArray;
using testing::HasSubstr;

namespace {

/// What is told of everything but images that arrive: each line that says so or goes wrong, in this order. An
/// answer to "statistics" ends with the state of the first channel.
const std::vector<std::string> TOLD = {
    // triggers
    "waiting for trigger",
    "waiting for trigger",
    "waiting for trigger",
    // faults and delays
    "fault Fg_AcquireEx board 1 nth 1 code -1 once",
    "fault Fg_AcquireEx board 0 nth 1 code -18 once",
    "error: board 0 DMA 0: acquisition could not be started: The file could not be read or written (-18)",
    "delay Fg_AcquireEx 200 board 0",
    "Fg_AcquireEx 16",
    "Fg_AcquireEx 0",
    // cables and boards
    "no signal",
    "no signal",
    "unplug camera 0 0",
    "loosen 0 0 1 torn seed 5",
    "warning: board 0 DMA 0: the board is not there any more",
    "error: board 0 DMA 0: FG_WIDTH could not be read: The board is not there any more (-22)",
    // shortages
    "error: 16 image buffers of 1024 x 768 could not be allocated: There is no image memory for a ring of "
    "37748736 bytes",
    "error: Board 0 - Storing MCF Configuration File: ERROR: The file could not be read or written (-18)",
    "busy 2",
    // an encoder that stands still
    "waiting for trigger",
    // a recording that ends
    "warning: board 2 DMA 0: no image within 1 s",
    "error: board 2 DMA 0: 4 of 5 images arrived, and it does not acquire",
    // scenarios
    "at image 50 of board 0 DMA 0: unplug camera 0 0",
    "after 2 s: plug camera 0 0",
    "the scenario is over",
    "stopped",
};

/// Without the place: a warning names the line that was running.
std::string withoutPlace(const std::string& line)
{
    const auto place = line.find(": line ");
    return place == std::string::npos ? line : line.substr(0, place) + line.substr(line.find(':', place + 1));
}

std::vector<std::string> toldBy(const Outcome& outcome)
{
    std::vector<std::string> told;
    for (const auto& line : outcome.lines) {
        for (const char* const state : {"waiting for trigger", "no signal"})
            if (line.ends_with(std::string(", ") + state))
                told.emplace_back(state);
        for (const char* const start : {"error: ", "warning: ", "fault ", "delay ", "Fg_", "unplug ",
                                        "loosen ", "busy ", "at ", "after ", "the scenario", "stopped"})
            if (line.starts_with(start))
                told.push_back(withoutPlace(line));
    }
    return told;
}

class RehearsalScript : public testing::Test
{
protected:
    Picture picture(const std::string& name) const { return readPng(workspace.read("out/" + name + ".png")); }

    const Workspace workspace;
    const Outcome outcome =
        workspace.console("", {"--script", OVRA_REHEARSAL_SCRIPT, "--machine", OVRA_REHEARSAL_MACHINE,
                               "--output-dir", workspace.path("out").string()});
};

// One test, because each would play the whole script.
TEST_F(RehearsalScript, TellsWhatGoesWrongAndSavesTheSameSceneInEveryFormat)
{
    EXPECT_THAT(toldBy(outcome), ElementsAreArray(TOLD)) << outcome.text();
    const auto format = std::ranges::find(outcome.lines, "> get 0 FG_PIXELFORMAT");
    ASSERT_NE(format, outcome.lines.end()) << outcome.text();
    EXPECT_THAT(format[1], HasSubstr("FG_PIXELFORMAT = 112 ")); // as the configuration has it
    EXPECT_EQ(outcome.exitCode, 1);

    const auto grey = picture("Mono8"), colour = picture("Rgb8");
    EXPECT_GT(grey.values(), 200U);
    EXPECT_GT(differenceOf(picture("torn"), grey), 8);
    EXPECT_EQ(differenceOf(picture("software-trigger"), grey), 0);
    for (const char* const name : {"Mono10", "Mono12", "Mono14", "Mono16", "Mono10Packed", "Mono12Packed"})
        EXPECT_LE(differenceOf(picture(name), grey), 1) << name;
    for (const char* const name : {"Bgr8", "Bgra8"})
        EXPECT_EQ(differenceOf(picture(name), colour), 0) << name;
    constexpr double GUESSED = 5; // what a Bayer image lacks
    for (const char* const name :
         {"BayerRg8", "BayerGr8", "BayerGb8", "BayerBg8", "BayerRg12", "BayerGr12", "BayerGb12", "BayerBg12"})
        EXPECT_LE(differenceOf(picture(name), colour), GUESSED) << name;

    struct Kind
    {
        const char* name;
        int width, height, components;
        double smallestMean, largestMean;
    };
    const double mean = grey.mean();
    for (const auto& kind : {Kind{"processed", 640, 480, 1, mean + 30, 254},
                             {"exposed", 640, 480, 1, mean + 30, 254},
                             {"camera-pattern", 640, 480, 1, 50, 200},
                             {"generator", 640, 480, 1, 126, 130},
                             {"region", 320, 240, 3, 100, 170},
                             {"web", 1024, 512, 1, 60, 200},
                             {"web-by-encoder", 1024, 512, 3, 60, 200},
                             {"replay", 320, 240, 1, 20, 120}}) {
        SCOPED_TRACE(kind.name);
        const auto saved = picture(kind.name);
        EXPECT_EQ(saved.width, kind.width);
        EXPECT_EQ(saved.height, kind.height);
        EXPECT_EQ(saved.components, kind.components);
        EXPECT_GT(saved.mean(), kind.smallestMean);
        EXPECT_LT(saved.mean(), kind.largestMean);
    }
}

} // namespace
