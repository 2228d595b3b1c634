#include "KWCommon15/KWError.h"

#include <gtest/gtest.h>

#include <set>

using namespace KWCommonNS;

TEST(Error, TheDefaultIsNoError) {
    const KWError error;
    EXPECT_EQ(error.getCode(), 0);
    EXPECT_FALSE(error.isError());
    EXPECT_TRUE(error.getMessage().isEmpty());
    EXPECT_TRUE(error.getSecondText().isEmpty());
    EXPECT_EQ(error.getFirstValue(), -1);
    EXPECT_EQ(error.getSecondValue(), -1);
    EXPECT_TRUE(error.getThirdText().isEmpty());
    EXPECT_EQ(error.getLevel(), KWErrorLevel::none);
}

TEST(Error, KeepsWhatItWasMadeOfThroughCopyAssignmentAndThrow) {
    const KWError error(1921, u"first", u"second", 3, 4, u"fifth");
    KWError assigned;
    assigned = KWError(error);
    try {
        throw KWError(assigned);
    } catch (const KWError& caught) {
        EXPECT_EQ(caught.getCode(), 1921);
        EXPECT_TRUE(caught.isError());
        EXPECT_EQ(caught.getMessage(), UnicodeString(u"first"));
        EXPECT_EQ(caught.getSecondText(), UnicodeString(u"second"));
        EXPECT_EQ(caught.getFirstValue(), 3);
        EXPECT_EQ(caught.getSecondValue(), 4);
        EXPECT_EQ(caught.getThirdText(), UnicodeString(u"fifth"));
        EXPECT_EQ(caught.getLevel(), KWErrorLevel::thrown);
    }
    assigned.clear();
    EXPECT_FALSE(assigned.isError());
    EXPECT_TRUE(assigned.getMessage().isEmpty());
    EXPECT_EQ(assigned.getFirstValue(), -1);
}

TEST(ErrorLevel, IsRecordedForTheListedCodesAndThrownForAllOthers) {
    const std::set<int> recorded = {1024, 1025, 1026, 1027, 1028, 1029, 1035, 1935, 1936, 1942};
    EXPECT_EQ(static_cast<int>(KWErrorLevel::recorded), 896);
    EXPECT_EQ(getErrorLevel(0), KWErrorLevel::none);
    for (int code = 1; code <= 0xFFFF; ++code) {
        ASSERT_EQ(getErrorLevel(static_cast<std::uint16_t>(code)),
                  recorded.contains(code) ? KWErrorLevel::recorded : KWErrorLevel::thrown)
            << code;
    }
}
