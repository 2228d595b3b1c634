#include "support/SfntBuilder.h"

#include "support/FreeTypeFace.h"
#include "support/TestFont.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace KWTest {
namespace {

TEST(SfntBuilder, HeaderDirectoryAndTablesStandAsInTheFormat) {
    const Bytes file =
        SfntBuilder().table("post", Bytes{1}).table("cvt ", Bytes{2, 3, 4, 5}).build();
    const Bytes expected = Bytes()
                               .u32(0x00010000)
                               .u16(2)  // numTables
                               .u16(32) // searchRange
                               .u16(1)  // entrySelector
                               .u16(0)  // rangeShift
                               .tag("cvt ")
                               .u32(0x02030405)
                               .u32(44)
                               .u32(4)
                               .tag("post")
                               .u32(0x01000000)
                               .u32(48)
                               .u32(1)
                               .bytes(Bytes{2, 3, 4, 5})
                               .bytes(Bytes{1, 0, 0, 0});
    EXPECT_EQ(file, expected);
}

TEST(SfntBuilder, TablesCanKeepTheGivenOrderAndGoWithoutPadding) {
    SfntBuilder font;
    font.table("post", Bytes{1}).table("cvt ", Bytes{2, 3}).inGivenOrder().unpadded();
    const Bytes file = font.build();
    EXPECT_EQ(file.slice(12, 4), Bytes().tag("post"));
    EXPECT_EQ(font.recordOffsetOf("cvt "), 28u);
    EXPECT_EQ(file.u32At(28 + 8), 45u);
    EXPECT_EQ(file.slice(44, 3), (Bytes{1, 2, 3}));
    EXPECT_EQ(file.size(), 47u);
}

TEST(SfntBuilder, ATableOfTheSameTagTakesThePlaceOfTheFirst) {
    SfntBuilder font;
    font.table("a", Bytes{1}).table("b", Bytes{2}).table("a", Bytes{3});
    EXPECT_EQ(font.tags(), (std::vector<std::string>{"a   ", "b   "}));
    EXPECT_EQ(font.get("a"), Bytes{3});
}

TEST(SfntBuilder, ADuplicateHasARecordOfItsOwnAfterTheFirst) {
    const Bytes file =
        SfntBuilder().table("a", Bytes{1}).table("b", Bytes{2}).duplicate("a", Bytes{3}).build();
    EXPECT_EQ(file.u16At(4), 3);
    EXPECT_EQ(file.slice(12, 4), file.slice(28, 4));
    EXPECT_EQ(file.u8At(file.u32At(12 + 8)), 1);
    EXPECT_EQ(file.u8At(file.u32At(28 + 8)), 3);
    EXPECT_THROW(SfntBuilder().duplicate("a", {}), std::out_of_range);
}

TEST(SfntBuilder, DropRemovesEveryTableOfTheTag) {
    SfntBuilder font;
    font.table("a", Bytes{1}).duplicate("a", Bytes{2}).drop("a");
    EXPECT_FALSE(font.has("a"));
    EXPECT_THROW(font.get("a"), std::out_of_range);
    EXPECT_EQ(font.build().u16At(4), 0);
}

TEST(SfntBuilder, ALieChangesTheRecordAndLeavesTheTableInItsPlace) {
    SfntBuilder font;
    font.table("a", Bytes{1, 2, 3, 4}).table("b", Bytes{5});
    const Bytes honest = font.build();
    const Bytes lying = font.lie("a", {.offset = 7, .length = 0xFFFFFFF0}).build();
    EXPECT_EQ(lying.u32At(12 + 4), honest.u32At(12 + 4));
    EXPECT_EQ(lying.u32At(12 + 8), 7u);
    EXPECT_EQ(lying.u32At(12 + 12), 0xFFFFFFF0u);
    EXPECT_EQ(lying.slice(28, lying.size() - 28), honest.slice(28, honest.size() - 28));
}

TEST(SfntBuilder, NumTablesCanLie) {
    EXPECT_EQ(SfntBuilder().numTables(65535).build().u16At(4), 65535);
}

TEST(SfntBuilder, TheWholeFileSumsUpToTheMagicOfCheckSumAdjustment) {
    EXPECT_EQ(tableChecksum(TestFont::latin().build()), 0xB1B0AFBAu);
    SfntBuilder kept = TestFont::latin().sfnt().keepCheckSumAdjustment();
    EXPECT_EQ(kept.build().u32At(kept.offsetOf("head") + 8), 0u);
}

TEST(SfntBuilder, AShiftedFontWorksAtThatPlaceOfALargerFile) {
    const Bytes shifted = SfntBuilder().table("a", Bytes{1}).offsetShift(100).build();
    EXPECT_EQ(shifted.u32At(12 + 8), 128u);
}

TEST(SfntCollection, FreeTypeOpensEveryFace) {
    const Bytes file =
        SfntCollection{.fonts = {TestFont::latin().sfnt(), TestFont::openType().sfnt()}}.build();
    const FreeTypeFace first(file, 0);
    const FreeTypeFace second(file, 1);
    EXPECT_EQ(first->num_faces, 2);
    EXPECT_STREQ(first->family_name, "KWTest Latin");
    EXPECT_STREQ(second->family_name, "KWTest OpenType");
    EXPECT_EQ(second.advance(TestFont::kB), 650);
}

TEST(SfntCollection, TheCountCanLieAndVersionTwoHasEmptySignatureFields) {
    EXPECT_EQ((SfntCollection{.numFonts = 9}.build()), Bytes().tag("ttcf").u32(0x00010000).u32(9));
    EXPECT_EQ(SfntCollection{.version = 0x00020000}.build(),
              Bytes().tag("ttcf").u32(0x00020000).u32(0).zero(12));
}

TEST(ResourceFile, FreeTypeOpensEveryFace) {
    ResourceFile resources;
    resources.fonts = {TestFont::latin().sfnt(), TestFont::vertical().sfnt()};
    resources.otherTypes = {"FOND"};
    const Bytes file = resources.build();
    const FreeTypeFace first(file, 0);
    const FreeTypeFace second(file, 1);
    EXPECT_EQ(first->num_faces, 2);
    EXPECT_STREQ(first->family_name, "KWTest Latin");
    EXPECT_STREQ(second->family_name, "KWTest Vertical");
    EXPECT_EQ(file.u32At(file.offsetOf("sfntType")), tagValue("sfnt"));
    EXPECT_EQ(file.u16At(file.offsetOf("sfntCount")), 1);
}

} // namespace
} // namespace KWTest
