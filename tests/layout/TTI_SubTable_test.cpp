#include "layout/TTI_SubTable.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

class OtherSubTable : public TTI_SubTable {
public:
    OtherSubTable() : TTI_SubTable({}) {}
    int lookupType() const override { return 42; }
};

TEST(SubTable, DoesNotApplyUnlessAFormatSaysSo) {
    const OtherSubTable subtable;
    EXPECT_EQ(subtable.substituteSingle(1), 0xFFFF);
    EXPECT_EQ(subtable.substituteAlternate(1, 1), 0xFFFF);
    EXPECT_EQ(subtable.lookupType(), 42);
    for (const unsigned short gid : std::initializer_list<unsigned short>{0, 1, 0xFFFF})
        EXPECT_FALSE(subtable.mayApply(gid));
}

} // namespace
} // namespace KWFontService_NS
