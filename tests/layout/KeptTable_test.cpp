#include "layout/KeptTable.h"

#include "layout/LayoutFixture.h"
#include "layout/TTI_Coverage.h"

#include <gtest/gtest.h>

#include <utility>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

TEST(KeptTable, AnswersWhenItsSourceIsGoneAndWhenItHasMoved) {
    KeptTable<TTI_Coverage> kept;
    EXPECT_FALSE(kept);
    {
        const Bytes source = coverageTable({3, 5}).u16(0xFFFF);
        kept = KeptTable<TTI_Coverage>(viewOf(source));
    }
    const KeptTable<TTI_Coverage> moved = std::move(kept);
    ASSERT_TRUE(moved);
    EXPECT_EQ(moved->coverageIndex(5), 1);
    EXPECT_EQ(moved->coverageIndex(4), -1);
}

TEST(KeptTable, HoldsNothingOfABadTable) {
    const Bytes bad = Bytes().u16(3).u16(0);
    EXPECT_FALSE(KeptTable<TTI_Coverage>(viewOf(bad)));
    EXPECT_FALSE(KeptTable<TTI_Coverage>(KWCommonNS::ByteView()));
}

TEST(KeptTable, OfATableThatIsCutOffWhatItHoldsCounts) {
    const Bytes cut = Bytes().u16(1); // half a header
    const KeptTable<TTI_Coverage> kept(viewOf(cut));
    ASSERT_TRUE(kept);
    EXPECT_EQ(kept->coverageIndex(0), -1);
}

} // namespace
} // namespace KWFontService_NS
