// SPDX-License-Identifier: MIT
#include "Fixture.h"

namespace simulation::tests {

class Parameters : public SimulationTest
{
protected:
    Parameters()
    {
        useMachine(SMALL_MACHINE);
        m_grabber = open();
    }

    Fg_Struct* m_grabber;
};

TEST_F(Parameters, TakeValuesOfTheirRangeOnly)
{
    struct Row
    {
        int parameter;
        unsigned int dma;
        double value;
        int expected;
    };
    const Row rows[] = {
        {FG_WIDTH, 0, 64, FG_OK},
        {FG_WIDTH, 0, 65, FG_VALUE_OUT_OF_RANGE},
        {FG_WIDTH, 0, 0, FG_VALUE_OUT_OF_RANGE},
        {FG_WIDTH, 1, 65, FG_OK},
        {FG_WIDTH, 2, 8, FG_INVALID_DMA},
        {FG_HEIGHT, 0, 10.5, FG_VALUE_OUT_OF_RANGE},
        {FG_GEN_ENABLE, 4, 1, FG_INVALID_PARAMETER},
        {FG_NR_OF_PROCESSES, 0, 1, FG_NOT_WRITABLE},
        {4711, 0, 8, FG_INVALID_PARAMETER},
        {10001, 4, 3.75, FG_OK},
        {10001, 4, 4.01, FG_VALUE_OUT_OF_RANGE},
        {10002, 99, 6, FG_OK},
        {10002, 0, 7, FG_VALUE_OUT_OF_RANGE},
        {10003, 0, 1, FG_INVALID_TYPE},
        {10004, 0, 1, FG_NOT_WRITABLE},
    };
    for (const auto& [parameter, dma, value, expected] : rows) {
        SCOPED_TRACE(std::to_string(parameter) + " = " + std::to_string(value));
        EXPECT_EQ(runtime.Fg_setParameterWithType(m_grabber, parameter, &value, dma, FG_TYPE_DOUBLE),
                  expected)
            << lastLine();
        double read = -1;
        if (expected != FG_OK)
            continue;
        EXPECT_EQ(runtime.Fg_getParameterWithType(m_grabber, parameter, &read, dma, FG_TYPE_DOUBLE), FG_OK);
        EXPECT_EQ(read, value);
    }
}

TEST_F(Parameters, AreReadInTheirOwnTypeAndInOthers)
{
    std::int64_t counter = 0;
    EXPECT_EQ(runtime.Fg_getParameter(m_grabber, 10004, &counter, 0), FG_OK);
    EXPECT_EQ(counter, 5000000000);
    std::int32_t narrow = 1;
    EXPECT_EQ(runtime.Fg_getParameterWithType(m_grabber, 10004, &narrow, 0, FG_TYPE_INT32),
              FG_VALUE_OUT_OF_RANGE);
    EXPECT_EQ(narrow, 1);
    EXPECT_EQ(runtime.Fg_setParameterWithType(m_grabber, 10003, "left", 0, FG_TYPE_STRING), FG_OK);
    char* text = nullptr;
    ASSERT_EQ(runtime.Fg_getParameterWithType(m_grabber, 10003, &text, 0, FG_TYPE_STRING), FG_OK);
    EXPECT_STREQ(text, "left");
    EXPECT_EQ(runtime.Fg_freeParameterStringWithType(m_grabber, 10003, &text, 0, FG_TYPE_STRING), FG_OK);
    EXPECT_EQ(text, nullptr);
}

TEST_F(Parameters, AreFoundByPositionNameAndId)
{
    const int count = runtime.Fg_getNrOfParameter(m_grabber);
    EXPECT_EQ(count, 11);
    for (int i = 0; i < count; ++i)
        EXPECT_EQ(runtime.Fg_getParameterIdByName(m_grabber, runtime.Fg_getParameterName(m_grabber, i)),
                  runtime.Fg_getParameterId(m_grabber, i));
    EXPECT_EQ(runtime.Fg_getParameterIdByName(m_grabber, "FG_GEN_ENABLE"), FG_GEN_ENABLE);
    EXPECT_EQ(runtime.Fg_getParameterIdByName(m_grabber, "FG_NOTHING"), FG_INVALID_PARAMETER);
    EXPECT_STREQ(runtime.Fg_getParameterNameById(m_grabber, 10001, 4), "GAIN");
    EXPECT_EQ(runtime.Fg_getParameterNameById(m_grabber, 10001, 3), nullptr);
    double maximum = 0;
    std::size_t bytes = sizeof maximum;
    EXPECT_EQ(
        runtime.Fg_getParameterPropertyEx(m_grabber, FG_WIDTH, FG_PROPERTY_MAXIMUM, 0, &maximum, &bytes),
        FG_OK);
    EXPECT_EQ(maximum, 64);
    ASSERT_NE(runtime.Fg_getParameterInfo(m_grabber, 4), nullptr);
    EXPECT_EQ(runtime.Fg_getParameterInfo(m_grabber, 4)->count, 8U); // a channel without a generator
    EXPECT_EQ(runtime.Fg_getParameterInfo(m_grabber, 2), nullptr);
}

} // namespace simulation::tests
