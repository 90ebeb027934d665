// SPDX-License-Identifier: MIT
/// \file
/// IN_A_NEW_PROCESS: runs code in a process of its own, for state that exists once per process.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>

/// Runs the code in a new child process. It passes if the child reaches the end without a failure.
#define IN_A_NEW_PROCESS(...)                               \
    GTEST_FLAG_SET(death_test_style, "threadsafe");         \
    EXPECT_EXIT(                                            \
        {                                                   \
            (__VA_ARGS__)();                                \
            std::exit(testing::Test::HasFailure() ? 1 : 0); \
        },                                                  \
        testing::ExitedWithCode(0), "")
