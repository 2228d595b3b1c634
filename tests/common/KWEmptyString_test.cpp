#include "KWCommon15/KWEmptyString.h"

#include <gtest/gtest.h>

TEST(EmptyString, IsOneAndEmpty) {
    EXPECT_TRUE(KWCommonNS::getEmptyString().isEmpty());
    EXPECT_FALSE(KWCommonNS::getEmptyString().isBogus());
    EXPECT_EQ(&KWCommonNS::getEmptyString(), &KWCommonNS::KWEmptyString::getEmptyString());
}
