// SPDX-License-Identifier: MIT
#include "front-ends/console/ChoiceDialog.h"
#include "front-ends/console/Printer.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace ovra::console;

namespace {

struct Asking : testing::Test
{
    ChoiceDialog::Answer askUser(const std::string& typed)
    {
        std::istringstream user(typed);
        const auto nextLine = [&](const std::string& prompt) -> std::optional<std::string> {
            std::string line;
            output << prompt;
            return std::getline(user, line) ? std::optional(line) : std::nullopt;
        };
        return ChoiceDialog(printer, nextLine).ask("Which?", {"first", "second", "third"});
    }

    std::ostringstream output;
    Printer printer{output, output, Printer::Target::Terminal};
};

TEST_F(Asking, ReadsAButtonAndWhetherItIsToBeRemembered)
{
    EXPECT_EQ(askUser("0\n").button, 0);
    EXPECT_FALSE(askUser("0\n").remember);
    EXPECT_EQ(askUser(" 1  remember \n").button, 1);
    EXPECT_TRUE(askUser("1 remember\n").remember);
    EXPECT_EQ(askUser("x").button, 2); // the last one, at the end of the input
    EXPECT_FALSE(askUser("").remember);
}

TEST_F(Asking, AsksAgainUntilTheAnswerMakesSense)
{
    EXPECT_EQ(askUser("\nx\n3\n-1\n1 forget\nremember\n1\n").button, 1);
    EXPECT_EQ(output.str(),
              "Which?\n  0  first\n  1  second\n  2  third\n"
              "0, 1 or 2 [remember]: 0, 1 or 2 [remember]: 0, 1 or 2 [remember]: 0, 1 or 2 [remember]: "
              "0, 1 or 2 [remember]: 0, 1 or 2 [remember]: 0, 1 or 2 [remember]: Answer: second.\n");
}

} // namespace
