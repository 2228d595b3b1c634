#include "raster/DrawFixture.h"
#include "support/FontPackages.h"
#include "support/FreeTypeFace.h"

#include <gtest/gtest.h>

#include <ft2build.h>
#include FT_GLYPH_H
#include FT_OUTLINE_H

#include <cmath>
#include <limits>
#include <numbers>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using Lines = std::vector<std::string>;
using Setting = FS_GlyphBMPSetting;

class DrawTest : public testing::Test {
protected:
    bool draw(const FS_FontInfo& font, unsigned short gid, float pointSize, unsigned int dpi,
              const Setting& setting = {}) {
        error = KWError();
        return font.drawGlyph(gid, pointSize, dpi, &bitmap, setting, error);
    }
    /// What a failing call says after the common beginning.
    std::string complaint(const FS_FontInfo& font, unsigned short gid, float pointSize,
                          unsigned int dpi, const Setting& setting = {}) {
        EXPECT_FALSE(draw(font, gid, pointSize, dpi, setting));
        EXPECT_EQ(error.getCode(), FS_ERROR_GLYPH_BITMAP);
        EXPECT_FALSE(bitmap.hasBMP());
        EXPECT_EQ(bitmap.getRows(), 0U);
        const std::string text = CreatedFont::messageOf(error);
        const std::string beginning = "Cannot make raster image of glyph: ";
        EXPECT_EQ(text.substr(0, beginning.size()), beginning);
        return text.substr(beginning.size());
    }

    FS_GlyphBMP bitmap;
    KWError error;
};

const char* const kTooSmall = "Amount of pixel is less than 1px.";
const char* const kTooLarge = "Amount of pixel per line will be more than 65536.";
const char* const kBelowOnePoint = "Fontsize is less than 1pt.";
const char* const kRenderer = "Glyph renderer error.";
const char* const kInvalid = "Invalid Glyph BMP.";

// --- exact pictures: an em of 8 pixels, the usual vertical origin at round(8 * 0.88) = 7 --------

TEST_F(DrawTest, ASquareOnTheBaseline) {
    CreatedFont font(squares().build());
    ASSERT_TRUE(draw(font.info, 1, 8, 72));
    EXPECT_EQ(picture(bitmap), Lines(4, "####"));
    // Four rows above the baseline, two columns to the right; the vertical origin is seven rows
    // above the baseline in the middle of the advance.
    EXPECT_EQ(offsets(bitmap), (std::vector<int>{-4, 2, 3, -2}));
    EXPECT_EQ(error.getCode(), 0);
}

TEST_F(DrawTest, ABarWiderThanAByteHasAllItsRows) {
    CreatedFont font(squares().build());
    ASSERT_TRUE(draw(font.info, 1, 20, 72));
    EXPECT_EQ(picture(bitmap), Lines(10, "##########"));
    ASSERT_TRUE(draw(font.info, 3, 10, 72));
    EXPECT_EQ(picture(bitmap), Lines(10, "#"));
}

TEST_F(DrawTest, AGlyphBelowTheBaselineStartsOnIt) {
    CreatedFont font(squares().build());
    ASSERT_TRUE(draw(font.info, 4, 8, 72));
    EXPECT_EQ(picture(bitmap), Lines(4, "####"));
    EXPECT_EQ(offsets(bitmap), (std::vector<int>{0, 0, 7, -4}));
}

TEST_F(DrawTest, AFrameIsHollow) {
    CreatedFont font(TestFont::latin().build());
    ASSERT_TRUE(draw(font.info, TestFont::kB, 20, 72));
    ASSERT_EQ(picture(bitmap).size(), 14U);
    EXPECT_EQ(picture(bitmap)[0], "###########");
    EXPECT_EQ(picture(bitmap)[7], "##.......##");
}

TEST_F(DrawTest, ScaleStretchesTheGlyphAndTheVerticalOrigin) {
    CreatedFont font(squares().build());
    ASSERT_TRUE(draw(font.info, 1, 8, 72, {.scale = 2}));
    EXPECT_EQ(picture(bitmap), Lines(4, "########"));
    EXPECT_EQ(offsets(bitmap), (std::vector<int>{-4, 4, 14 - 4, 4 - 4}));
    ASSERT_TRUE(draw(font.info, 1, 8, 72, {.scaleVertically = true, .scale = 2}));
    EXPECT_EQ(picture(bitmap), Lines(8, "####"));
    EXPECT_EQ(offsets(bitmap), (std::vector<int>{-8, 2, 14 - 8, 2 - 4}));
}

TEST_F(DrawTest, AQuarterTurnClockwise) {
    CreatedFont font(squares().build());
    ASSERT_TRUE(draw(font.info, 3, 10, 72, {.rotationAngle = 90}));
    EXPECT_EQ(picture(bitmap), Lines{"##########"});
    ASSERT_TRUE(draw(font.info, 1, 8, 72, {.rotationAngle = 90}));
    EXPECT_EQ(picture(bitmap), Lines(4, "####"));
    // The vector from the vertical origin, 7 down and 4 back, turns to 4 up and 7 back.
    EXPECT_EQ(offsets(bitmap), (std::vector<int>{2, 0, 2 - 4, 0 - 7}));
}

TEST_F(DrawTest, SlantLeansToTheRightOrDown) {
    CreatedFont font(squares().build());
    ASSERT_TRUE(draw(font.info, 1, 8, 72, {.slantAngle = 45}));
    EXPECT_EQ(bitmap.getRows(), 4U);
    EXPECT_EQ(picture(bitmap).front().find('#'), 3U);
    EXPECT_EQ(picture(bitmap).back().find('#'), 0U);
    ASSERT_TRUE(draw(font.info, 1, 8, 72, {.slantVertically = true, .slantAngle = 45}));
    EXPECT_EQ(bitmap.getCols(), 4U);
    EXPECT_EQ(picture(bitmap).front()[0], '#');
    EXPECT_EQ(picture(bitmap).back()[0], '.');
    // The shear of the middle of the advance, 4 columns, is taken off.
    EXPECT_EQ(bitmap.getRowsOffestFromVerticalBaseLineToStartPoint(),
              7 - 4 + bitmap.getRowsOffestFromHorizontalBaseLineToStartPoint());
}

TEST_F(DrawTest, EmboldeningWidensAndMovesTheOrigin) {
    CreatedFont font(squares().build());
    ASSERT_TRUE(draw(font.info, 1, 8, 72, {.emboldenPixels = 2}));
    EXPECT_EQ(picture(bitmap), Lines(6, "######"));
    // Half the strength is one pixel; the advance loses the strength: (8 - 2) / 2 = 3.
    EXPECT_EQ(offsets(bitmap), (std::vector<int>{1 - 6, 2 - 1, 7 + 1 - 6, 2 - 1 - 3}));
}

TEST_F(DrawTest, NegativeEmboldeningThins) {
    CreatedFont font(squares().build());
    ASSERT_TRUE(draw(font.info, 1, 16, 72, {.emboldenPixels = -2}));
    EXPECT_EQ(picture(bitmap), Lines(6, "######"));
    EXPECT_EQ(offsets(bitmap)[0], -1 - 6);
}

TEST_F(DrawTest, ANonDefaultSettingThatChangesNothingDrawsTheSame) {
    CreatedFont font(squares().build());
    ASSERT_TRUE(draw(font.info, 1, 8, 72, {.rotationAngle = 360}));
    EXPECT_EQ(picture(bitmap), Lines(4, "####"));
    EXPECT_EQ(offsets(bitmap), (std::vector<int>{-4, 2, 3, -2}));
}

TEST_F(DrawTest, TheVerticalOriginComesFromVorg) {
    CreatedFont font(TestFont::vertical().build());
    ASSERT_TRUE(draw(font.info, TestFont::kBracketVertical, 10, 72));
    EXPECT_EQ(offsets(bitmap), (std::vector<int>{-2, 1, 9 - 2, 1 - 5}));
    TestFont low = TestFont::vertical();
    low.with("VORG", Vorg{.defaultVertOriginY = 500});
    CreatedFont lowFont(low.build());
    ASSERT_TRUE(draw(lowFont.info, TestFont::kBracketVertical, 10, 72));
    EXPECT_EQ(offsets(bitmap), (std::vector<int>{-2, 1, 5 - 2, 1 - 5}));
}

TEST_F(DrawTest, AGlyphOriginOfZeroGivesWayToTheDefault) {
    TestFont file = TestFont::vertical();
    file.with("VORG", Vorg{.defaultVertOriginY = 600, .origins = {{TestFont::kHiraganaA, 0}}});
    CreatedFont font(file.build());
    ASSERT_TRUE(draw(font.info, TestFont::kHiraganaA, 10, 72));
    EXPECT_EQ(offsets(bitmap)[2] - offsets(bitmap)[0], 6);
}

// --- errors, in their order ---------------------------------------------------------------------

TEST_F(DrawTest, LessThanOnePixelIsRefused) {
    CreatedFont font(squares().build());
    EXPECT_EQ(complaint(font.info, 1, 0.5F, 72), kTooSmall);
    EXPECT_EQ(complaint(font.info, 1, 12, 0), kTooSmall);
    EXPECT_EQ(complaint(font.info, 1, -12, 72), kTooSmall);
    EXPECT_EQ(complaint(font.info, 1, 8, 72, {.scale = 0.1F}), kTooSmall);
    EXPECT_EQ(complaint(font.info, 1, 8, 72, {.scale = -1}), kTooSmall);
    EXPECT_EQ(complaint(font.info, 1, 8, 72, {.emboldenPixels = -8}), kTooSmall);
    EXPECT_EQ(complaint(font.info, 1, std::numeric_limits<float>::quiet_NaN(), 72), kTooSmall);
    EXPECT_TRUE(draw(font.info, 1, 1, 72));
}

TEST_F(DrawTest, MoreThan65535PixelsAreRefused) {
    CreatedFont font(squares().build());
    EXPECT_EQ(complaint(font.info, 1, 65536, 72), kTooLarge);
    EXPECT_EQ(complaint(font.info, 1, 12, 4000000000U), kTooLarge);
    EXPECT_EQ(complaint(font.info, 1, 1000, 72, {.scale = 100}), kTooLarge);
    EXPECT_EQ(complaint(font.info, 1, 1000, 72, {.slantAngle = 90}), kTooLarge);
    EXPECT_EQ(complaint(font.info, 1, std::numeric_limits<float>::infinity(), 72), kTooLarge);
}

TEST_F(DrawTest, LessThanOnePointIsRefused) {
    CreatedFont font(squares().build());
    EXPECT_EQ(complaint(font.info, 1, 0.99F, 100), kBelowOnePoint);
    // 0.9922 * 64 = 63.5008 rounds to one point.
    EXPECT_TRUE(draw(font.info, 1, 0.9922F, 100));
}

TEST_F(DrawTest, AnEmThatASmallScaleLetsThroughIsStillTooLargeForTheRenderer) {
    CreatedFont font(squares().build());
    EXPECT_EQ(complaint(font.info, 1, 1e9F, 72, {.scale = 1e-6F}), kRenderer);
    EXPECT_TRUE(draw(font.info, 1, 1000, 72, {.scale = 0.01F}));
}

TEST_F(DrawTest, WithoutAFontTheRendererFails) {
    const FS_FontInfo none;
    EXPECT_EQ(complaint(none, 1, 12, 72), kRenderer);
    EXPECT_EQ(complaint(none, 1, 0, 72), kTooSmall);      // the size is looked at first
    EXPECT_EQ(complaint(none, 1, 0.99F, 100), kRenderer); // the font before the point size
}

TEST_F(DrawTest, AFileThatFreeTypeRefusesCannotBeDrawn) {
    CreatedFont font(squares().without("loca").build());
    EXPECT_EQ(complaint(font.info, 1, 12, 72), kRenderer);
    EXPECT_FALSE(font.info.isGlyphDrawInfoAvialable());
}

TEST_F(DrawTest, AGlyphThatIsNotThereCannotBeDrawn) {
    CreatedFont font(squares().build());
    EXPECT_EQ(complaint(font.info, 0xFFFF, 12, 72), kRenderer);
    EXPECT_EQ(complaint(font.info, 7, 12, 72), kRenderer);
}

TEST_F(DrawTest, AGlyphFarLargerThanItsEmCannotBeDrawn) {
    TestFont file = squares(16);
    file.outlines.glyphs[1] =
        SimpleGlyph{.contours = {rectangle({-16000, -16000, 16000, 16000})}}.build();
    CreatedFont font(file.build());
    EXPECT_EQ(complaint(font.info, 1, 100, 300), kRenderer);
}

TEST_F(DrawTest, AGlyphWithoutPointsIsInvalid) {
    CreatedFont font(squares().build());
    EXPECT_EQ(complaint(font.info, 2, 12, 72), kInvalid);
    EXPECT_EQ(complaint(font.info, 2, 12, 72, {.emboldenPixels = 3}), kInvalid);
}

TEST_F(DrawTest, AFailedCallLeavesAnEmptyImage) {
    CreatedFont font(squares().build());
    ASSERT_TRUE(draw(font.info, 1, 8, 72));
    EXPECT_EQ(complaint(font.info, 2, 8, 72), kInvalid);
    EXPECT_EQ(offsets(bitmap), (std::vector<int>{0, 0, 0, 0}));
}

TEST_F(DrawTest, TheFaceIsLeftWithoutATransformation) {
    CreatedFont font(squares().build());
    const Setting turned{.slantAngle = 10, .rotationAngle = 30, .scale = 2};
    FT_Face face = font.info.getFont()->getFTFace(0);
    for (const unsigned short gid :
         std::initializer_list<unsigned short>{1, 2, 0xFFFF}) { // drawn, empty, missing
        draw(font.info, gid, 8, 72, turned);
        FT_Matrix matrix{};
        FT_Get_Transform(face, &matrix, nullptr);
        EXPECT_EQ(matrix.xx, 0x10000) << gid;
        EXPECT_EQ(matrix.xy, 0) << gid;
        EXPECT_EQ(matrix.yx, 0) << gid;
        EXPECT_EQ(matrix.yy, 0x10000) << gid;
    }
    ASSERT_TRUE(draw(font.info, 1, 8, 72));
    EXPECT_EQ(picture(bitmap), Lines(4, "####"));
}

TEST_F(DrawTest, SizesDoNotCarryOverFromOneCallToTheNext) {
    CreatedFont font(squares().build());
    ASSERT_TRUE(draw(font.info, 1, 8, 72));
    ASSERT_TRUE(draw(font.info, 1, 16, 72));
    EXPECT_EQ(bitmap.getRows(), 8U);
    ASSERT_TRUE(draw(font.info, 1, 16, 144));
    EXPECT_EQ(bitmap.getRows(), 16U);
    ASSERT_TRUE(draw(font.info, 1, 8, 72));
    EXPECT_EQ(bitmap.getRows(), 4U);
}

// --- the same glyphs as FreeType draws them -----------------------------------------------------

double sine(double degrees) {
    return std::sin(degrees * std::numbers::pi / 180);
}
double cosine(double degrees) {
    return std::cos(degrees * std::numbers::pi / 180);
}

/// A glyph drawn by FreeType alone, on a face of its own that knows nothing of earlier glyphs.
Lines reference(FT_Face face, unsigned short gid, FT_F26Dot6 height, unsigned int dpi,
                const Setting& setting) {
    const auto fixed = [](double value) { return static_cast<FT_Fixed>(value * 65536); };
    FT_Matrix matrix{0x10000, 0, 0, 0x10000};
    const FT_Fixed t = fixed(sine(double{setting.slantAngle}) / cosine(double{setting.slantAngle}));
    FT_Matrix step{0x10000, setting.slantVertically ? 0 : t, setting.slantVertically ? -t : 0,
                   0x10000};
    FT_Matrix_Multiply(&step, &matrix);
    const FT_Fixed scale = fixed(double{setting.scale});
    step =
        setting.scaleVertically ? FT_Matrix{0x10000, 0, 0, scale} : FT_Matrix{scale, 0, 0, 0x10000};
    FT_Matrix_Multiply(&step, &matrix);
    const double turn = -double{setting.rotationAngle};
    step = {fixed(cosine(turn)), fixed(-sine(turn)), fixed(sine(turn)), fixed(cosine(turn))};
    FT_Matrix_Multiply(&step, &matrix);

    FT_Set_Char_Size(face, 0, height, 0, dpi);
    FT_Set_Transform(face, &matrix, nullptr);
    EXPECT_EQ(FT_Load_Glyph(face, gid, FT_LOAD_NO_BITMAP), 0);
    if (setting.emboldenPixels != 0)
        FT_Outline_Embolden(&face->glyph->outline, setting.emboldenPixels * 64);
    FT_Glyph glyph = nullptr;
    EXPECT_EQ(FT_Get_Glyph(face->glyph, &glyph), 0);
    EXPECT_EQ(FT_Glyph_To_Bitmap(&glyph, FT_RENDER_MODE_MONO, nullptr, 1), 0);
    const auto* drawn = reinterpret_cast<FT_BitmapGlyph>(glyph);
    const FT_Bitmap& bits = drawn->bitmap;
    Lines lines{std::to_string(drawn->top) + ' ' + std::to_string(drawn->left)};
    for (unsigned int y = 0; y < bits.rows; ++y) {
        std::string line;
        for (unsigned int x = 0; x < bits.width; ++x) {
            const unsigned char byte =
                bits.buffer[static_cast<int>(y) * bits.pitch + static_cast<int>(x / 8)];
            line += (byte >> (7 - x % 8) & 1) != 0 ? '#' : '.';
        }
        lines.push_back(line);
    }
    FT_Done_Glyph(glyph);
    return lines;
}

class DrawPackagedFont : public DrawTest, public testing::WithParamInterface<const char*> {};

TEST_P(DrawPackagedFont, EqualsFreeTypesOwnRendering) {
    const Bytes file = readFile(packagedFont(GetParam()));
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(fileUri(packagedFont(GetParam()))))
        << CreatedFont::messageOf(font.getError());
    const Setting settings[] = {
        {},
        {.slantAngle = 12},
        {.slantVertically = true, .slantAngle = -20},
        {.rotationAngle = 33},
        {.scale = 0.7F},
        {.scaleVertically = true, .scale = 1.6F},
        {.emboldenPixels = 3},
        {.emboldenPixels = -1},
        {.slantAngle = 8, .rotationAngle = -90, .scale = 1.2F, .emboldenPixels = 2},
    };
    int drawn = 0;
    for (const auto& [pointSize, dpi] : {std::pair{12.0F, 300U}, {9.5F, 96U}})
        for (const Setting& setting : settings)
            for (const char16_t ch : u"Agf%8\u00E9") {
                const unsigned short gid = font.getGlyphID(ch, false);
                if (ch == 0 || gid == 0xFFFF)
                    continue;
                ASSERT_TRUE(draw(font, gid, pointSize, dpi, setting))
                    << CreatedFont::messageOf(error);
                const FreeTypeFace face(file);
                Lines expected =
                    reference(face.get(), gid, std::lround(pointSize * 64), dpi, setting);
                const int half = (setting.emboldenPixels * 64 / 2) >> 6;
                Lines got = picture(bitmap);
                got.insert(got.begin(), std::to_string(half - offsets(bitmap)[0]) + ' ' +
                                            std::to_string(offsets(bitmap)[1] + half));
                EXPECT_EQ(got, expected) << "glyph " << gid << " at " << pointSize;
                ++drawn;
            }
    EXPECT_GE(drawn, 90);
}

INSTANTIATE_TEST_SUITE_P(Fonts, DrawPackagedFont,
                         testing::Values("DejaVuSans", "LiberationSans", "LMRoman10"),
                         [](const auto& font) { return std::string(font.param); });

} // namespace
} // namespace KWFontService_NS
