// SPDX-License-Identifier: MIT
// What becomes of a session whose output cannot be written.
#include "../Workspace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

using namespace ovra::tests;

namespace {

struct Row
{
    const char* name;
    std::string behind; ///< the console, in a line of the shell
};

class Output : public testing::TestWithParam<Row>
{};

TEST_P(Output, ThatCannotBeWrittenIsAnErrorAndEndsTheSession)
{
    const Workspace workspace;
    workspace.write("input", "boards\nboards\nstore-mcf 0 never.mcf\n");
    const std::string line = "cd '" + workspace.path().string() +
                             "' && { '" OVRA_CONSOLE "' <input 2>errors; echo $? >code; } " +
                             GetParam().behind;
    ASSERT_EQ(std::system(line.c_str()), 0); // NOLINT(concurrency-mt-unsafe): one thread
    EXPECT_EQ(workspace.read("code"), "1\n");
    EXPECT_THAT(workspace.read("errors"), testing::HasSubstr("error: the output cannot be written\n"));
    EXPECT_THAT(workspace.read("errors"), testing::Not(testing::HasSubstr("line 3"))); // nobody would see it
}

INSTANTIATE_TEST_SUITE_P(To, Output,
                         testing::Values(Row{"AFullDisk", ">/dev/full"},
                                         Row{"APipeThatNobodyReads", "| true"}),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace
