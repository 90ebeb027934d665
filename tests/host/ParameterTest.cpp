// Parameter values as a person reads and writes them.

#include "ovra-lib-parameters/Parameter.h"

#include <gmock/gmock.h>

namespace {

using namespace ovra::parameters;

struct TextCase
{
    const char* text;
    Value value;
};

class ParameterTextTest : public testing::TestWithParam<TextCase>
{};

TEST_P(ParameterTextTest, ReadsBackAsTheSameValue)
{
    Parameter parameter;
    parameter.value = GetParam().value;
    EXPECT_EQ(toText(GetParam().value), GetParam().text);
    EXPECT_EQ(fromText(parameter, GetParam().text), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(Texts, ParameterTextTest,
                         testing::Values(TextCase{"1024", std::int64_t{1024}},
                                         TextCase{"-1", std::int64_t{-1}}, TextCase{"0.1", 0.1},
                                         TextCase{"25", 25.0}, TextCase{"-2.5", -2.5},
                                         TextCase{"mono 8", std::string("mono 8")},
                                         TextCase{"", std::string()}));

class RefusedTextTest : public testing::TestWithParam<const char*>
{};

TEST_P(RefusedTextTest, NamesTheParameterItsRangeAndTheText)
{
    Parameter parameter;
    parameter.name = "FG_WIDTH";
    parameter.unit = "pixel";
    parameter.minimum = 1;
    parameter.maximum = 4096;
    parameter.value = std::int64_t{1024};
    EXPECT_THAT([&] { fromText(parameter, GetParam()); },
                testing::ThrowsMessage<std::invalid_argument>(
                    std::string("Parameter FG_WIDTH: expected an integer from 1 to 4096 (pixel), found \"") +
                    GetParam() + '"'));
}

INSTANTIATE_TEST_SUITE_P(Texts, RefusedTextTest,
                         testing::Values("0", "4097", "wide", "", "12.5", "12 ", "1e3"));

TEST(Parameter, RefusesANumberThatIsNone)
{
    Parameter parameter;
    parameter.maximum = 10;
    parameter.value = 1.0;
    EXPECT_THROW(fromText(parameter, "nan"), std::invalid_argument);
}

} // namespace
