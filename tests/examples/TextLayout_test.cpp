#include "typeset/TextLayout.h"

#include "support/FontPackages.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

using namespace typeset;

namespace {

const FontFile& dejaVu() {
    static const FontFile font = openFont(KWTest::packagedFont("DejaVuSans").string());
    return font;
}

FontSet dejaVuAndLiberation() {
    return {dejaVu(), openFont(KWTest::packagedFont("LiberationSerif").string())};
}

Layout laidOut(const std::string& text, double size = 10, bool justified = true) {
    return layOut(parseDocument(text, "it"), {dejaVu()}, size, justified);
}

using Missing = decltype(Layout::missing);

std::string words(int count) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += i % 3 == 0 ? "measured " : "lines ";
    return text;
}

double rightEdge(const Line& line) {
    const PlacedGlyph& last = line.glyphs.back();
    return last.x + double{last.advance} * line.size / 1000;
}

} // namespace

TEST(TextLayout, ALineIsAsWideAsTheFontSaysTheTextIs) {
    const Layout layout = laidOut("hamburgefonts in one line");
    ASSERT_EQ(layout.lineCount(), 1U);
    const Line& line = layout.pages[0].lines[0];
    const icu::UnicodeString text(u"hamburgefonts in one line");
    double expected = dejaVu().info.getTextWidth(text, -1000, false, nullptr);
    for (std::size_t i = 1; i < line.glyphs.size(); ++i) {
        expected += dejaVu().info.getPairKerningValue(line.glyphs[i - 1].gid, line.glyphs[i].gid,
                                                      -1000, false);
    }
    EXPECT_NEAR(rightEdge(line) - line.glyphs[0].x, expected * 10 / 1000, 1e-3);
}

TEST(TextLayout, PairsAreKerned) {
    const Layout layout = laidOut("AV");
    const std::vector<PlacedGlyph>& glyphs = layout.pages[0].lines[0].glyphs;
    ASSERT_EQ(glyphs.size(), 2U);
    const double kern = glyphs[1].x - glyphs[0].x - double{glyphs[0].advance} * 10 / 1000;
    EXPECT_NEAR(kern, -131.0 / 2048 * 10, 1e-3); // the font's `kern` table has -131 units for AV
}

TEST(TextLayout, JustifiedLinesEndAtOneEdgeAndTheLastOneWhereItEnds) {
    const Layout layout = laidOut(words(100));
    const std::vector<Line>& lines = layout.pages[0].lines;
    ASSERT_GT(lines.size(), 5U);
    for (std::size_t i = 1; i + 1 < lines.size(); ++i)
        EXPECT_NEAR(rightEdge(lines[i]), rightEdge(lines[0]), 0.01);
    EXPECT_LT(rightEdge(lines.back()), rightEdge(lines[0]) - 1);
}

TEST(TextLayout, TheGapsOfAJustifiedLineAreEven) {
    const Layout layout = laidOut(words(100));
    const Line& line = layout.pages[0].lines[0];
    std::vector<double> gaps;
    for (std::size_t i = 0; i + 1 < line.glyphs.size(); ++i) {
        if (line.glyphs[i].character == U' ')
            gaps.push_back(line.glyphs[i + 1].x - line.glyphs[i].x);
    }
    ASSERT_GT(gaps.size(), 5U);
    for (const double gap : gaps)
        EXPECT_NEAR(gap, gaps[0], 1e-3);
}

TEST(TextLayout, RaggedLinesKeepTheNaturalGapsAndStayInsideTheEdge) {
    const Layout justified = laidOut(words(100));
    const Layout ragged = laidOut(words(100), 10, false);
    const double edge = rightEdge(justified.pages[0].lines[0]);
    const double blank = dejaVu().info.getTextWidth(U' ', -1000, false, nullptr) * 10 / 1000;
    for (const Line& line : ragged.pages[0].lines) {
        EXPECT_LE(rightEdge(line), edge + 1e-6);
        for (std::size_t i = 0; i + 1 < line.glyphs.size(); ++i) {
            if (line.glyphs[i].character == U' ') {
                EXPECT_NEAR(line.glyphs[i + 1].x - line.glyphs[i].x, blank, 1e-3);
            }
        }
    }
}

TEST(TextLayout, NoGlyphOfAnyLineLeavesTheMargins) {
    const Layout layout =
        laidOut("# " + words(12) + "\n\n" + std::string(400, 'W') + "\n\n" + words(60), 24);
    for (const Page& page : layout.pages) {
        for (const Line& line : page.lines) {
            EXPECT_GE(line.glyphs.front().x, 79.9);
            EXPECT_LE(rightEdge(line), layout.pageWidth - 79.9);
            EXPECT_GT(line.baseline, 70);
            EXPECT_LT(line.baseline, layout.pageHeight - 40);
        }
    }
}

TEST(TextLayout, CharactersThatTheFontLacksShowGlyphZeroAndAreCounted) {
    const Layout layout = laidOut("a\xE4\xB8\x80\xE4\xB8\x80 \xE4\xBA\x8C");
    EXPECT_EQ(layout.missing, (Missing{{{0, 0x4E00}, 2}, {{0, 0x4E8C}, 1}}));
    EXPECT_EQ(layout.pages[0].lines[0].glyphs[1].gid, 0);
    EXPECT_GT(layout.pages[0].lines[0].glyphs[1].advance, 0);
}

TEST(TextLayout, CharactersThatNeverShowTakeNoGlyphAndAreNotMissing) {
    const Layout layout = laidOut("a\xE2\x80\x8B"
                                  "b\xEF\xB8\x8F"); // U+200B, U+FE0F
    EXPECT_EQ(layout.pages[0].lines[0].glyphs.size(), 2U);
    EXPECT_TRUE(layout.missing.empty());
}

TEST(TextLayout, PagesCarryNumbersWhenThereIsMoreThanOne) {
    EXPECT_EQ(laidOut("one line").lineCount(), 1U);
    const Layout layout = laidOut(words(3000));
    ASSERT_GT(layout.pages.size(), 2U);
    EXPECT_EQ(layout.pages[1].lines.back().glyphs.size(), 1U);
    EXPECT_EQ(layout.pages[1].lines.back().glyphs[0].character, U'2');
}

TEST(TextLayout, NoLineOfAParagraphStandsAloneOnAPageAndNoHeadingAtItsFoot) {
    std::string text;
    for (int i = 0; i < 60; ++i)
        text += (i % 4 == 0 ? "## Heading\n\n" : "") + words(10 + i * 7 % 60) + "\n\n";
    const Layout layout = laidOut(text);
    ASSERT_GT(layout.pages.size(), 3U);
    const double leading = 15;
    for (const Page& page : layout.pages) {
        // The page number stands last.
        ASSERT_GT(page.lines.size(), 3U);
        const std::size_t last = page.lines.size() - 2;
        EXPECT_EQ(page.lines[last].size, 10) << "a heading at the foot of a page";
    }
    for (std::size_t i = 1; i < layout.pages.size(); ++i) {
        const std::vector<Line>& lines = layout.pages[i].lines;
        const std::vector<Line>& before = layout.pages[i - 1].lines;
        // The first line of a paragraph at the foot has the next one of it right below.
        const double above =
            before[before.size() - 2].baseline - before[before.size() - 3].baseline;
        const bool paragraphGoesOn = std::abs(above - leading) < 0.01;
        const bool alone = lines[1].baseline - lines[0].baseline > leading + 0.01 &&
                           rightEdge(lines[0]) < layout.pageWidth - 81 && lines[0].size == 10;
        EXPECT_FALSE(alone && paragraphGoesOn) << "page " << i + 1;
    }
}

TEST(TextLayout, TheLastFontSetsTheHeadingsAndTheFirstOneTheText) {
    const FontSet fonts = dejaVuAndLiberation();
    const Layout layout =
        layOut(parseDocument("# Title\n\ntext\n\n## Part\n\nmore", "it"), fonts, 10, true);
    const std::vector<Line>& lines = layout.pages[0].lines;
    ASSERT_EQ(lines.size(), 4U);
    const std::vector<std::size_t> expected{1, 0, 1, 0};
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const PlacedGlyph& first = lines[i].glyphs.front();
        const KWFontService_NS::FS_FontInfo& info = fonts[expected[i]].info;
        EXPECT_EQ(lines[i].font, expected[i]) << i;
        EXPECT_EQ(first.gid, info.getGlyphID(static_cast<int>(first.character), false)) << i;
        EXPECT_EQ(first.advance, info.getGlyphWidth(first.gid, -1000, false)) << i;
    }
}

TEST(TextLayout, PageNumbersAreSetInTheFontOfTheText) {
    const Layout layout =
        layOut(parseDocument("# " + words(1000), "it"), dejaVuAndLiberation(), 10, true);
    ASSERT_GT(layout.pages.size(), 1U);
    EXPECT_EQ(layout.pages[1].lines.front().font, 1U);
    EXPECT_EQ(layout.pages[1].lines.back().font, 0U);
}

TEST(TextLayout, CharactersAreMissingFromTheFontThatShouldShowThem) {
    // U+0531, Armenian, is in DejaVu Sans only.
    const Layout layout =
        layOut(parseDocument("# \xD4\xB1\n\n\xD4\xB1", "it"), dejaVuAndLiberation(), 10, true);
    EXPECT_EQ(layout.missing, (Missing{{{1, 0x0531}, 1}}));
}

TEST(TextLayout, TheSizeThatTheConfigurationAsksForScalesTheLineAndWhatFitsIn) {
    FontSet fonts{dejaVu()};
    const Layout plain = layOut(parseDocument(words(40), "it"), fonts, 10, true);
    fonts[0].sizeAdjust = 0.5;
    const Layout adjusted = layOut(parseDocument(words(40), "it"), fonts, 10, true);
    const Layout half = layOut(parseDocument(words(40), "it"), {dejaVu()}, 5, true);
    ASSERT_EQ(adjusted.lineCount(), half.lineCount());
    ASSERT_LT(adjusted.lineCount(), plain.lineCount());
    for (std::size_t i = 0; i < half.lineCount(); ++i) {
        EXPECT_EQ(adjusted.pages[0].lines[i].size, 5);
        EXPECT_EQ(adjusted.pages[0].lines[i].glyphs.back().x,
                  half.pages[0].lines[i].glyphs.back().x);
    }
    // The lines stay as far apart as the size of the text wants it.
    EXPECT_NEAR(adjusted.pages[0].lines[1].baseline - adjusted.pages[0].lines[0].baseline,
                plain.pages[0].lines[1].baseline - plain.pages[0].lines[0].baseline, 1e-9);
}

TEST(TextLayout, TheBaselineThatTheConfigurationAsksForMovesLinesUpByPartsOfTheirSize) {
    FontSet fonts{dejaVu()};
    const Document document = parseDocument("# Title\n\ntext", "it");
    const Layout plain = layOut(document, fonts, 10, true);
    fonts[0].baselineAdjust = 0.1;
    const Layout moved = layOut(document, fonts, 10, true);
    for (std::size_t i = 0; i < 2; ++i) {
        const Line& line = moved.pages[0].lines[i];
        EXPECT_NEAR(plain.pages[0].lines[i].baseline - line.baseline, 0.1 * line.size, 1e-9);
    }
}
