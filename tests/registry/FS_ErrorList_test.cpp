#include "registry/FS_ErrorList.h"

#include "common/KWLimits.h"

#include <gtest/gtest.h>

namespace {

using namespace KWFontService_NS;

TEST(ErrorList, KeepsErrorsInTheirOrder) {
    FS_ErrorList list;
    EXPECT_TRUE(list.empty());
    list.append(KWError(1921, u"first"));
    list.append(KWError(1928, u"second"));
    EXPECT_EQ(list.size(), 2U);
    EXPECT_EQ(list.get(0)->getCode(), 1921);
    EXPECT_EQ(list.get(1)->getMessage(), UnicodeString(u"second"));
    EXPECT_FALSE(list.get(2));
    EXPECT_FALSE(list.get(static_cast<std::size_t>(-1)));
}

TEST(ErrorList, DropsWhatGoesPastTheLimit) {
    FS_ErrorList list;
    for (std::size_t i = 0; i < KWCommonNS::kMaxRecordedErrors + 5; ++i)
        list.append(KWError(1936, u"again"));
    EXPECT_EQ(list.size(), KWCommonNS::kMaxRecordedErrors);
}

} // namespace
