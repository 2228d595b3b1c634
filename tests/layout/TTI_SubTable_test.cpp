#include "layout/TTI_SubTable.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

class OtherSubTable : public TTI_SubTable {
public:
    int lookupType() const override { return 42; }
};

TEST(SubTable, DoesNotApplyUnlessAFormatSaysSo) {
    const OtherSubTable subtable;
    EXPECT_EQ(subtable.substituteSingle(1), 0xFFFF);
    EXPECT_EQ(subtable.substituteAlternate(1, 1), 0xFFFF);
    EXPECT_EQ(subtable.lookupType(), 42);
}

} // namespace
} // namespace KWFontService_NS
