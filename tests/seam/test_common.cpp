#include "seam/common.h"

#include <gtest/gtest.h>

TEST(Common, AbsentMarkers)
{
    EXPECT_TRUE(utils::isAbsent(DBL_MAX));
    EXPECT_TRUE(utils::isAbsent(utils::kAbsentInt));
    EXPECT_TRUE(utils::isAbsent(utils::kAbsentLongLong));
    EXPECT_FALSE(utils::isAbsent(0.0));
    EXPECT_FALSE(utils::isAbsent(2147483646));
}
