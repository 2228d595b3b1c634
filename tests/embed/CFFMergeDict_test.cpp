#include "embed/CFFMergeDict.h"

#include "CffOutput.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

/// 391 stays, 392 becomes 400, 393 becomes 40000.
const MergedSIDs kSIDs({391, 400, 40000});

FS_MergeEmbeddedFonts::TopDICT topDictOf(const Bytes& dict, bool isCID = false) {
    return getTopDictData(viewOf(dict), kSIDs, isCID);
}
Bytes dataOf(const Bytes& dict, bool isCID = false) {
    return Bytes::ofText(topDictOf(dict, isCID).data);
}
Bytes integer(int value) {
    std::string out;
    addDictDataInteger(out, value);
    return Bytes::ofText(out);
}

TEST(MergedSIDs, StandardStringsStayAndOthersHaveTheirNewNumbers) {
    EXPECT_EQ(kSIDs.find(0), 0);
    EXPECT_EQ(kSIDs.find(390), 390);
    EXPECT_EQ(kSIDs.find(391), 391);
    EXPECT_EQ(kSIDs.find(393), 40000);
    EXPECT_EQ(kSIDs.find(394), std::nullopt);
    EXPECT_EQ(kSIDs.find(-1), std::nullopt);
    EXPECT_EQ(MergedSIDs().find(391), std::nullopt);
}

TEST(AddDictDataInteger, TakesTheShortestForm) {
    EXPECT_EQ(integer(0), Bytes{139});
    EXPECT_EQ(integer(107), Bytes{246});
    EXPECT_EQ(integer(-107), Bytes{32});
    EXPECT_EQ(integer(108), (Bytes{247, 0}));
    EXPECT_EQ(integer(-108), (Bytes{251, 0}));
    EXPECT_EQ(integer(1131), (Bytes{250, 255}));
    EXPECT_EQ(integer(-1131), (Bytes{254, 255}));
    EXPECT_EQ(integer(1132), (Bytes{28, 4, 108}));
    EXPECT_EQ(integer(-1132), (Bytes{28, 251, 148}));
    EXPECT_EQ(integer(32767), (Bytes{28, 127, 255}));
    EXPECT_EQ(integer(-32768), (Bytes{28, 128, 0}));
    EXPECT_EQ(integer(32768), (Bytes{29, 0, 0, 128, 0}));
    EXPECT_EQ(integer(-32769), (Bytes{29, 255, 255, 127, 255}));
}

TEST(AddDictDataOffset, HasTheWidthThatIsAskedFor) {
    std::string out;
    addDictDataOffset(out, 1, 2);
    addDictDataOffset(out, 0x12345678, 4);
    EXPECT_EQ(Bytes::ofText(out), (Bytes{28, 0, 1, 29, 0x12, 0x34, 0x56, 0x78}));
}

TEST(GetTopDictData, GivesStringsTheirNewNumbers) {
    for (const Bytes& op : {Bytes{0}, Bytes{1}, Bytes{2}, Bytes{3}, Bytes{4}, Bytes{12, 0},
                            Bytes{12, 21}, Bytes{12, 22}, Bytes{12, 38}}) {
        EXPECT_EQ(dataOf(joined(cffInteger(392), op)), joined(Bytes{248, 36}, op)) << op.hex();
        EXPECT_EQ(dataOf(joined(Bytes{28, 1, 137}, op)), joined(Bytes{29, 0, 0, 156, 64}, op));
        EXPECT_EQ(dataOf(joined(Bytes{239}, op)), joined(Bytes{239}, op));
        EXPECT_TRUE(topDictOf(joined(cffInteger(394), op)).cannotCarry) << op.hex();
    }
}

TEST(GetTopDictData, CopiesOtherEntriesAsTheyStand) {
    const Bytes dict = joined(Bytes{28, 0xFF, 0xF6, 12, 2}, cffReal("0.001"), Bytes{12, 7},
                              cffInteger(392), Bytes{13}, Bytes{140, 141, 14});
    EXPECT_EQ(dataOf(dict), dict);
    EXPECT_FALSE(topDictOf(dict).cannotCarry);
}

TEST(GetTopDictData, NotesOffsetsAndLeavesThemOut) {
    const Bytes dict =
        joined(cffInteger(70000), Bytes{15}, cffInteger(2), Bytes{17}, Bytes{150}, cffInteger(4),
               Bytes{18}, cffInteger(5), Bytes{12, 36}, cffInteger(6), Bytes{12, 37});
    const FS_MergeEmbeddedFonts::TopDICT found = topDictOf(dict);
    EXPECT_EQ(found.data, "");
    EXPECT_EQ(found.charset, 70000u);
    EXPECT_EQ(found.charStrings, 2u);
    EXPECT_EQ(found.privateSize, 11u);
    EXPECT_EQ(found.privateOffset, 4u);
    EXPECT_EQ(found.fdArray, 5u);
    EXPECT_EQ(found.fdSelect, 6u);
    EXPECT_EQ(found.cidCount, std::nullopt);
}

TEST(GetTopDictData, AnOffsetWithoutOperandsSaysNothing) {
    const FS_MergeEmbeddedFonts::TopDICT out = topDictOf({141, 12, 36, 142, 17, 12, 36, 17});
    EXPECT_EQ(out.fdArray, 2U);
    EXPECT_EQ(out.charStrings, 3U);
}

TEST(GetTopDictData, WritesROSAnew) {
    EXPECT_EQ(dataOf(cffROS(391, 392, 7), true), (Bytes{248, 27, 248, 36, 146, 12, 30}));
    EXPECT_FALSE(topDictOf(cffROS(391, 392, 7), true).cannotCarry);
    EXPECT_TRUE(topDictOf(cffROS(391, 394, 7), true).cannotCarry);
    EXPECT_TRUE(topDictOf(cffROS(394, 391, 7), true).cannotCarry);
    EXPECT_TRUE(topDictOf(Bytes{140, 141, 12, 30}, true).cannotCarry) << "two operands";
    EXPECT_TRUE(topDictOf(Bytes{140, 140, 140, 141, 12, 30}, true).cannotCarry);
}

TEST(GetTopDictData, NotesHowManyCIDsThereAre) {
    EXPECT_EQ(topDictOf(joined(cffInteger(12000), Bytes{12, 34})).cidCount, 12000);
    EXPECT_EQ(dataOf(joined(cffInteger(12000), Bytes{12, 34})), Bytes());
}

TEST(GetTopDictData, CannotCarryWhatWouldNotBeTrueOfBoth) {
    EXPECT_TRUE(topDictOf(Bytes{140, 12, 6}).cannotCarry) << "charstrings of type 1";
    EXPECT_FALSE(topDictOf(Bytes{141, 12, 6}).cannotCarry);
    EXPECT_TRUE(topDictOf(Bytes{139, 12, 20}).cannotCarry) << "SyntheticBase";
    EXPECT_TRUE(topDictOf(Bytes{150, 16}).cannotCarry) << "an Encoding of its own";
    EXPECT_FALSE(topDictOf(Bytes{139, 16}).cannotCarry);
    EXPECT_EQ(dataOf(Bytes{140, 16}), (Bytes{140, 16})) << "Expert";
}

TEST(GetTopDictData, CannotCarryAFontOfTheOtherKind) {
    EXPECT_TRUE(topDictOf(cffROS(391, 392, 0), false).cannotCarry);
    EXPECT_TRUE(topDictOf(Bytes{}, true).cannotCarry);
    EXPECT_FALSE(topDictOf(Bytes{}, false).cannotCarry);
}

TEST(GetFontDictData, LeavesPrivateOutAndRenewsTheName) {
    const Bytes dict =
        joined(cffInteger(392), Bytes{12, 38}, Bytes{139, 139, 139, 12, 7}, Bytes{150, 160, 18});
    EXPECT_EQ(Bytes::ofText(getFontDictData(viewOf(dict), kSIDs).value()),
              (Bytes{248, 36, 12, 38, 139, 139, 139, 12, 7}));
    EXPECT_EQ(getFontDictData(viewOf(joined(cffInteger(394), Bytes{12, 38})), kSIDs), std::nullopt);
}

TEST(GetPrivateDictData, LeavesSubrsOut) {
    const Bytes dict =
        joined(Bytes{140, 141, 6}, Bytes{28, 0, 9, 19}, cffReal("0.5"), Bytes{12, 9});
    EXPECT_EQ(Bytes::ofText(getPrivateDictData(viewOf(dict))),
              joined(Bytes{140, 141, 6}, cffReal("0.5"), Bytes{12, 9}));
}

} // namespace
} // namespace KWFontService_NS
