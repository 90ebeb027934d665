// SPDX-License-Identifier: MIT
// Conversion of parameter values to and from text.

#include "ovra-lib-parameters/Parameter.h"

#include <gmock/gmock.h>

namespace {

using namespace ovra::parameters;

TEST(ParameterText, ReadsBackAsTheSameValue)
{
    struct Row
    {
        const char* text;
        Value value;
    };
    for (const auto& [text, value] :
         {Row{"1024", std::int64_t{1024}}, Row{"-1", std::int64_t{-1}}, Row{"0.1", 0.1}, Row{"25", 25.0},
          Row{"-2.5", -2.5}, Row{"mono 8", std::string("mono 8")}, Row{"", std::string()}}) {
        Parameter parameter;
        parameter.value = value;
        EXPECT_EQ(toText(value), text);
        EXPECT_EQ(fromText(parameter, text), value) << text;
    }
}

TEST(ParameterText, ThatIsRefusedNamesTheParameterItsRangeAndTheText)
{
    Parameter parameter;
    parameter.name = "FG_WIDTH";
    parameter.unit = "pixel";
    parameter.minimum = 1;
    parameter.maximum = 4096;
    parameter.value = std::int64_t{1024};
    for (const std::string text : {"0", "4097", "wide", "", "12.5", "12 ", "1e3"})
        EXPECT_THAT(
            [&] { fromText(parameter, text); },
            testing::ThrowsMessage<std::invalid_argument>(
                "Parameter FG_WIDTH: expected an integer from 1 to 4096 (pixel), found \"" + text + '"'));
    parameter.value = 1.0;
    EXPECT_THROW(fromText(parameter, "nan"), std::invalid_argument);
}

TEST(ParameterText, OfAChoiceIsItsNameOrItsNumber)
{
    Parameter parameter;
    parameter.name = "FORMAT";
    parameter.value = std::int64_t{8};
    parameter.choices = choicesFromText("8=Mono8;-3=odd=name;broken;=;12=Mono12");
    EXPECT_EQ(fromText(parameter, "Mono12"), Value(std::int64_t{12}));
    EXPECT_EQ(fromText(parameter, "8"), Value(std::int64_t{8}));
    EXPECT_EQ(fromText(parameter, "odd=name"), Value(std::int64_t{-3}));
    EXPECT_THAT([&] { fromText(parameter, "9"); },
                testing::ThrowsMessage<std::invalid_argument>(
                    "Parameter FORMAT: expected one of 8 (Mono8), -3 (odd=name), 12 (Mono12), found \"9\""));
}

} // namespace
