// SPDX-License-Identifier: MIT
#include "Workspace.h"

#include "front-ends/shared/Paths.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using namespace ovra::tests;
using ovra::frontend::pathOf;
using ovra::frontend::textOf;
using testing::AllOf;
using testing::AnyOf;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

namespace {

/// A line of a session and the error line that it causes; null: no error.
struct BadLine
{
    const char* line;
    const char* answer;
};

// The order matters: before the first load the board has no applet.
constexpr BadLine BAD_LINES[] = {
    {"bords", "unknown command 'bords'; help lists the commands"},
    {"help bords", "unknown command 'bords'; help lists the commands"},
    {"echo \"open", "a quote is not closed"},
    {"load 0", "usage: load BOARD APPLET [MCF]"},
    {"boards 1", "usage: boards"},
    {"load 5 none.hap", "unknown board '5'; boards are 0, 1"},
    {"load nonsense none.hap", "unknown board 'nonsense'; boards are 0, 1"},
    {"load 0 none.hap", "unknown applet 'none.hap'"},
    {"unload 0", "board 0 holds no applet"},
    {"start 1 dma 0", "board 1 holds no applet"},
    {"wait 3 images", "no DMA channel acquires"},
    {"wait soon", "SECONDS must be a number from 0 to 86400, not 'soon'"},
    {"sync-mode 4", "MODE must be a whole number from 0 to 3, not '4'"},
    {"answer 3", "BUTTON must be a whole number from 0 to 2, not '3'"},
    {"store-mcf 1 none.mcf", "board 1 holds no applet"},
    {"load-mcf 0 none.mcf", "there is no file none.mcf"},
    {"load 0 SingleAreaGray.hap none.mcf", "there is no file none.mcf"},
    {"watch", "there are no DMA channels"},
    {"report r.txt all", "a report is followed by 'with-paths' or nothing, not by 'all'"},
    {"load 0 SingleAreaGray.hap", nullptr},
    {"set 0 GAIN 17", "board 0 DMA 0: Parameter GAIN: expected a number from 0 to 16, found \"17\""},
    {"set 0 0 OFFSET 1.5",
     "board 0 DMA 0: Parameter OFFSET: expected an integer from -255 to 255 (digits), found \"1.5\""},
    {"set 0 GIAN 1", "board 0 DMA 0 has no parameter 'GIAN'"},
    {"set 0 TEMPERATURE 20", "board 0 DMA 0: TEMPERATURE can only be read"},
    {"get 0 1 GAIN", "board 0 has no DMA channel 1; it has 0"},
    {"record 0 0 1 run", "board 0 DMA 0 does not acquire"},
    {"save-image 0 0 x.jpg", "images are saved as PNG: the name must end with .png, not 'x.jpg'"},
    {"show 0 0", "board 0 DMA 0 has got no image, and it does not acquire"},
    {"buffers 0 0 0", "COUNT must be a whole number from 1 to 2147483647, not '0'"},
    {"camera 0 0 Zoom 2", "board 0 port 0: Camera on board 0, port 0 has no parameter Zoom"},
    {"camera 0 0 OffsetX", "camera: a NAME needs a VALUE"},
    {"trigger 0 0",
     "Board 0, port 0: the trigger was not taken: DMA channel 0 does not wait for software triggers"},
    {"generator 0 0 maybe", "a generator is switched 'on' or 'off', not 'maybe'"},
};

TEST(ConsoleErrors, EveryBadLineGetsOneLineWithItsNumberAndTheSessionGoesOn)
{
    std::string session;
    std::vector<std::string> expected;
    int number = 0;
    for (const auto& [line, answer] : BAD_LINES) {
        session += std::string(line) + "\n";
        ++number;
        if (answer)
            expected.push_back("error: line " + std::to_string(number) + ": " + answer);
    }

    const auto outcome = Workspace().console(session + "get 0 GAIN\n");
    EXPECT_EQ(outcome.linesWith("error:"), expected) << outcome.text();
    EXPECT_THAT(outcome.lines, Contains("board 0 DMA 0: GAIN = 1 (0 to 16)")) << outcome.text();
    EXPECT_EQ(outcome.exitCode, 1);
}

TEST(ConsoleErrors, AScriptThatCannotBeReadIsNamed)
{
    const Workspace workspace;
    for (const auto& script : {std::string("no-such-script.txt"), textOf(workspace.path())}) {
        const auto outcome = workspace.console("", {"--script", script});
        EXPECT_THAT(outcome.lines, ElementsAre("error: cannot read the script " + script));
        EXPECT_EQ(outcome.exitCode, 1);
    }
}

TEST(ConsoleErrors, AMachineDescriptionThatCannotBeUsedGetsOneLineThatNamesFileAndPlaceAndNoCommandRuns)
{
    const Workspace workspace;
    workspace.write("syntax.json", "{\n  \"name\": \"M\",\n  \"boards\": [,\n}\n");
    workspace.write("type.json", "{\n  \"name\": \"M\",\n  \"boards\": 17\n}\n");
    workspace.write("empty.json", "");
    struct Row
    {
        const char* file;
        const char* place;
    };
    for (const auto& [file, place] : {Row{"syntax.json", "line 3"},
                                      {"type.json", "/boards"},
                                      {"empty.json", "line 1"},
                                      {"nowhere.json", ""}}) {
        const auto outcome =
            workspace.console("echo commands run\n", {"--machine", workspace.path(file).string()});
        EXPECT_THAT(outcome.linesWith("error:"),
                    ElementsAre(AllOf(HasSubstr(file), HasSubstr(place), HasSubstr("expected"))))
            << outcome.text();
        EXPECT_THAT(outcome.lines, Not(Contains("commands run"))) << outcome.text();
        EXPECT_EQ(outcome.lines.back(), "Application closed.");
        EXPECT_EQ(outcome.exitCode, 1);
    }
}

TEST(ConsoleSession, ShowsEachCommandBeforeItIsCarriedOutUntilItQuits)
{
    const Workspace workspace;
    const auto script =
        workspace.write("script.txt", "\xEF\xBB\xBF# heading\r\necho one # comment\r\n\r\n"
                                      "echo  \"two  blanks\"\r\nquit\r\necho after the end\r\n");
    const auto outcome = workspace.console("", {"--script", script.string()});
    EXPECT_THAT(outcome.lines,
                testing::IsSupersetOf({"# heading", "> echo one # comment", "one", "two  blanks"}))
        << outcome.text();
    EXPECT_THAT(outcome.lines, Not(Contains("after the end"))) << outcome.text();
    EXPECT_EQ(outcome.lines.back(), "Application closed.");
    EXPECT_EQ(outcome.exitCode, 0);
}

TEST(ConsoleSession, HelpExplainsEveryCommandAndOne)
{
    const auto outcome = Workspace().console("help\necho ---\nhelp load\n");
    EXPECT_THAT(outcome.lines, // a command of each kind
                testing::IsSupersetOf({"boards", "load BOARD APPLET [MCF]", "structure [BOARD]",
                                       "start BOARD dma|port INDEX [COUNT]", "set BOARD [DMA] NAME VALUE",
                                       "store-mcf BOARD FILE.mcf", "generator BOARD DMA on|off"}))
        << outcome.text();
    const auto last = std::find(outcome.lines.begin(), outcome.lines.end(), "---");
    EXPECT_EQ(std::count(last, outcome.lines.end(), "load BOARD APPLET [MCF]"), 1);
}

TEST(ConsoleSession, ShowsMessagesOfTheLogOnlyWhenAsked)
{
    const auto outcome =
        Workspace().console("log unseen\nlog on\nlog seen by all\nlog off\nlog unseen again\n");
    const auto messages = outcome.linesWith("log information: ");
    ASSERT_THAT(messages, SizeIs(1)) << outcome.text();
    EXPECT_THAT(messages[0], StartsWith("log information: seen by all (thread "));
}

TEST(ConsoleSession, AnswersTheQuestionAboutSizesAndRemembersTheAnswerFromThenOn)
{
    const std::string session =
        "load 1 DualAreaCxp.hap\nsync-mode 2\nanswer 2 remember\nstart 1 dma 0\nstop 1 dma 0\n";
    const Workspace workspace;
    const std::vector<std::string> options{"--config", workspace.path("entries").string()};

    const auto first = workspace.console(session, options);
    EXPECT_THAT(first.linesWith("Answer: "), ElementsAre("Answer: Ignore, from now on.")) << first.text();
    const auto second = workspace.console(session, options);
    EXPECT_THAT(second.linesWith("Dimension Mismatch"), IsEmpty()) << second.text();
    const auto third = workspace.console("answer forget\n" + session, options);
    EXPECT_THAT(third.linesWith("Dimension Mismatch"), SizeIs(1)) << third.text();
    EXPECT_EQ(first.exitCode + second.exitCode + third.exitCode, 0);
}

TEST(ConsoleSession, ABoardIsNamedByItsSerialToo)
{
    const auto outcome =
        Workspace().console("load c0ffee01 SingleAreaCxp.hap\nstructure 0xC0FFEE01\nresources\nunload 1\n");
    EXPECT_THAT(outcome.lines, Contains("board 1 - ovra-dual-cxp: SingleAreaCxp.hap")) << outcome.text();
    EXPECT_THAT(outcome.lines, Contains("board-c0ffee01-process-0-dma-0 (1: DMA channel)")) << outcome.text();
    EXPECT_THAT(outcome.linesWith("board-c0ffee01"), SizeIs(10)) << outcome.text();
    EXPECT_EQ(outcome.exitCode, 0) << outcome.text();
}

/// \p count lines from \p first on.
std::vector<std::string> linesFrom(const Outcome& outcome, const std::string& first, int count)
{
    const auto begin = std::find(outcome.lines.begin(), outcome.lines.end(), first);
    return {begin, begin + std::min<std::ptrdiff_t>(count, outcome.lines.end() - begin)};
}

TEST(ConsoleSession, ShowsTheStructureWithCamerasAndParametersAsATree)
{
    const auto outcome = Workspace().console("load 0 PreprocessingOnly.hap\nstructure 0\n"
                                             "load 0 SingleAreaGray.hap\nset 0 OFFSET -7\n"
                                             "set 0 FG_TIMEOUT 3\ngenerator 0 0 on\nstructure 0\n");
    EXPECT_THAT(linesFrom(outcome, "board 0 - ovra-quad-cl: PreprocessingOnly.hap", 5),
                ElementsAre("board 0 - ovra-quad-cl: PreprocessingOnly.hap", "  process 0",
                            "    port 0 (CL-MEDIUM): connector 0",
                            "      camera Meadow 1024 M-1001: 1024 x 768",
                            "  parameters: THRESHOLD 128 digits, DEFECTS 0"))
        << outcome.text();
    EXPECT_THAT(
        linesFrom(outcome, "board 0 - ovra-quad-cl: SingleAreaGray.hap", 9),
        ElementsAre(
            "board 0 - ovra-quad-cl: SingleAreaGray.hap", "  process 0",
            "    DMA 0: 1024 x 768, buffers: 16, timeout: 3 s",
            "      parameters: FG_WIDTH 1024 pixel, FG_HEIGHT 768 lines, FG_PIXELFORMAT 8, FG_TIMEOUT 3 s,",
            "          FG_GEN_ENABLE 1, FG_GEN_FRAMERATE 50 Hz, FG_GEN_PATTERN 0, GAIN 1, OFFSET -7 digits,",
            "          GAMMA 1, FLIP_X 0, FLIP_Y 0, TRIGGER_MODE 0, TRIGGER_RATE 10 Hz,",
            "          DESCRIPTION \"area scan, grey\", TEMPERATURE 41.5 C",
            "    port 0 (CL-FULL): connector 0, generator on", "      camera Meadow 1024 M-1001: 1024 x 768"))
        << outcome.text();
}

TEST(ConsoleSession, AParameterIsSetOnEveryChannelOrOnTheOneThatIsNamed)
{
    const auto outcome =
        Workspace().console("load 1 DualAreaCxp.hap\nset 1 FG_HEIGHT 32\nset 1 1 FG_HEIGHT 64\n"
                            "memory\necho ---\nget 1 FG_HEIGHT\n");
    EXPECT_THAT(linesFrom(outcome, "---", 4),
                ElementsAre("---", "> get 1 FG_HEIGHT", "board 1 DMA 0: FG_HEIGHT = 32 lines (1 to 32768)",
                            "board 1 DMA 1: FG_HEIGHT = 64 lines (1 to 32768)"))
        << outcome.text();
    EXPECT_THAT(outcome.lines, Contains("DMA memory: 1.5 of 1024.0 MiB used.")) << outcome.text();
}

TEST(ConsoleSession, AChannelGetsOtherBuffersAndItsGeneratorsImagesAndTellsWhatItLost)
{
    const Workspace workspace;
    const auto entries = workspace.write("entries", "no entry at all\ngui.preferences.max_dma_buffersize=16\n"
                                                    "gui.preferences.acq.default.timeout=-1\n");
    // Faster than any memory: most images are lost.
    const auto outcome = workspace.console(
        "load 0 SingleAreaGray.hap\nstart 0 dma 0\ngenerator 0 0 on\nset 0 FG_GEN_FRAMERATE 100000\n"
        "wait 20 images\nbuffers 0 0 4\nwait 40 images\nbuffers 0 0 1000\nstop 0 dma 0\nstatistics\n",
        {"--config", textOf(entries)});
    EXPECT_THAT(
        outcome.lines,
        testing::IsSupersetOf({"Acquiring: board 0 DMA 0, camera of board 0 port 0.",
                               "Acquiring: board 0 DMA 0.", "board 0 DMA 0: 4 buffers.",
                               "board 0 DMA 0: 21 of 1000 buffers, all that the DMA memory is enough for."}))
        << outcome.text();
    EXPECT_THAT(
        outcome.linesWith("warning: "),
        ElementsAre(HasSubstr("entries:1: "), HasSubstr("board 0 DMA 0: a timeout of -1 s was refused; "
                                                        "it stays 10 s: ")))
        << outcome.text();
    const auto statistics = outcome.linesWith("board 0 DMA 0: ").back();
    EXPECT_THAT(statistics, AllOf(HasSubstr(" per second, "), EndsWith(" lost"), Not(EndsWith(" 0 lost"))));
    EXPECT_EQ(outcome.exitCode, 0) << outcome.text();
}

TEST(ConsoleSession, AGeneratorThatIsSwitchedOffLeavesTheChannelToItsCamera)
{
    const auto outcome =
        Workspace().console("load 0 SingleAreaGray.hap\ngenerator 0 0 on\nset 0 FG_GEN_FRAMERATE 5\n"
                            "start 0 dma 0\ngenerator 0 0 off\nwait 10 images\n");
    // Ten, or more that come before a busy machine looks.
    EXPECT_THAT(outcome.linesWith("board 0 DMA 0: ").back(), EndsWith(" images.")) << outcome.text();
    EXPECT_EQ(outcome.exitCode, 0);
}

TEST(ConsoleSession, WaitsForImagesThatHaveArrivedAlready)
{
    const auto outcome =
        Workspace().console("load 0 SingleAreaGray.hap\nstart 0 dma 0 3\nwait 3 images 0 0\nwait 3 images\n"
                            "stop 0 dma 0\nstart 0 dma 0 1\nwait 1 images\n");
    EXPECT_THAT(outcome.linesWith("board 0 DMA 0: 3 images."), SizeIs(2)) << outcome.text();
    EXPECT_THAT(outcome.linesWith("board 0 DMA 0: 1 image."), SizeIs(1)) << outcome.text();
    EXPECT_EQ(outcome.exitCode, 0);
}

TEST(ConsoleSession, FailsWhereAConfigurationIsNotApplied)
{
    const Workspace workspace;
    const std::string out = textOf(workspace.path());
    const auto stored =
        workspace.console("load 0 SingleAreaGray.hap\nstore-mcf 0 a.mcf\n", {"--output-dir", out});
    ASSERT_EQ(stored.exitCode, 0) << stored.text();
    std::string text = workspace.read("a.mcf");
    text.replace(text.find("GAIN="), 6, "GAIN=9999");
    workspace.write("a.mcf", text);
    const auto outcome =
        workspace.console("load-mcf 0 a.mcf\nload 0 SingleAreaGray.hap a.mcf\n", {"--output-dir", out});
    EXPECT_THAT(outcome.linesWith("error: "),
                ElementsAre("error: line 1: the applet was loaded without the configuration a.mcf",
                            "error: line 2: the applet was loaded without the configuration a.mcf"))
        << outcome.text();
    EXPECT_EQ(outcome.exitCode, 1);
}

TEST(ConsoleSession, RecordsDrawsCountsAndReports)
{
    const Workspace workspace;
    workspace.write("empty.cfg", "");
    const auto outcome = workspace.console(
        "load 0 SingleAreaGray.hap\nset 0 FG_WIDTH 64\nset 0 FG_HEIGHT 32\ngenerator 0 0 on\nstart 0 dma 0\n"
        "record 0 0 3 sub/run\nstop 0 dma 0\nhistogram 0 0\nshow 0 0\nwatch 0\nreport report.txt\n",
        {"--output-dir", textOf(workspace.path()), "--config", textOf(workspace.path("empty.cfg"))});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.text();
    EXPECT_THAT(outcome.lines,
                testing::IsSupersetOf({HasSubstr("Made the folder "),
                                       HasSubstr("board 0 DMA 0: 3 images recorded in sub/run."),
                                       HasSubstr(" MB/s, ring "), HasSubstr(", grey values ")}))
        << outcome.text();
    // 64 x 32 pixels, two of them a character.
    EXPECT_THAT(outcome.lines, Contains(AnyOf(HasSubstr("\u2591\u2591"), HasSubstr("\u2592\u2592"),
                                              HasSubstr("\u2593\u2593"), HasSubstr("\u2588\u2588")))
                                   .Times(16))
        << outcome.text();
    for (const char* name : {"image-000001.png", "image-000003.png", "images.csv"})
        EXPECT_TRUE(std::filesystem::exists(workspace.path("sub/run") / name)) << name;
    const std::string report = workspace.read("report.txt");
    for (const char* part :
         {"== versions\novra-console " OVRA_VERSION, "== boards\nboard 0 - ovra-quad-cl", "GAIN = 1\n",
          "gui.preferences.acq.default.buffers = 16\n", "<installation>/Hardware Applets/", "== log\n"})
        EXPECT_THAT(report, HasSubstr(part));
    EXPECT_THAT(report, Not(HasSubstr(textOf(workspace.path()))));
}

TEST(ConsoleSession, TellsAProgramInObjects)
{
    const auto outcome = Workspace().console("boards\nload 0 SingleAreaGray.hap\nget 0 GAIN\nstructure 0\n"
                                             "calls Fg_Init\nunplug camera 0 0\nfaults\nbords\n",
                                             {"--json"});
    EXPECT_THAT(
        outcome.lines,
        testing::IsSupersetOf(
            {R"({"type":"command","line":"boards"})",
             R"({"type":"board","board":0,"name":"ovra-quad-cl","serial":"1a2b3c","applet":""})",
             R"({"type":"parameter","owner":"board 0 DMA 0","name":"GAIN","value":1.0,"unit":"","minimum":0.0,"maximum":16.0,"step":0.0,"writable":true})",
             R"({"type":"port","board":0,"process":0,"port":0,"portType":"CL-FULL","connector":0,"generator":false,"camera":"Meadow 1024 M-1001","width":1024,"height":768})",
             R"({"type":"calls","entry":"Fg_Init","count":1})",
             R"({"type":"rehearsal","command":"faults","text":"unplug camera 0 0"})",
             R"({"type":"error","place":"line 8","text":"unknown command 'bords'; help lists the commands"})"}))
        << outcome.text();
    EXPECT_THAT(outcome.lines, testing::Each(AllOf(StartsWith("{\"type\":\""), EndsWith("}"))));
    EXPECT_EQ(outcome.exitCode, 1);
}

TEST(ConsoleSession, TakesTextsAndFileNamesOfAnyLanguage)
{
    const Workspace workspace;
    const auto script = workspace.write("\u65e5\u672c.txt",
                                        "\ufeffecho Gr\u00fc\u00df\nload 0 SingleAreaGray.hap\n"
                                        "start 0 dma 0\nsave-image 0 0 Bl\u00fcte.png\n"
                                        "store-mcf 0 Gr\u00f6\u00dfe.mcf\nload-mcf 0 Gr\u00f6\u00dfe.mcf\n");
    const auto out = workspace.path("Bilder-\u65e5\u672c");
    const auto outcome = workspace.console("", {"--script", textOf(script), "--output-dir", textOf(out)});
    EXPECT_THAT(outcome.lines, Contains("Gr\u00fc\u00df")) << outcome.text();
    EXPECT_EQ(outcome.exitCode, 0) << outcome.text();
    for (const char* name : {"Bl\u00fcte.png", "Gr\u00f6\u00dfe.mcf"})
        EXPECT_TRUE(std::filesystem::exists(out / pathOf(name))) << name;
}

TEST(ConsoleSession, WaitingEndsWithAnErrorWhenAChannelStopsBeforeItsImagesHaveCome)
{
    const auto outcome = Workspace().console("load 0 SingleAreaGray.hap\nstart 0 dma 0 3\nwait 3 images 0 0\n"
                                             "wait 4 images 0 0\nsave-image 0 7 none.png\n");
    EXPECT_THAT(outcome.linesWith("DMA memory: ").back(), StartsWith("DMA memory: 0.0 of "))
        << outcome.text();
    EXPECT_THAT(outcome.linesWith("error:"),
                ElementsAre("error: line 4: board 0 DMA 0: 3 of 4 images arrived, and it does not acquire",
                            "error: line 5: board 0 has no DMA channel 7; it has 0"))
        << outcome.text();
    EXPECT_EQ(outcome.exitCode, 1);
}

TEST(ConsoleProgram, ShowsTheLibrarysOwnTwoLinesWhenTheirLevelIsAskedFor)
{
    const Workspace workspace;
    const auto wanted =
        workspace.console("quit\n", {"--log-level", "2"}).linesWith("2 guard.library thread-id=");
    ASSERT_THAT(wanted, SizeIs(2));
    EXPECT_THAT(wanted[0], EndsWith("|LIBRARY INIT: OvraGuiCore (useCount: 1)"));
    EXPECT_THAT(wanted[1], EndsWith("|LIBRARY DEINIT: OvraGuiCore (useCount: 1)"));
    EXPECT_THAT(workspace.console("quit\n").linesWith("2 guard.library"), IsEmpty());
}

TEST(ConsoleProgram, TellsItsVersion)
{
    const auto outcome = Workspace().console("", {"--version"});
    EXPECT_THAT(outcome.lines,
                ElementsAre("ovra-console " OVRA_VERSION, "ovra-lib-gui-core " OVRA_VERSION ", " OVRA_ABI));
    EXPECT_EQ(outcome.exitCode, 0);
}

TEST(MinimalFrontEnd, ListsTheBoards)
{
    const auto outcome = Workspace().run(OVRA_MINIMAL_FRONT_END, {}, "");
    EXPECT_EQ(outcome.exitCode, 0) << outcome.text();
    EXPECT_THAT(outcome.lines, testing::IsSupersetOf({StartsWith("0 - "), StartsWith("1 - ")}));
}

} // namespace
