#include "support/CmapTables.h"

#include "support/FreeTypeFace.h"
#include "support/TestFont.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace KWTest {
namespace {

const CmapMap kLetters = {{'A', 2}, {'B', 3}, {'C', 4}, {'X', 6}};

/// What FreeType finds in a subtable, which stands alone in a font.
CmapMap readByFreeType(const Bytes& subtable, const CmapMap& asked) {
    TestFont font = TestFont::latin();
    font.cmap = {.records = {{.platformID = 3, .encodingID = 10, .subtable = subtable}}};
    const FreeTypeFace face(font.build());
    if (face->num_charmaps != 1)
        throw std::runtime_error("FreeType refuses the subtable");
    FT_Set_Charmap(face.get(), face->charmaps[0]);
    CmapMap found;
    for (const auto& entry : asked)
        found[entry.first] = static_cast<std::uint16_t>(face.glyphOf(entry.first));
    return found;
}

TEST(CmapFormat0, FreeTypeFindsEveryGlyph) {
    const Bytes table = CmapFormat0::of(kLetters).build();
    EXPECT_EQ(table.size(), 262u);
    EXPECT_EQ(readByFreeType(table, kLetters), kLetters);
}

TEST(CmapFormat2, FreeTypeFindsOneByteAndTwoByteCodes) {
    const CmapMap codes = {{'A', 2}, {'C', 4}, {0x8140, 3}, {0x8142, 5}, {0x9FFC, 6}};
    EXPECT_EQ(readByFreeType(CmapFormat2::of(codes).build(), codes), codes);
}

TEST(CmapFormat2, AByteCannotBeACodeAndTheFirstOfTwo) {
    EXPECT_THROW(CmapFormat2::of({{0x81, 1}, {0x8140, 2}}), std::invalid_argument);
}

TEST(CmapFormat4, FreeTypeFindsEveryGlyphBySegments) {
    const CmapFormat4 table = CmapFormat4::of(kLetters);
    EXPECT_EQ(table.segments.size(), 3u); // A to C, X, and the last one
    EXPECT_EQ(readByFreeType(table.build(), kLetters), kLetters);
}

TEST(CmapFormat4, FreeTypeFindsEveryGlyphThroughTheArray) {
    const Bytes plain = CmapFormat4::withGlyphArray(kLetters).build();
    const Bytes shifted = CmapFormat4::withGlyphArray(kLetters, -3).build();
    EXPECT_NE(plain, shifted);
    EXPECT_EQ(readByFreeType(plain, kLetters), kLetters);
    EXPECT_EQ(readByFreeType(shifted, kLetters), kLetters);
}

TEST(CmapFormat4, LengthAndSegmentCountCanLie) {
    CmapFormat4 table = CmapFormat4::of(kLetters);
    const Bytes honest = table.build();
    EXPECT_EQ(honest.u16At(2), honest.size());
    table.length = 15;
    table.segCountX2 = 0xFFFF;
    const Bytes lying = table.build();
    EXPECT_EQ(lying.u16At(2), 15);
    EXPECT_EQ(lying.u16At(6), 0xFFFF);
    EXPECT_EQ(lying.slice(14, lying.size() - 14), honest.slice(14, honest.size() - 14));
}

TEST(CmapFormat6, FreeTypeFindsEveryGlyph) {
    EXPECT_EQ(readByFreeType(CmapFormat6::of(kLetters).build(), kLetters), kLetters);
}

TEST(CmapFormat8, FreeTypeFindsShortAndLongCodes) {
    const CmapMap codes = {{'A', 2}, {'B', 3}, {0x20000, 4}};
    EXPECT_EQ(readByFreeType(CmapFormat8::of(codes).build(), codes), codes);
}

TEST(CmapFormat10, FreeTypeFindsEveryGlyph) {
    const CmapMap codes = {{0x1F600, 2}, {0x1F602, 4}};
    EXPECT_EQ(readByFreeType(CmapFormat10::of(codes).build(), codes), codes);
}

TEST(CmapFormat12, FreeTypeFindsEveryGlyph) {
    const CmapMap codes = {{'A', 2}, {'B', 3}, {0x20000, 4}};
    EXPECT_EQ(CmapFormat12::of(codes).groups.size(), 2u);
    EXPECT_EQ(readByFreeType(CmapFormat12::of(codes).build(), codes), codes);
}

TEST(CmapFormat13, AGroupSharesOneGlyph) {
    const CmapMap codes = {{0x100, 5}, {0x101, 5}, {0x102, 5}, {0x103, 6}};
    EXPECT_EQ(CmapFormat13::of(codes).groups.size(), 2u);
    EXPECT_EQ(readByFreeType(CmapFormat13::of(codes).build(), codes), codes);
}

TEST(CmapFormat14, FreeTypeFindsDefaultAndOwnGlyphsOfVariants) {
    TestFont font = TestFont::latin();
    const CmapFormat14 variants{
        .selectors = {
            {.varSelector = 0xFE00, .mappings = {{'B', TestFont::kC}}},
            {.varSelector = 0xE0100, .defaults = {{'A', 0}}, .mappings = {{'C', TestFont::kB}}}}};
    font.cmap.records.insert(font.cmap.records.begin(),
                             {.platformID = 0, .encodingID = 5, .subtable = variants.build()});
    const FreeTypeFace face(font.build());
    EXPECT_EQ(FT_Face_GetCharVariantIndex(face.get(), 'B', 0xFE00), TestFont::kC);
    EXPECT_EQ(FT_Face_GetCharVariantIndex(face.get(), 'A', 0xE0100), TestFont::kA);
    EXPECT_EQ(FT_Face_GetCharVariantIndex(face.get(), 'C', 0xE0100), TestFont::kB);
    EXPECT_EQ(FT_Face_GetCharVariantIndex(face.get(), 'A', 0xFE00), 0u);
}

TEST(Cmap, RecordsStandInTheOrderGivenAndTheirOffsetsCanLie) {
    const Bytes table =
        Cmap{.records = {{3, 1, Bytes{1, 2}}, {1, 0, Bytes{3, 4}, 0xFFFFFFFF}, {0, 3, Bytes{5, 6}}}}
            .build();
    EXPECT_EQ(table, Bytes()
                         .u16(0)
                         .u16(3)
                         .u16(3)
                         .u16(1)
                         .u32(28)
                         .u16(1)
                         .u16(0)
                         .u32(0xFFFFFFFFu)
                         .u16(0)
                         .u16(3)
                         .u32(32)
                         .bytes(Bytes{1, 2, 3, 4, 5, 6}));
}

} // namespace
} // namespace KWTest
