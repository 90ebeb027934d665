// SPDX-License-Identifier: MIT
// The console's output for the installed scenarios, line by line.

#include "Workspace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using namespace ovra::tests;
using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::EndsWith;
using testing::IsSupersetOf;
using testing::Not;

namespace {

struct Rehearsal
{
    const char* name;
    std::string commands;
    std::vector<std::string> transcript; ///< from the scenario on

    friend void PrintTo(const Rehearsal& rehearsal, std::ostream* stream) { *stream << rehearsal.name; }
};

const std::vector<Rehearsal> REHEARSALS = {
    {"CameraUnplugged",
     "scenario camera-unplugged\nstart 0 dma 0\nscenario wait\nstart 0 dma 0 10\nwait 10 images\n",
     {"> scenario camera-unplugged", "> start 0 dma 0", "Acquiring: board 0 DMA 0, camera of board 0 port 0.",
      "> scenario wait", "at image 50 of board 0 DMA 0: unplug camera 0 0", "after 2 s: plug camera 0 0",
      "the scenario is over", "> start 0 dma 0 10", "Acquiring: board 0 DMA 0, camera of board 0 port 0.",
      "> wait 10 images", "board 0 DMA 0: 10 images."}},
    {"BoardLost",
     "scenario board-lost\nstart 0 dma 0\nscenario wait\nboards\nload 0 SingleAreaGray.hap\nstart 0 dma 0 "
     "10\n"
     "wait 10 images\n",
     {"> scenario board-lost", "> start 0 dma 0", "Acquiring: board 0 DMA 0, camera of board 0 port 0.",
      "> scenario wait", "warning: line 4: board 0 DMA 0: the board is not there any more",
      "at image 50 of board 0 DMA 0: unplug board 0", "after 2 s: plug board 0", "the scenario is over",
      "> boards", "board 0 - ovra-quad-cl, serial 1a2b3c, SingleAreaGray.hap",
      "board 1 - ovra-dual-cxp, serial c0ffee01, no applet", "> load 0 SingleAreaGray.hap",
      "> start 0 dma 0 10", "Acquiring: board 0 DMA 0, camera of board 0 port 0.", "> wait 10 images",
      "board 0 DMA 0: 10 images."}},
    {"LooseCable",
     "scenario loose-cable\nstart 0 dma 0 200\nscenario wait\nwait 200 images 0 0\nfaults\nunplug camera 0 "
     "7\n",
     {"> scenario loose-cable", "> start 0 dma 0 200", "Acquiring: board 0 DMA 0, camera of board 0 port 0.",
      "> scenario wait", "at image 50 of board 0 DMA 0: loosen 0 0 5 lost",
      "at image 100 of board 0 DMA 0: loosen 0 0 5 torn", "at image 150 of board 0 DMA 0: loosen 0 0 0",
      "the scenario is over", "> wait 200 images 0 0", "board 0 DMA 0: 200 images.", "> faults",
      "> unplug camera 0 7", "error: line 7: No camera is plugged into port 7"}},
};

/// False for lines that the test leaves out: those of a load, which the test of the demonstration covers, and
/// the end of an acquisition, whose place among the other lines varies.
bool isRehearsed(const std::string& line)
{
    if (line.ends_with(" images arrived"))
        return false;
    for (const char* const start : {"> ", "error", "warning", "Acquiring", "at ", "after ", "the ", "board "})
        if (line.starts_with(start))
            return true;
    return false;
}

class Scenario : public testing::TestWithParam<Rehearsal>
{};

} // namespace

TEST_P(Scenario, IsSeenLikeThisEachTime)
{
    const Workspace workspace;
    const auto outcome = workspace.console("load 0 SingleAreaGray.hap\n" + GetParam().commands + "quit\n");
    auto lines = outcome.lines;
    lines.erase(lines.begin(), std::ranges::find(lines, GetParam().transcript.front()));
    std::erase_if(lines, [](const std::string& line) { return !isRehearsed(line); });
    lines.erase(std::ranges::find(lines, "> quit"), lines.end());
    EXPECT_THAT(lines, ElementsAreArray(GetParam().transcript)) << outcome.text();
}

TEST(ScenarioOption, PlaysAFileFromTheStartOnOrRefusesItBeforeAnyCommand)
{
    const Workspace workspace;
    const auto file = workspace.write("a b.scenario", "at 0 s: unplug camera 0 0; after 0 s: disk full\n");
    const auto played = workspace.console("scenario wait\nfaults\n", {"--scenario", file.string()});
    EXPECT_THAT(played.lines, IsSupersetOf({"the scenario is over", "unplug camera 0 0", "disk full"}))
        << played.text();
    EXPECT_EQ(played.exitCode, 0);

    workspace.write("a b.scenario", "at 0 s: forget\nat noon: forget\n");
    const auto refused = workspace.console("echo commands run\n", {"--scenario", file.string()});
    EXPECT_THAT(refused.linesWith("error: "),
                ElementsAre(EndsWith("a b.scenario: line 2: Expected a time, a day at most, found 'noon'")))
        << refused.text();
    EXPECT_THAT(refused.lines, Not(Contains("commands run")));
    EXPECT_EQ(refused.exitCode, 1);
}

INSTANTIATE_TEST_SUITE_P(Shipped, Scenario, testing::ValuesIn(REHEARSALS),
                         [](const auto& info) { return std::string(info.param.name); });
