#include "Workspace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using namespace ovra::tests;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

namespace {

/// A line of a session that cannot be carried out, and the one line that answers it.
struct BadLine
{
    const char* line;
    const char* answer;
};

// Order matters: a board holds no applet before the first load.
constexpr BadLine badLines[] = {
    {"bords", "unknown command 'bords'; help lists the commands"},
    {"help bords", "unknown command 'bords'; help lists the commands"},
    {"echo \"open", "a quote is not closed"},
    {"load 0", "usage: load BOARD APPLET [MCF]"},
    {"boards 1", "usage: boards"},
    {"load 5 none.hap", "unknown board '5'; boards are 0, 1"},
    {"load nonsense none.hap", "unknown board 'nonsense'; boards are 0, 1"},
    {"load 0 none.hap", "unknown applet 'none.hap'; applets lists what there is"},
    {"unload 0", "board 0 holds no applet"},
    {"start 1 dma 0", "board 1 holds no applet"},
    {"wait 3 images", "no DMA channel acquires"},
    {"wait soon", "SECONDS must be a number from 0 to 86400, not 'soon'"},
    {"sync-mode 4", "MODE must be a whole number from 0 to 3, not '4'"},
    {"answer 3", "BUTTON must be a whole number from 0 to 2, not '3'"},
};

TEST(ConsoleErrors, EveryBadLineGetsOneLineWithItsNumberAndTheSessionGoesOn)
{
    std::string session;
    std::vector<std::string> expected;
    for (const auto& [line, answer] : badLines) {
        session += std::string(line) + "\n";
        expected.push_back("error: line " + std::to_string(expected.size() + 1) + ": " + answer);
    }

    const auto outcome = Workspace().console(session + "echo still here\n");
    EXPECT_EQ(outcome.linesWith("error:"), expected) << outcome.text();
    EXPECT_THAT(outcome.lines, Contains("still here")) << outcome.text();
    EXPECT_EQ(outcome.exitCode, 1);
}

TEST(ConsoleErrors, ASessionWithoutErrorEndsWithExitCode0)
{
    const auto outcome = Workspace().console("# a comment\n\nboards\nquit\necho after the end\n");
    EXPECT_EQ(outcome.exitCode, 0) << outcome.text();
    EXPECT_THAT(outcome.linesWith("error:"), IsEmpty()) << outcome.text();
    EXPECT_THAT(outcome.lines, Not(Contains("after the end"))) << outcome.text();
    EXPECT_EQ(outcome.lines.back(), "Application closed.");
}

TEST(ConsoleErrors, AScriptThatCannotBeReadIsNamed)
{
    const auto outcome = Workspace().console("", {"--script", "no-such-script.txt"});
    EXPECT_THAT(outcome.lines, ElementsAre("error: cannot read the script no-such-script.txt"));
    EXPECT_EQ(outcome.exitCode, 1);

    const Workspace workspace;
    const std::string folder = workspace.path("any").parent_path().string();
    const auto ofAFolder = workspace.console("", {"--script", folder});
    EXPECT_THAT(ofAFolder.lines, ElementsAre("error: cannot read the script " + folder));
    EXPECT_EQ(ofAFolder.exitCode, 1);
}

TEST(ConsoleErrors, ABrokenLineOfTheConfigurationIsToldAndKept)
{
    const Workspace workspace;
    const auto file = workspace.write("entries.txt", "gui.some.entry=1\nno entry at all\n");
    const auto outcome =
        workspace.console("sync-mode 0\nload 0 SingleAreaGray.hap\nquit\n", {"--config", file.string()});
    EXPECT_THAT(outcome.lines,
                Contains(AllOf(StartsWith("warning: "), HasSubstr("entries.txt"), HasSubstr("2"))))
        << outcome.text();
}

/// A machine description that cannot be used, and what the message says beside the file's name.
struct BrokenMachine
{
    const char* content;
    const char* place;
    const char* expected;
};

constexpr BrokenMachine brokenMachines[] = {
    {"{\n  \"name\": \"M\",\n  \"boards\": [,\n}\n", "line 3", "expected"},
    {"{\n  \"name\": \"M\",\n  \"boards\": 17\n}\n", "/boards", "expected"},
    {"", "line 1", "expected"},
};

TEST(ConsoleErrors, ABrokenMachineDescriptionGetsOneLineThatNamesFileAndPlaceAndNoCommandRuns)
{
    for (const auto& [content, place, expected] : brokenMachines) {
        SCOPED_TRACE(content);
        const Workspace workspace;
        const auto machine = workspace.write("machine.json", content);
        const auto outcome = workspace.console("echo commands run\n", {"--machine", machine.string()});

        const auto errors = outcome.linesWith("error:");
        ASSERT_THAT(errors, SizeIs(1)) << outcome.text();
        EXPECT_THAT(errors[0], AllOf(HasSubstr("machine.json"), HasSubstr(place), HasSubstr(expected)));
        EXPECT_THAT(outcome.lines, Not(Contains("commands run"))) << outcome.text();
        EXPECT_EQ(outcome.lines.back(), "Application closed.");
        EXPECT_EQ(outcome.exitCode, 1);
    }
}

TEST(ConsoleErrors, AMissingMachineDescriptionIsNamed)
{
    const Workspace workspace;
    const auto outcome =
        workspace.console("boards\n", {"--machine", workspace.path("nowhere.json").string()});
    const auto errors = outcome.linesWith("error:");
    ASSERT_THAT(errors, SizeIs(1)) << outcome.text();
    EXPECT_THAT(errors[0], HasSubstr("nowhere.json"));
    EXPECT_EQ(outcome.exitCode, 1);
}

TEST(ConsoleSession, ShowsEachCommandBeforeItIsCarriedOut)
{
    const Workspace workspace;
    const auto script = workspace.write("script.txt", "echo one # comment\r\n\r\necho  \"two  blanks\"\r\n");
    const auto outcome = workspace.console("", {"--script", script.string()});
    EXPECT_THAT(outcome.lines, testing::IsSupersetOf({"> echo one # comment", "one", "two  blanks"}))
        << outcome.text();
    EXPECT_EQ(outcome.exitCode, 0);
}

TEST(ConsoleSession, HelpExplainsEveryCommandAndOne)
{
    const auto outcome = Workspace().console("help\necho ---\nhelp load\n");
    for (const char* command :
         {"boards", "applets [TEXT]", "load BOARD APPLET [MCF]", "structure [BOARD]", "resources",
          "start BOARD dma|port INDEX [COUNT]", "stop BOARD dma|port INDEX", "sync-mode [MODE]",
          "save-image BOARD DMA FILE.png", "statistics", "unload BOARD", "rescan", "memory", "quit"})
        EXPECT_THAT(outcome.lines, Contains(command)) << outcome.text();
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
        Workspace().console("load c0ffee01 SingleAreaCxp.hap\nstructure 0xC0FFEE01\nunload 1\n");
    EXPECT_THAT(outcome.lines, Contains("board 1 - ovra-dual-cxp: SingleAreaCxp.hap")) << outcome.text();
    EXPECT_EQ(outcome.exitCode, 0) << outcome.text();
}

TEST(ConsoleSession, WaitingEndsWithAnErrorWhenAChannelStopsBeforeItsImagesHaveCome)
{
    const auto outcome = Workspace().console("load 0 SingleAreaGray.hap\nstart 0 dma 0 3\nwait 3 images 0 0\n"
                                             "wait 4 images 0 0\nsave-image 0 7 none.png\n");
    EXPECT_THAT(outcome.linesWith("error:"),
                ElementsAre("error: line 4: board 0 DMA 0: 3 of 4 images arrived, and it does not acquire",
                            "error: line 5: board 0 has no DMA channel 7; it has 0"))
        << outcome.text();
    EXPECT_EQ(outcome.exitCode, 1);
}

TEST(ConsoleSession, BoardsThatAreStillLoadedAtTheEndAreUnloaded)
{
    const auto outcome = Workspace().console("load 0 SingleAreaGray.hap\nstart 0 dma 0\n");
    const auto memory = outcome.linesWith("DMA memory: ");
    ASSERT_FALSE(memory.empty());
    EXPECT_THAT(memory.back(), StartsWith("DMA memory: 0.0 of ")) << outcome.text();
    EXPECT_EQ(outcome.exitCode, 0) << outcome.text();
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
    EXPECT_THAT(outcome.lines, ElementsAre("ovra-console " OVRA_VERSION));
    EXPECT_EQ(outcome.exitCode, 0);
}

TEST(MinimalFrontEnd, ListsTheBoards)
{
    const auto outcome = Workspace().run(OVRA_MINIMAL_FRONT_END, {}, "");
    EXPECT_EQ(outcome.exitCode, 0) << outcome.text();
    EXPECT_THAT(outcome.linesWith("0 - "), SizeIs(1)) << outcome.text();
    EXPECT_THAT(outcome.linesWith("1 - "), SizeIs(1)) << outcome.text();
}

} // namespace
