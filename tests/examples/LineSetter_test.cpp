#include "typeset/LineSetter.h"

#include "support/FontPackages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace typeset;

namespace {

/// DejaVu Sans, which has Arabic, and IPA Mincho. The lines have a size of 20.48, so that a unit of
/// either font is a hundredth of a point.
const FontSet& fonts() {
    static const FontSet set{{openFont(KWTest::packagedFont("DejaVuSans").string()),
                              openFont(KWTest::packagedFont("IPAMincho").string())},
                             0,
                             1};
    return set;
}
constexpr double kSize = 20.48;
constexpr double kMeasure = 400;

Line lineOf(const icu::UnicodeString& text, bool columns = false, bool justified = false) {
    ParagraphStyle style;
    style.columns = columns;
    const Paragraph paragraph = ParagraphShaper(fonts()).shape(text, style);
    return setLine(paragraph, fonts(), 0, paragraph.boxes.size(),
                   {0, kSize, 100, 50, kMeasure, justified});
}

std::u16string textOf(const Span& span) {
    std::u16string text;
    for (const PlacedGlyph& glyph : span.glyphs)
        text += glyph.text;
    return text;
}

double widthOf(char32_t character, std::size_t font = 0) {
    const KWFontService_NS::FS_FontInfo& info = fonts()[font].info;
    const auto code = static_cast<int>(character);
    return double{info.getGlyphWidth(info.getGlyphID(code, false), 0, false)} / 100;
}

} // namespace

TEST(LineSetter, GlyphsStandSideBySideOnTheBaseline) {
    const Line line = lineOf(u"nm");
    ASSERT_EQ(line.spans.size(), 1U);
    const std::vector<PlacedGlyph>& glyphs = line.spans[0].glyphs;
    ASSERT_EQ(glyphs.size(), 2U);
    EXPECT_DOUBLE_EQ(glyphs[0].x, 100);
    EXPECT_NEAR(glyphs[1].x, 100 + widthOf('n'), 1e-9);
    EXPECT_DOUBLE_EQ(glyphs[1].y, 50);
    EXPECT_DOUBLE_EQ(line.bottom, 50);
    EXPECT_EQ(line.spans[0].size, kSize);
}

TEST(LineSetter, FontsAndDirectionsMakeSpansInVisualOrder) {
    // In a line from left to right: "ab", then beh and teh from right to left, then a sign that
    // only the other font has.
    const Line line = lineOf(u"ab \u0628\u062A \u3042");
    ASSERT_EQ(line.spans.size(), 4U);
    EXPECT_EQ(textOf(line.spans[0]), u"ab ");
    EXPECT_EQ(textOf(line.spans[1]), u"\u062A\u0628");
    EXPECT_TRUE(line.spans[1].rightToLeft);
    EXPECT_EQ(textOf(line.spans[2]), u" ");
    EXPECT_EQ(textOf(line.spans[3]), u"\u3042");
    EXPECT_EQ(line.spans[3].font, 1U);
    double x = 0;
    for (const Span& span : line.spans) {
        for (const PlacedGlyph& glyph : span.glyphs) {
            EXPECT_GT(glyph.x, x);
            x = glyph.x;
        }
    }
}

TEST(LineSetter, ALineFromRightToLeftEndsAtTheRightEdge) {
    const Line line = lineOf(u"\u0628 ab");
    ASSERT_EQ(line.spans.size(), 2U);
    EXPECT_EQ(textOf(line.spans[0]), u"ab");
    const PlacedGlyph& last = line.spans[1].glyphs.back();
    EXPECT_EQ(last.text, u"\u0628");
    EXPECT_NEAR(last.x + double{last.advance} * kSize / 1000, 100 + kMeasure, 1e-3);
}

TEST(LineSetter, AMarkStandsAtItsAnchorAndBelongsToItsBase) {
    const Line line = lineOf(u"x\u030Cx");
    const std::vector<PlacedGlyph>& glyphs = line.spans.at(0).glyphs;
    ASSERT_EQ(glyphs.size(), 3U);
    EXPECT_TRUE(glyphs[1].joined);
    EXPECT_EQ(glyphs[1].text, u"\u030C");
    EXPECT_NEAR(glyphs[2].x, 100 + widthOf('x'), 1e-9);
    // From right to left it is drawn before its base.
    const Line arabic = lineOf(u"\u0628\u064E");
    ASSERT_EQ(arabic.spans.at(0).glyphs.size(), 2U);
    EXPECT_EQ(arabic.spans[0].glyphs[0].text, u"\u064E");
    EXPECT_TRUE(arabic.spans[0].glyphs[1].joined);
    EXPECT_NE(arabic.spans[0].glyphs[0].y, 50) << "the beh is low, and the fatha comes down to it";
}

TEST(LineSetter, InAColumnGlyphsStandBelowEachOtherAroundItsMiddle) {
    const Line line = lineOf(u"\u3042\u65E5", true);
    ASSERT_EQ(line.spans.size(), 2U); // two scripts
    const PlacedGlyph& first = line.spans[0].glyphs.at(0);
    const PlacedGlyph& second = line.spans[1].glyphs.at(0);
    EXPECT_EQ(line.spans[0].writing, Writing::upright);
    EXPECT_NEAR(first.x, 100 - kSize / 2, 1e-9);
    EXPECT_NEAR(first.y, 50 + 0.88 * kSize, 0.01);
    EXPECT_NEAR(second.y - first.y, kSize, 1e-9);
    EXPECT_NEAR(line.bottom, 50 + 2 * kSize, 1e-9);
}

TEST(LineSetter, WhatLiesOnItsSideRunsDownTheColumnWithTheMiddleOfItsEmOnIt) {
    const Line line = lineOf(u"nm", true);
    ASSERT_EQ(line.spans.size(), 1U);
    const std::vector<PlacedGlyph>& glyphs = line.spans[0].glyphs;
    EXPECT_EQ(line.spans[0].writing, Writing::sideways);
    EXPECT_DOUBLE_EQ(glyphs[0].y, 50);
    EXPECT_NEAR(glyphs[1].y, 50 + widthOf('n'), 1e-9);
    const double ascender = double{fonts()[0].info.getTypoAscender()};
    EXPECT_NEAR(glyphs[0].x, 100 - (ascender - 0.5) * kSize, 1e-6);
}

TEST(LineSetter, AJustifiedColumnWithoutBlanksSpreadsItsCharactersALittle) {
    icu::UnicodeString text;
    for (int i = 0; i < 19; ++i)
        text += u'\u3042';
    const Line loose = lineOf(text, true, true);
    const std::vector<PlacedGlyph>& glyphs = loose.spans.at(0).glyphs;
    const double slack = kMeasure - 19 * kSize;
    EXPECT_NEAR(glyphs[1].y - glyphs[0].y, kSize + slack / 18, 1e-3);
    // Too much to spread: the column stays short.
    const Line brief = lineOf(u"\u3042\u3042", true, true);
    EXPECT_NEAR(brief.spans.at(0).glyphs[1].y - brief.spans[0].glyphs[0].y, kSize, 1e-9);
}
