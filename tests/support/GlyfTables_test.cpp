#include "support/GlyfTables.h"

#include "support/FreeTypeFace.h"
#include "support/TestFont.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace KWTest {
namespace {

TEST(SimpleGlyph, BytesAreEasyToReckon) {
    const Bytes glyph = SimpleGlyph{.contours = {triangle({10, 0, 30, 40})}}.build();
    EXPECT_EQ(glyph, Bytes()
                         .i16(1)
                         .i16(10)
                         .i16(0)
                         .i16(30)
                         .i16(40)
                         .u16(2) // last point
                         .u16(0) // no instructions
                         .bytes(Bytes{1, 1, 1})
                         .i16(10)
                         .i16(10)
                         .i16(10)
                         .i16(0)
                         .i16(40)
                         .i16(-40));
}

TEST(CompositeGlyph, FlagsFollowFromWhatIsGiven) {
    const Bytes glyph =
        CompositeGlyph{.components = {{.glyphIndex = 5, .x = -1, .y = 2, .wordArguments = false},
                                      {.glyphIndex = 6, .scale = {0.5}},
                                      {.glyphIndex = 7, .scale = {0.5, 1.0}},
                                      {.glyphIndex = 8,
                                       .scale = {1.0, 0.0, 0.0, 1.0},
                                       .extraFlags = kUseMyMetrics}}}
            .build();
    EXPECT_EQ(glyph.i16At(0), -1);
    EXPECT_EQ(glyph.slice(10, 6), (Bytes{0x00, 0x22, 0, 5, 0xFF, 2}));
    EXPECT_EQ(glyph.slice(16, 10), (Bytes{0x00, 0x2B, 0, 6, 0, 0, 0, 0, 0x20, 0x00}));
    EXPECT_EQ(glyph.u16At(26), 0x0063);
    EXPECT_EQ(glyph.u16At(38), 0x0283);
    EXPECT_EQ(glyph.size(), 54u);
}

TEST(CompositeGlyph, TheLastComponentCanPromiseAnother) {
    const CompositeGlyph endless{.components = {{.glyphIndex = 1}}, .endlessComponents = true};
    EXPECT_EQ(endless.build().u16At(10), 0x0023);
}

TEST(CompositeGlyph, AScaleOfThreeNumbersDoesNotExist) {
    EXPECT_THROW((CompositeGlyph{.components = {{.scale = {1, 1, 1}}}}.build()),
                 std::invalid_argument);
}

TEST(GlyfLoca, ShortEntriesAreHalvesAndEmptyGlyphsHaveNoLength) {
    GlyfLoca outlines;
    outlines.add(Bytes{1, 2, 3}).add().add(Bytes{4, 5});
    EXPECT_EQ(outlines.glyf(), (Bytes{1, 2, 3, 0, 4, 5}));
    EXPECT_EQ(outlines.loca(), Bytes().u16(0).u16(2).u16(2).u16(3));
}

TEST(GlyfLoca, LongEntriesCanPointToOddPlaces) {
    GlyfLoca outlines{.longLoca = true, .alignment = 1};
    outlines.add(Bytes{1, 2, 3}).add(Bytes{4});
    EXPECT_EQ(outlines.glyf(), (Bytes{1, 2, 3, 4}));
    EXPECT_EQ(outlines.loca(), Bytes().u32(0).u32(3).u32(4));
}

TEST(GlyfLoca, FreeTypeReadsAFontOfLongLoca) {
    TestFont font = TestFont::latin();
    font.outlines.longLoca = true;
    const FreeTypeFace face(font.build());
    EXPECT_EQ(face.load(TestFont::kB)->outline.n_points, 8);
}

TEST(GlyfLoca, FreeTypePlacesAndScalesComponents) {
    TestFont font = TestFont::latin();
    font.outlines.glyphs[TestFont::kAacute] = CompositeGlyph{
        .components = {{.glyphIndex = TestFont::kA, .x = 10, .scale = {0.5, -1.5}}},
        .box = {10, -1050, 310, 0}}.build();
    font.hmtx.bearings = {10}; // FreeType moves an outline from its box to its bearing
    const FreeTypeFace face(font.build());
    const FT_Outline outline = face.load(TestFont::kAacute)->outline;
    ASSERT_EQ(outline.n_points, 3);
    EXPECT_EQ(outline.points[1].x, 160);
    EXPECT_EQ(outline.points[1].y, -1050);
}

TEST(LocaOf, OffsetsMayDecrease) {
    EXPECT_EQ(locaOf({0, 8, 4}, false), Bytes().u16(0).u16(4).u16(2));
    EXPECT_EQ(locaOf({0, 8, 4}, true), Bytes().u32(0).u32(8).u32(4));
}

} // namespace
} // namespace KWTest
