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

TEST_F(Printing, ProgressMakesWayForALineOnATerminal)
{
    Printer printer(output, errors, Printer::Target::Terminal);
    printer.progress("one");
    printer.status("four");
    printer.line("done");
    printer.line("more");
    EXPECT_EQ(output.str(), "one\r   \rfour\r    \rdone\nmore\n");
}

TEST_F(Printing, ProgressIsCutToTheWidthOfATerminal)
{
    Printer printer(output, errors, Printer::Target::Terminal);
    printer.progress(std::string(200, 'x'));
    EXPECT_EQ(output.str().size(), 78u);
    output.str("");
    Printer(output, errors, Printer::Target::Terminal).progress(std::string(77, 'x') + "\u00fc");
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

TEST_F(Printing, LinesOfSeveralThreadsStayWhole)
{
    constexpr int threads = 4;
    constexpr int lines = 500;
    Printer printer(output, errors, Printer::Target::Lines);
    {
        std::vector<std::jthread> writers;
        for (int i = 0; i < threads; ++i)
            writers.emplace_back([&] {
                for (int line = 0; line < lines; ++line)
                    printer.line("a whole line");
            });
    }
    std::istringstream written(output.str());
    int whole = 0;
    for (std::string line; std::getline(written, line); ++whole)
        ASSERT_EQ(line, "a whole line");
    EXPECT_EQ(whole, threads * lines);
}

} // namespace
