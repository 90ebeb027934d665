/// \file
/// IN_A_NEW_PROCESS: for what is decided once per process.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>

/// The case runs in a child that starts anew, and passes there when it reaches its end without a failure.
#define IN_A_NEW_PROCESS(...)                               \
    GTEST_FLAG_SET(death_test_style, "threadsafe");         \
    EXPECT_EXIT(                                            \
        {                                                   \
            (__VA_ARGS__)();                                \
            std::exit(testing::Test::HasFailure() ? 1 : 0); \
        },                                                  \
        testing::ExitedWithCode(0), "")
