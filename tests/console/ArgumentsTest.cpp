#include "front-ends/console/Arguments.h"

#include <gtest/gtest.h>

using namespace ovra::console;

namespace {

std::string refusalOfInteger(const std::string& text)
{
    try {
        Arguments({text}).integer(0, "COUNT", 1, 50);
    } catch (const CommandError& error) {
        return error.what();
    }
    return "accepted";
}

TEST(ArgumentReading, TakesWholeNumbersWithinTheirBounds)
{
    EXPECT_EQ(Arguments({"1"}).integer(0, "COUNT", 1, 50), 1);
    EXPECT_EQ(Arguments({"50"}).integer(0, "COUNT", 1, 50), 50);
}

TEST(ArgumentReading, NamesTheArgumentItsBoundsAndTheTextThatIsNoSuchNumber)
{
    EXPECT_EQ(refusalOfInteger("5x"), "COUNT must be a whole number from 1 to 50, not '5x'");
    for (const char* text : {"", " 5", "0", "51", "-1", "+5", "2.0", "99999999999999999999"})
        EXPECT_EQ(refusalOfInteger(text),
                  "COUNT must be a whole number from 1 to 50, not '" + std::string(text) + "'");
}

TEST(ArgumentReading, TakesTimesInSecondsAndTheirFractions)
{
    EXPECT_EQ(Arguments({"0.25"}).seconds(0), std::chrono::milliseconds(250));
    EXPECT_EQ(Arguments({"3"}).seconds(0), std::chrono::seconds(3));
    for (const char* text : {"", "-1", "nan", "inf", "1e9", "1s"})
        EXPECT_THROW(Arguments({text}).seconds(0), CommandError) << text;
}

TEST(ArgumentReading, JoinsWordsWithOneBlank)
{
    EXPECT_EQ(Arguments({"two words", "and", "more"}).joined(), "two words and more");
}

} // namespace
