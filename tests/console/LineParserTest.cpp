// SPDX-License-Identifier: MIT
#include "front-ends/console/LineParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ovra::console::LineError;
using ovra::console::splitLine;
using testing::ElementsAreArray;

namespace {

struct Row
{
    const char* line;
    std::vector<std::string> words;
};

const Row ROWS[] = {
    {"", {}},
    {" \t ", {}},
    {"boards", {"boards"}},
    {"  load  0\ta.hap  ", {"load", "0", "a.hap"}},
    {"load 0 \"a b.hap\"", {"load", "0", "a b.hap"}},
    {"load 0 dir/\"a b\".hap", {"load", "0", "dir/a b.hap"}},
    {"echo \"\"", {"echo", ""}},
    {"echo \"a # b\"", {"echo", "a # b"}},
    {"# only a comment", {}},
    {"boards # and a comment", {"boards"}},
    {"boards #\"", {"boards"}},
    {"echo C# a#b", {"echo", "C#", "a#b"}},
    {"load 1 C:\\dir\\a.hap", {"load", "1", "C:\\dir\\a.hap"}},
    {"load 1 \"C:\\my dir\\\"", {"load", "1", "C:\\my dir\\"}},
    {"echo Gr\xc3\xbc\xc3\x9f", {"echo", "Gr\xc3\xbc\xc3\x9f"}},
};

TEST(LineParsing, SplitsALineIntoWords)
{
    for (const auto& [line, words] : ROWS)
        EXPECT_THAT(splitLine(line), ElementsAreArray(words)) << "line: " << line;
}

TEST(LineParsing, RefusesAQuoteThatIsNotClosed)
{
    EXPECT_THROW(splitLine("load 0 \"a b.hap"), LineError);
    EXPECT_THROW(splitLine("\""), LineError);
}

} // namespace
