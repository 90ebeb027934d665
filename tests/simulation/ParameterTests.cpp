#include "Fixture.h"

#include <cstring>

namespace simulation::tests {

class Parameters : public SimulationTest
{
protected:
    Parameters()
    {
        useMachine(smallMachine);
        grabber_ = open();
    }

    Fg_Struct* grabber_;
};

TEST_F(Parameters, TakeValuesOfTheirRangeOnly)
{
    struct Row
    {
        int line;
        int parameter;
        unsigned int dma;
        double value;
        int expected;
    };
    for (const auto& row :
         {Row{__LINE__, FG_WIDTH, 0, 64, FG_OK}, Row{__LINE__, FG_WIDTH, 0, 65, FG_VALUE_OUT_OF_RANGE},
          Row{__LINE__, FG_WIDTH, 0, 0, FG_VALUE_OUT_OF_RANGE}, Row{__LINE__, FG_WIDTH, 1, 65, FG_OK},
          Row{__LINE__, FG_HEIGHT, 0, 10.5, FG_VALUE_OUT_OF_RANGE},
          Row{__LINE__, FG_WIDTH, 2, 8, FG_INVALID_DMA}, Row{__LINE__, 4711, 0, 8, FG_INVALID_PARAMETER},
          Row{__LINE__, FG_GEN_ENABLE, 4, 1, FG_INVALID_PARAMETER}, Row{__LINE__, 10001, 4, 3.75, FG_OK},
          Row{__LINE__, 10001, 4, 4.01, FG_VALUE_OUT_OF_RANGE}, Row{__LINE__, 10002, 99, 6, FG_OK},
          Row{__LINE__, 10002, 0, 7, FG_VALUE_OUT_OF_RANGE}, Row{__LINE__, 10003, 0, 1, FG_INVALID_TYPE},
          Row{__LINE__, 10004, 0, 1, FG_NOT_WRITABLE},
          Row{__LINE__, FG_NR_OF_PROCESSES, 0, 1, FG_NOT_WRITABLE}}) {
        EXPECT_EQ(
            runtime.Fg_setParameterWithType(grabber_, row.parameter, &row.value, row.dma, FG_TYPE_DOUBLE),
            row.expected)
            << "row of line " << row.line << ": " << lastLine();
        double value = -1;
        if (row.expected != FG_OK)
            continue;
        EXPECT_EQ(runtime.Fg_getParameterWithType(grabber_, row.parameter, &value, row.dma, FG_TYPE_DOUBLE),
                  FG_OK);
        EXPECT_EQ(value, row.value) << "row of line " << row.line;
    }
}

TEST_F(Parameters, AreReadInTheirOwnTypeAndInOthers)
{
    std::int64_t counter = 0;
    EXPECT_EQ(runtime.Fg_getParameter(grabber_, 10004, &counter, 0), FG_OK);
    EXPECT_EQ(counter, 5000000000);
    std::int32_t narrow = 1;
    EXPECT_EQ(runtime.Fg_getParameterWithType(grabber_, 10004, &narrow, 0, FG_TYPE_INT32),
              FG_VALUE_OUT_OF_RANGE);
    EXPECT_EQ(narrow, 1);
    EXPECT_EQ(runtime.Fg_setParameterWithType(grabber_, 10003, "left", 0, FG_TYPE_STRING), FG_OK);
    char* text = nullptr;
    ASSERT_EQ(runtime.Fg_getParameterWithType(grabber_, 10003, &text, 0, FG_TYPE_STRING), FG_OK);
    EXPECT_STREQ(text, "left");
    EXPECT_EQ(runtime.Fg_freeParameterStringWithType(grabber_, 10003, &text, 0, FG_TYPE_STRING), FG_OK);
    EXPECT_EQ(text, nullptr);
}

TEST_F(Parameters, AreFoundByPositionNameAndId)
{
    const int count = runtime.Fg_getNrOfParameter(grabber_);
    EXPECT_EQ(count, 10);
    for (int i = 0; i < count; ++i)
        EXPECT_EQ(runtime.Fg_getParameterIdByName(grabber_, runtime.Fg_getParameterName(grabber_, i)),
                  runtime.Fg_getParameterId(grabber_, i));
    EXPECT_EQ(runtime.Fg_getParameterIdByName(grabber_, "FG_GEN_ENABLE"), FG_GEN_ENABLE);
    EXPECT_EQ(runtime.Fg_getParameterIdByName(grabber_, "FG_NOTHING"), FG_INVALID_PARAMETER);
    EXPECT_STREQ(runtime.Fg_getParameterNameById(grabber_, 10001, 4), "GAIN");
    EXPECT_EQ(runtime.Fg_getParameterNameById(grabber_, 10001, 3), nullptr);
}

TEST_F(Parameters, AreDescribedForEachChannel)
{
    const auto* info = runtime.Fg_getParameterInfo(grabber_, 4);
    ASSERT_NE(info, nullptr);
    ASSERT_EQ(info->count, 8U); // four of the channel, GAIN, three of the applet; no generator
    const auto& gain = info->parameters[4];
    EXPECT_STREQ(gain.name, "GAIN");
    EXPECT_STREQ(gain.unit, "dB");
    EXPECT_EQ(gain.type, FG_TYPE_DOUBLE);
    EXPECT_EQ(gain.minimum, -2);
    EXPECT_EQ(gain.maximum, 4);
    EXPECT_EQ(info->parameters[7].writable, 0);
    double maximum = 0;
    std::size_t bytes = sizeof maximum;
    EXPECT_EQ(runtime.Fg_getParameterPropertyEx(grabber_, FG_WIDTH, FG_PROPERTY_MAXIMUM, 0, &maximum, &bytes),
              FG_OK);
    EXPECT_EQ(maximum, 64);
    EXPECT_EQ(runtime.Fg_getParameterInfo(grabber_, 2), nullptr);
}

TEST_F(Parameters, OfAnAppletWithoutChannelsAreDescribedUnderChannelZero)
{
    free(grabber_);
    grabber_ =
        open(R"({"format": "virtual-applet-1", "name": "None", "boardType": 7, "processes": [{"ports": [0]}],
                        "parameters": [{"name": "A", "id": 10001, "type": "int32", "default": 3}]})");
    ASSERT_NE(grabber_, nullptr) << lastLine();
    const auto* info = runtime.Fg_getParameterInfo(grabber_, 0);
    ASSERT_NE(info, nullptr);
    ASSERT_EQ(info->count, 1U);
    EXPECT_STREQ(info->parameters[0].name, "A");
    int width = 0;
    EXPECT_EQ(runtime.Fg_getParameter(grabber_, FG_WIDTH, &width, 0), FG_INVALID_DMA);
}

} // namespace simulation::tests
