#include "raster/DrawFixture.h"
#include "support/FontPackages.h"
#include "support/FreeTypeFace.h"

#include <KWFontService17/FS_GlyphDrawInfo.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using Points = std::vector<std::pair<float, float>>;

// --- outlines -----------------------------------------------------------------------------------

TEST(GlyphDrawInfo, LinesAreOnePointEach) {
    CreatedFont font(squares().build());
    FS_GlyphDrawInfo info;
    ASSERT_TRUE(font.info.getGlyphDrawInfo(1, info, false));
    ASSERT_EQ(info.contours.size(), 1U);
    EXPECT_EQ(info.contours[0].segments, (std::vector<int>{0, 0, 0, 0}));
    const Points points = info.contours[0].points;
    ASSERT_EQ(points.size(), 5U);
    EXPECT_EQ(points.front(), points.back());
    EXPECT_EQ(points.front(), (std::pair{250.0F, 0.0F}));
    EXPECT_EQ(info.outlineXMin, 250.0F);
    EXPECT_EQ(info.outlineYMin, 0.0F);
    EXPECT_EQ(info.outlineXMax, 750.0F);
    EXPECT_EQ(info.outlineYMax, 500.0F);
    EXPECT_FALSE(info.evenOddFill);
}

TEST(GlyphDrawInfo, MetricsAreInFontUnits) {
    CreatedFont font(squares().build());
    FS_GlyphDrawInfo info;
    ASSERT_TRUE(font.info.getGlyphDrawInfo(1, info, false));
    EXPECT_EQ(info.xMin, 0);
    EXPECT_EQ(info.yMin, 0);
    EXPECT_EQ(info.xMax, 650);
    EXPECT_EQ(info.yMax, 800);
    EXPECT_NEAR(info.width, 500, 6); // FreeType fits metrics to its pixels, 6.4 units wide
    EXPECT_NEAR(info.height, 500, 6);
    EXPECT_NEAR(info.horiBearingX, 250, 6);
    EXPECT_NEAR(info.horiBearingY, 500, 6);
    EXPECT_NEAR(info.horiAdvance, 1000, 6);
}

TEST(GlyphDrawInfo, CurvesKeepTheirControlPointsAndTheseCountInTheBounds) {
    CreatedFont font(unhinted(TestFont::latin()).build());
    FS_GlyphDrawInfo info;
    ASSERT_TRUE(font.info.getGlyphDrawInfo(TestFont::kC, info, false));
    ASSERT_EQ(info.contours.size(), 1U);
    EXPECT_EQ(info.contours[0].segments, (std::vector<int>{1, 1, 1, 1, 0, 0}));
    EXPECT_EQ(info.contours[0].points, (Points{{650, 600},
                                               {500, 700},
                                               {350, 700},
                                               {50, 700},
                                               {50, 350},
                                               {50, 0},
                                               {350, 0},
                                               {500, 0},
                                               {650, 100},
                                               {150, 350},
                                               {650, 600}}));
    EXPECT_EQ(info.outlineYMax, 700.0F);
}

TEST(GlyphDrawInfo, ACubicHasThreePoints) {
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(fileUri(packagedFont("LMRoman10"))));
    FS_GlyphDrawInfo info;
    ASSERT_TRUE(font.getGlyphDrawInfo(font.getGlyphID('o', false), info, false));
    ASSERT_EQ(info.contours.size(), 2U);
    for (const FS_GlyphDrawInfo::Contour& contour : info.contours) {
        std::size_t points = 1;
        for (const int kind : contour.segments) {
            EXPECT_NE(kind, FS_GlyphDrawInfo::Quadratic);
            points += static_cast<std::size_t>(kind) + 1;
        }
        EXPECT_EQ(contour.points.size(), points);
        EXPECT_TRUE(std::ranges::count(contour.segments, int{FS_GlyphDrawInfo::Cubic}) > 0);
    }
}

TEST(GlyphDrawInfo, EveryContourOfACompositeIsThere) {
    CreatedFont font(unhinted(TestFont::latin()).build());
    FS_GlyphDrawInfo info;
    ASSERT_TRUE(font.info.getGlyphDrawInfo(TestFont::kB, info, false));
    EXPECT_EQ(info.contours.size(), 2U);
    ASSERT_TRUE(font.info.getGlyphDrawInfo(TestFont::kAacute, info, false)); // replaces the first
    EXPECT_EQ(info.contours.size(), 2U);
    EXPECT_EQ(info.outlineYMax, 800.0F);
}

TEST(GlyphDrawInfo, AGlyphWithoutOutlineHasNoContours) {
    CreatedFont font(squares().build());
    FS_GlyphDrawInfo info;
    ASSERT_TRUE(font.info.getGlyphDrawInfo(1, info, false));
    ASSERT_TRUE(font.info.getGlyphDrawInfo(2, info, false));
    EXPECT_TRUE(info.contours.empty());
    EXPECT_EQ(info.outlineXMin, 0.0F);
    EXPECT_EQ(info.outlineXMax, 0.0F);
    EXPECT_NEAR(info.horiAdvance, 1000, 6);
}

TEST(GlyphDrawInfo, AnEmIsSizedFinelyAndEvenly) {
    struct Row {
        std::uint16_t unitsPerEm;
        FT_Fixed unit;
    };
    for (const Row& row :
         {Row{1000, 10}, Row{256, 16}, Row{2048, 10}, Row{300, 12}, Row{16, 256}}) {
        CreatedFont font(squares(row.unitsPerEm).build());
        FS_GlyphDrawInfo info;
        ASSERT_TRUE(font.info.getGlyphDrawInfo(1, info, false));
        const FT_Face face = font.info.getFont()->getFTFace(0);
        EXPECT_EQ(face->size->metrics.y_scale, row.unit << 16) << row.unitsPerEm;
        EXPECT_EQ(info.outlineXMax, row.unitsPerEm * 750 / 1000) << row.unitsPerEm;
    }
}

TEST(GlyphDrawInfo, FailsWithoutAGlyphAFaceOrAFont) {
    FS_GlyphDrawInfo info;
    CreatedFont font(squares().build());
    EXPECT_TRUE(font.info.isGlyphDrawInfoAvialable());
    EXPECT_FALSE(font.info.getGlyphDrawInfo(99, info, false));
    EXPECT_FALSE(font.info.getGlyphDrawInfo(0xFFFF, info, true));
    CreatedFont broken(squares().without("loca").build());
    EXPECT_FALSE(broken.info.isGlyphDrawInfoAvialable());
    EXPECT_FALSE(broken.info.getGlyphDrawInfo(1, info, false));
    EXPECT_FALSE(FS_FontInfo().getGlyphDrawInfo(1, info, false));
    EXPECT_FALSE(FS_FontInfo().isGlyphDrawInfoAvialable());
}

TEST(GlyphDrawInfo, ADrawnSizeDoesNotDisturbIt) {
    CreatedFont font(squares().build());
    FS_GlyphDrawInfo before;
    ASSERT_TRUE(font.info.getGlyphDrawInfo(1, before, false));
    FS_GlyphBMP bitmap;
    KWError error;
    ASSERT_TRUE(font.info.drawGlyph(1, 20, 72, &bitmap, {.rotationAngle = 30}, error));
    FS_GlyphDrawInfo after;
    ASSERT_TRUE(font.info.getGlyphDrawInfo(1, after, false));
    EXPECT_EQ(after.contours[0].points, before.contours[0].points);
    EXPECT_EQ(after.horiAdvance, before.horiAdvance);
}

TEST(GlyphDrawInfo, MetricsAndPointsAreFreeTypesOwnDividedTowardZero) {
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(fileUri(packagedFont("DejaVuSans"))));
    const FreeTypeFace face(readFile(packagedFont("DejaVuSans")));
    constexpr int kUnit = 10; // of an em of 2048
    ASSERT_EQ(face->units_per_EM, 2048);
    ASSERT_EQ(FT_Set_Char_Size(face.get(), 0, 2048 * kUnit, 0, 0), 0);
    const auto units = [](FT_Pos value) {
        return static_cast<int>(std::trunc(static_cast<double>(value) / kUnit));
    };
    bool negative = false;
    for (const char16_t ch : std::u16string_view(u"Ajg,\u00C5"))
        for (const bool vertical : {false, true}) {
            const unsigned short gid = font.getGlyphID(ch, false);
            FS_GlyphDrawInfo info;
            ASSERT_TRUE(font.getGlyphDrawInfo(gid, info, vertical));
            ASSERT_EQ(FT_Load_Glyph(face.get(), gid,
                                    vertical ? FT_LOAD_VERTICAL_LAYOUT : FT_LOAD_DEFAULT),
                      0);
            const FT_GlyphSlot slot = face->glyph;
            const FT_Glyph_Metrics& metrics = slot->metrics;
            EXPECT_EQ(info.xMin, face->bbox.xMin);
            EXPECT_EQ(info.yMin, face->bbox.yMin);
            EXPECT_EQ(info.xMax, face->bbox.xMax);
            EXPECT_EQ(info.yMax, face->bbox.yMax);
            EXPECT_EQ(info.width, units(metrics.width)) << gid;
            EXPECT_EQ(info.height, units(metrics.height)) << gid;
            EXPECT_EQ(info.horiBearingX, units(metrics.horiBearingX)) << gid;
            EXPECT_EQ(info.horiBearingY, units(metrics.horiBearingY)) << gid;
            EXPECT_EQ(info.horiAdvance, units(metrics.horiAdvance)) << gid;
            EXPECT_EQ(info.vertBearingX, units(metrics.vertBearingX)) << gid;
            EXPECT_EQ(info.vertBearingY, units(metrics.vertBearingY)) << gid;
            EXPECT_EQ(info.vertAdvance, units(metrics.vertAdvance)) << gid;
            negative = negative || (metrics.horiBearingX < 0 && metrics.horiBearingX % kUnit != 0);
            ASSERT_EQ(info.contours.size(), static_cast<std::size_t>(slot->outline.n_contours));
            const FT_Vector first = slot->outline.points[0];
            EXPECT_EQ(info.contours[0].points[0], (std::pair{static_cast<float>(first.x) / kUnit,
                                                             static_cast<float>(first.y) / kUnit}));
        }
    EXPECT_TRUE(negative); // the division has something to truncate
}

TEST(GlyphDrawInfo, VerticalMetricsComeFromVmtx) {
    TestFont file = unhinted(TestFont::vertical());
    file.with("vmtx", Vmtx{.metrics = {{1000, 0}, {500, 0}, {640, 128}, {1000, 0}, {1000, 0}}});
    CreatedFont font(file.build());
    FS_GlyphDrawInfo info;
    ASSERT_TRUE(font.info.getGlyphDrawInfo(TestFont::kHiraganaA, info, true));
    EXPECT_NEAR(info.vertAdvance, 640, 6);
    EXPECT_NEAR(info.vertBearingY, 128, 6);
}

// --- vertical origins ---------------------------------------------------------------------------

/// A font with `vmtx` and vertical forms but no `VORG`: ascender 880, top of the face 800.
TestFont withoutVorg(std::uint16_t advance, std::int16_t topBearing) {
    TestFont file = unhinted(TestFont::vertical());
    file.without("VORG");
    file.head.yMax = 800;
    file.os2.usWinAscent = 1500;
    file.os2.usWinDescent = 500;
    const LongMetric metric{advance, topBearing};
    file.with("vmtx", Vmtx{.metrics = {metric, metric, metric, metric, metric}});
    return file;
}

TEST(VertOrigin, VorgAnswersFirst) {
    CreatedFont font(TestFont::vertical().build());
    EXPECT_EQ(font.info.getGlyphVertOriginY(TestFont::kBracketVertical, 0), 900.0F);
    EXPECT_EQ(font.info.getGlyphVertOriginY(TestFont::kBracketVertical, -500), 450.0F);
    EXPECT_EQ(font.info.getGlyphVertOriginY(TestFont::kBracket, 0), 880.0F);
}

TEST(VertOrigin, WithoutVerticalMetricsItIsZero) {
    CreatedFont font(TestFont::latin().build());
    EXPECT_EQ(font.info.getGlyphVertOriginY(TestFont::kA, 0), 0.0F);
    EXPECT_EQ(font.info.getGlyphVertOriginY(TestFont::kA, -1000), 0.0F);
    EXPECT_EQ(FS_FontInfo().getGlyphVertOriginY(1, -1000), 0.0F);
}

TEST(VertOrigin, TheOutlineAnswersForANarrowGlyphWithoutVorg) {
    // The vertical bracket reaches from -100 to 200; with a bearing of 96 its origin lies at 296.
    CreatedFont font(withoutVorg(512, 96).build());
    const unsigned short gid = TestFont::kBracketVertical;
    const float shift = font.info.getGlyphVertOriginY(gid, 0);
    EXPECT_NEAR(shift, 296, 4);
    EXPECT_FLOAT_EQ(font.info.getGlyphVertOriginY(gid, -500), shift / 2);
    // A positive size counts as the em here, not as the height of the win metrics.
    EXPECT_FLOAT_EQ(font.info.getGlyphVertOriginY(gid, 500), shift / 2);
}

TEST(VertOrigin, GlyphsAsHighAsTheEmNeedNoAdjusting) {
    const auto originWithAdvance = [](std::uint16_t advance) {
        TestFont file = withoutVorg(advance, 96);
        file.head.yMax = 1500; // the outline starts below such an advance all the same
        CreatedFont font(file.build());
        return font.info.getGlyphVertOriginY(TestFont::kBracketVertical, 0);
    };
    EXPECT_NEAR(originWithAdvance(999), 296, 4);
    EXPECT_EQ(originWithAdvance(1000), 0.0F);
    EXPECT_EQ(originWithAdvance(1200), 0.0F);
}

TEST(VertOrigin, AnOriginAtTheAscenderNeedsNoAdjusting) {
    const auto originUnder = [](std::int16_t ascender) {
        TestFont file = withoutVorg(512, 672); // a whole number of FreeType's pixels
        file.hhea.ascender = ascender;
        CreatedFont font(file.build());
        return font.info.getGlyphVertOriginY(TestFont::kBracketVertical, 0);
    };
    EXPECT_EQ(originUnder(200 + 672), 0.0F);
    EXPECT_EQ(originUnder(200 + 672 + 1), 872.0F);
}

TEST(VertOrigin, AnOutlineThatStaysInsideItsAdvanceNeedsNoAdjusting) {
    // The bracket starts at 200, the advance reaches down to 800 - 700 = 100.
    CreatedFont font(withoutVorg(700, 16).build());
    EXPECT_EQ(font.info.getGlyphVertOriginY(TestFont::kBracket, 0), 0.0F);
}

TEST(VertOrigin, AnOriginAboveTheAscenderNeedsNoAdjusting) {
    CreatedFont font(withoutVorg(512, 768).build());
    EXPECT_EQ(font.info.getGlyphVertOriginY(TestFont::kBracketVertical, 0), 0.0F);
}

TEST(VertOrigin, ItMovesTheDrawnGlyph) {
    CreatedFont font(withoutVorg(512, 96).build());
    FS_GlyphBMP bitmap;
    KWError error;
    ASSERT_TRUE(font.info.drawGlyph(TestFont::kBracketVertical, 20, 72, &bitmap, {}, error));
    EXPECT_EQ(offsets(bitmap)[2] - offsets(bitmap)[0], 6); // round(0.296 * 20)
}

TEST(VertOrigin, ACopyKeepsAnsweringAfterTheFirstIsGone) {
    CreatedFont font(withoutVorg(512, 96).build());
    FS_FontInfo copy;
    {
        const FS_FontInfo first = font.info;
        EXPECT_NE(first.getGlyphVertOriginY(TestFont::kBracketVertical, 0), 0.0F);
        copy = first;
    }
    EXPECT_EQ(copy.getGlyphVertOriginY(TestFont::kBracketVertical, 0),
              font.info.getGlyphVertOriginY(TestFont::kBracketVertical, 0));
}

} // namespace
} // namespace KWFontService_NS
