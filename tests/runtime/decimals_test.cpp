// The C++ library's conversions stand in for the C library's, on the strength of this comparison.
// bench/numbers_proof runs it over any number of doubles.

#include "tools/decimals.h"

#include <gtest/gtest.h>

TEST(Decimals, SameTextAndNumbersAsTheCLibrary)
{
    EXPECT_EQ(decimals::first_difference(150000, 1), "");
}
