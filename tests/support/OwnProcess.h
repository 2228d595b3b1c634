#pragma once

#include <gtest/gtest.h>

#include <cstdlib>

/// Runs statements in a fresh process, for what happens once in each: the opening of the service.
/// Their expectations count, and are printed when one fails.
#define KW_IN_OWN_PROCESS(...)                                                                     \
    do {                                                                                           \
        GTEST_FLAG_SET(death_test_style, "threadsafe");                                            \
        EXPECT_EXIT(                                                                               \
            {                                                                                      \
                __VA_ARGS__;                                                                       \
                std::_Exit(testing::Test::HasFailure() ? 1 : 0);                                   \
            },                                                                                     \
            testing::ExitedWithCode(0), "");                                                       \
    } while (false)
