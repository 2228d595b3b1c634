#include "cff/CFFKind.h"
#include "support/Bytes.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using KWCommonNS::ByteView;
using KWTest::Bytes;

/// Header, Name INDEX of one name, Top DICT INDEX of one DICT.
Bytes cffOf(const Bytes& dict) {
    Bytes cff{1, 0, 4, 1};
    cff.u16(1).u8(1).u8(1).u8(2).u8('F');
    cff.u16(1).u8(2).u16(1).u16(1 + dict.size()).bytes({dict.data(), dict.size()});
    return cff;
}

CFFKind kindOf(const Bytes& bytes) {
    return readCFFKind(ByteView(bytes));
}

TEST(CFFKind, RosMakesAFontCIDKeyed) {
    EXPECT_EQ(kindOf(cffOf({139, 139, 139, 12, 30})), CFFKind::CIDKeyed);
    EXPECT_EQ(kindOf(cffOf({139, 17})), CFFKind::NameKeyed);
}

TEST(CFFKind, OperandsAreNotOperators) {
    // 12 and 30 as the bytes of numbers of every form.
    EXPECT_EQ(kindOf(cffOf({28, 12, 30, 17})), CFFKind::NameKeyed);
    EXPECT_EQ(kindOf(cffOf({29, 12, 30, 12, 30, 17})), CFFKind::NameKeyed);
    EXPECT_EQ(kindOf(cffOf({247, 12, 30, 0x0C, 0x1F, 17})), CFFKind::NameKeyed);
    EXPECT_EQ(kindOf(cffOf({30, 0x12, 0x0C, 0x1E, 0x3F, 17})), CFFKind::NameKeyed);
    EXPECT_EQ(kindOf(cffOf({30, 0x1F, 12, 30})), CFFKind::CIDKeyed);
}

TEST(CFFKind, AHeaderOfAnotherSizeIsSkipped) {
    Bytes cff = cffOf({139, 139, 139, 12, 30});
    Bytes longer{1, 0, 6, 1, 0, 0};
    longer.bytes({cff.data() + 4, cff.size() - 4});
    EXPECT_EQ(kindOf(longer), CFFKind::CIDKeyed);
}

TEST(CFFKind, CutAnywhereIsUnreadable) {
    const Bytes whole = cffOf({139, 139, 139, 12, 30});
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_EQ(kindOf(Bytes(whole).truncate(size)), CFFKind::Unreadable) << size;
}

TEST(CFFKind, NoTopDictIsUnreadable) {
    Bytes cff{1, 0, 4, 1};
    cff.u16(1).u8(1).u8(1).u8(2).u8('F').u16(0);
    EXPECT_EQ(kindOf(cff), CFFKind::Unreadable);
}

TEST(CFFKind, OffsetsThatLieAreUnreadable) {
    for (const int offSize : {0, 5, 255}) {
        Bytes cff{1, 0, 4, 1};
        cff.u16(1).u8(offSize).u32(0xFFFFFFFF).u32(0xFFFFFFFF);
        EXPECT_EQ(kindOf(cff), CFFKind::Unreadable) << offSize;
    }
    Bytes backwards{1, 0, 4, 1};
    backwards.u16(1).u8(1).u8(9).u8(2).u8('F');
    EXPECT_EQ(kindOf(backwards), CFFKind::Unreadable);
}

} // namespace
} // namespace KWFontService_NS
