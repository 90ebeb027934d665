// SPDX-License-Identifier: MIT
#include "front-ends/console/Arguments.h"
#include "front-ends/shared/RequestError.h"

#include <gmock/gmock.h>

using namespace ovra::console;
using ovra::frontend::RequestError;

namespace {

TEST(ArgumentReading, TakesWholeNumbersWithinTheirBoundsAndNamesThemWithTheTextThatIsNoSuchNumber)
{
    EXPECT_EQ(Arguments({"1"}).integer(0, "COUNT", 1, 50), 1);
    EXPECT_EQ(Arguments({"50"}).integer(0, "COUNT", 1, 50), 50);
    for (const std::string text : {"5x", "", " 5", "0", "51", "-1", "+5", "2.0", "99999999999999999999"})
        EXPECT_THAT([&] { Arguments({text}).integer(0, "COUNT", 1, 50); },
                    testing::ThrowsMessage<RequestError>("COUNT must be a whole number from 1 to 50, not '" +
                                                         text + "'"));
}

TEST(ArgumentReading, TakesTimesInSecondsAndTheirFractions)
{
    EXPECT_EQ(Arguments({"0.25"}).seconds(0), std::chrono::milliseconds(250));
    EXPECT_EQ(Arguments({"3"}).seconds(0), std::chrono::seconds(3));
    for (const char* text : {"", "-1", "nan", "inf", "1e9", "1s"})
        EXPECT_THROW(Arguments({text}).seconds(0), RequestError) << text;
}

TEST(ArgumentReading, JoinsWordsWithOneBlank)
{
    EXPECT_EQ(Arguments({"two words", "and", "more"}).joined(), "two words and more");
}

} // namespace
