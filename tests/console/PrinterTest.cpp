// SPDX-License-Identifier: MIT
#include "front-ends/console/Printer.h"

#include <gtest/gtest.h>

#include <sstream>
#include <thread>
#include <vector>

using ovra::console::Printer;

namespace {

struct Printing : testing::Test
{
    std::ostringstream output;
    std::ostringstream errors;
};

TEST_F(Printing, ProgressIsALineInAPipe)
{
    Printer printer(output, errors, Printer::Target::Lines);
    printer.progress("Scanning");
    printer.status("of passing interest");
    printer.endProgress();
    printer.line("done");
    EXPECT_EQ(output.str(), "Scanning\ndone\n");
}

TEST_F(Printing, ProgressIsCutToTheWidthOfATerminalAndMakesWayForALine)
{
    Printer printer(output, errors, Printer::Target::Terminal);
    printer.progress("one");
    printer.status("four");
    printer.line("done");
    printer.line("more");
    EXPECT_EQ(output.str(), "one\r   \rfour\r    \rdone\nmore\n");
    output.str("");
    printer.progress(std::string(77, 'x') + "\u00fc" + std::string(77, 'x'));
    EXPECT_EQ(output.str(), std::string(77, 'x')); // half a character would be none
}

TEST_F(Printing, AnErrorIsOneLineThatTellsThePlaceAndCounts)
{
    Printer printer(output, errors, Printer::Target::Lines);
    printer.error("first");
    printer.setPlace("line 7");
    printer.warning("beware");
    printer.error("a text\r\nof two lines");
    EXPECT_EQ(errors.str(), "error: first\nwarning: line 7: beware\nerror: line 7: a text of two lines\n");
    EXPECT_EQ(printer.errorCount(), 2u);
}

TEST_F(Printing, AProgramGetsAnObjectForEachLineWithErrorsAmongThem)
{
    Printer printer(output, errors, Printer::Target::Objects);
    printer.result("image",
                   {{"board", std::int64_t{1}},
                    {"rate", 2.5},
                    {"on", true},
                    {"counts", std::vector<std::int64_t>{3, 4}}},
                   "a sentence");
    printer.status("of passing interest");
    printer.setPlace("line 7");
    printer.error("a \"text\"");
    printer.line("not UTF-8: \xff");
    EXPECT_EQ(output.str(), R"({"type":"image","board":1,"rate":2.5,"on":true,"counts":[3,4]}
{"type":"error","place":"line 7","text":"a \"text\""}
{"type":"text","text":"not UTF-8: �"}
)");
    EXPECT_EQ(errors.str(), "");
}

TEST_F(Printing, WhatComesWhileSomebodyTypesGoesAboveAndColoursOnlyWhereTheyAreWanted)
{
    Printer printer(output, errors, Printer::Target::Terminal);
    std::string above;
    printer.setAbovePrompt(
        [&](const std::string& text) {
            above += text;
            return true;
        },
        true);
    printer.progress("not in the way");
    printer.line("one");
    printer.error("two");
    EXPECT_EQ(above, "one\nerror: two\n");
    EXPECT_EQ(output.str() + errors.str(), "");

    printer.setAbovePrompt({}, false);
    printer.setColours(false, true);
    printer.warning("three");
    EXPECT_EQ(errors.str(), "\x1b[33mwarning: \x1b[0mthree\n");
    EXPECT_EQ(printer.recentErrors().size(), 2u);
}

TEST_F(Printing, LinesOfSeveralThreadsStayWhole)
{
    Printer printer(output, errors, Printer::Target::Lines);
    {
        std::vector<std::jthread> writers;
        for (int i = 0; i < 4; ++i)
            writers.emplace_back([&] {
                for (int line = 0; line < 500; ++line)
                    printer.line("whole");
            });
    }
    std::string expected;
    for (int line = 0; line < 2000; ++line)
        expected += "whole\n";
    EXPECT_EQ(output.str(), expected);
}

} // namespace
