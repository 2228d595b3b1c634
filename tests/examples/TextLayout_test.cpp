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
    return {{dejaVu(), openFont(KWTest::packagedFont("LiberationSerif").string())}, 1};
}

Layout laidOut(const std::string& text, double size = 10, bool justified = true) {
    return layOut(parseDocument(text, "it"), {{dejaVu()}}, {.size = size, .justified = justified});
}

/// The one span of a line that has one.
const Span& spanOf(const Line& line) {
    EXPECT_EQ(line.spans.size(), 1U);
    return line.spans.front();
}

const std::vector<PlacedGlyph>& glyphsOf(const Line& line) {
    return spanOf(line).glyphs;
}

using Missing = decltype(Layout::missing);

std::string words(int count) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += i % 3 == 0 ? "measured " : "lines ";
    return text;
}

double rightEdge(const Line& line) {
    const PlacedGlyph& last = glyphsOf(line).back();
    return last.x + double{last.advance} * spanOf(line).size / 1000;
}

} // namespace

TEST(TextLayout, ALineIsAsWideAsTheFontSaysTheTextIs) {
    const Layout layout = laidOut("hamburgefonts in one line");
    ASSERT_EQ(layout.lineCount(), 1U);
    const Line& line = layout.pages[0].lines[0];
    const icu::UnicodeString text(u"hamburgefonts in one line");
    double expected = dejaVu().info.getTextWidth(text, -1000, false, nullptr);
    for (std::size_t i = 1; i < glyphsOf(line).size(); ++i) {
        expected += dejaVu().info.getPairKerningValue(glyphsOf(line)[i - 1].gid,
                                                      glyphsOf(line)[i].gid, -1000, false);
    }
    EXPECT_NEAR(rightEdge(line) - glyphsOf(line)[0].x, expected * 10 / 1000, 1e-3);
}

TEST(TextLayout, PairsAreKerned) {
    const Layout layout = laidOut("AV");
    const std::vector<PlacedGlyph>& glyphs = glyphsOf(layout.pages[0].lines[0]);
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
    for (std::size_t i = 0; i + 1 < glyphsOf(line).size(); ++i) {
        if (glyphsOf(line)[i].text == u" ")
            gaps.push_back(glyphsOf(line)[i + 1].x - glyphsOf(line)[i].x);
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
        for (std::size_t i = 0; i + 1 < glyphsOf(line).size(); ++i) {
            if (glyphsOf(line)[i].text == u" ") {
                EXPECT_NEAR(glyphsOf(line)[i + 1].x - glyphsOf(line)[i].x, blank, 1e-3);
            }
        }
    }
}

TEST(TextLayout, NoGlyphOfAnyLineLeavesTheMargins) {
    const Layout layout =
        laidOut("# " + words(12) + "\n\n" + std::string(400, 'W') + "\n\n" + words(60), 24);
    for (const Page& page : layout.pages) {
        for (const Line& line : page.lines) {
            EXPECT_GE(glyphsOf(line).front().x, 79.9);
            EXPECT_LE(rightEdge(line), layout.pageWidth - 79.9);
            EXPECT_GT(line.bottom, 70);
            EXPECT_LT(line.bottom, layout.pageHeight - 40);
        }
    }
}

TEST(TextLayout, CharactersThatTheFontLacksShowGlyphZeroAndAreCounted) {
    const Layout layout = laidOut("a\xE4\xB8\x80\xE4\xB8\x80 \xE4\xBA\x8C");
    EXPECT_EQ(layout.missing, (Missing{{{0, 0x4E00}, 2}, {{0, 0x4E8C}, 1}}));
    const PlacedGlyph& missing = layout.pages[0].lines[0].spans.at(1).glyphs.at(0);
    EXPECT_EQ(missing.gid, 0);
    EXPECT_GT(missing.advance, 0);
}

TEST(TextLayout, CharactersThatNeverShowTakeNoGlyphAndAreNotMissing) {
    const Layout layout = laidOut("a\xE2\x80\x8B"
                                  "b\xEF\xB8\x8F"); // U+200B, U+FE0F
    EXPECT_EQ(glyphsOf(layout.pages[0].lines[0]).size(), 2U);
    EXPECT_TRUE(layout.missing.empty());
}

TEST(TextLayout, PagesCarryNumbersWhenThereIsMoreThanOne) {
    EXPECT_EQ(laidOut("one line").lineCount(), 1U);
    const Layout layout = laidOut(words(3000));
    ASSERT_GT(layout.pages.size(), 2U);
    EXPECT_EQ(glyphsOf(layout.pages[1].lines.back()).size(), 1U);
    EXPECT_EQ(glyphsOf(layout.pages[1].lines.back())[0].text, u"2");
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
        EXPECT_EQ(spanOf(page.lines[last]).size, 10) << "a heading at the foot of a page";
    }
    for (std::size_t i = 1; i < layout.pages.size(); ++i) {
        const std::vector<Line>& lines = layout.pages[i].lines;
        const std::vector<Line>& before = layout.pages[i - 1].lines;
        // The first line of a paragraph at the foot has the next one of it right below.
        const double above = before[before.size() - 2].bottom - before[before.size() - 3].bottom;
        const bool paragraphGoesOn = std::abs(above - leading) < 0.01;
        const bool alone = lines[1].bottom - lines[0].bottom > leading + 0.01 &&
                           rightEdge(lines[0]) < layout.pageWidth - 81 &&
                           spanOf(lines[0]).size == 10;
        EXPECT_FALSE(alone && paragraphGoesOn) << "page " << i + 1;
    }
}

TEST(TextLayout, TheLastFontSetsTheHeadingsAndTheFirstOneTheText) {
    const FontSet fonts = dejaVuAndLiberation();
    const Layout layout =
        layOut(parseDocument("# Title\n\ntext\n\n## Part\n\nmore", "it"), fonts, {.size = 10});
    const std::vector<Line>& lines = layout.pages[0].lines;
    ASSERT_EQ(lines.size(), 4U);
    const std::vector<std::size_t> expected{1, 0, 1, 0};
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const PlacedGlyph& first = glyphsOf(lines[i]).front();
        const KWFontService_NS::FS_FontInfo& info = fonts[expected[i]].info;
        EXPECT_EQ(spanOf(lines[i]).font, expected[i]) << i;
        EXPECT_EQ(first.gid, info.getGlyphID(first.text.at(0), false)) << i;
        EXPECT_EQ(first.advance, info.getGlyphWidth(first.gid, -1000, false)) << i;
    }
}

TEST(TextLayout, PageNumbersAreSetInTheFontOfTheText) {
    const Layout layout =
        layOut(parseDocument("# " + words(1000), "it"), dejaVuAndLiberation(), {.size = 10});
    ASSERT_GT(layout.pages.size(), 1U);
    EXPECT_EQ(spanOf(layout.pages[1].lines.front()).font, 1U);
    EXPECT_EQ(spanOf(layout.pages[1].lines.back()).font, 0U);
}

TEST(TextLayout, CharactersAreMissingFromTheFontThatShouldShowThem) {
    // U+0531, Armenian, is in DejaVu Sans only.
    const Layout layout =
        layOut(parseDocument("# \xD4\xB1\n\n\xD4\xB1", "it"), dejaVuAndLiberation(), {.size = 10});
    EXPECT_EQ(layout.missing, (Missing{{{1, 0x0531}, 1}}));
}

TEST(TextLayout, TheSizeThatTheConfigurationAsksForScalesTheLineAndWhatFitsIn) {
    FontSet fonts{{dejaVu()}};
    const Layout plain = layOut(parseDocument(words(40), "it"), fonts, {.size = 10});
    fonts[0].sizeAdjust = 0.5;
    const Layout adjusted = layOut(parseDocument(words(40), "it"), fonts, {.size = 10});
    const Layout half = layOut(parseDocument(words(40), "it"), {{dejaVu()}}, {.size = 5});
    ASSERT_EQ(adjusted.lineCount(), half.lineCount());
    ASSERT_LT(adjusted.lineCount(), plain.lineCount());
    for (std::size_t i = 0; i < half.lineCount(); ++i) {
        EXPECT_EQ(spanOf(adjusted.pages[0].lines[i]).size, 5);
        EXPECT_EQ(glyphsOf(adjusted.pages[0].lines[i]).back().x,
                  glyphsOf(half.pages[0].lines[i]).back().x);
    }
    // The lines stay as far apart as the size of the text wants it.
    EXPECT_NEAR(adjusted.pages[0].lines[1].bottom - adjusted.pages[0].lines[0].bottom,
                plain.pages[0].lines[1].bottom - plain.pages[0].lines[0].bottom, 1e-9);
}

TEST(TextLayout, TheBaselineThatTheConfigurationAsksForMovesLinesUpByPartsOfTheirSize) {
    FontSet fonts{{dejaVu()}};
    const Document document = parseDocument("# Title\n\ntext", "it");
    const Layout plain = layOut(document, fonts, {.size = 10});
    fonts[0].baselineAdjust = 0.1;
    const Layout moved = layOut(document, fonts, {.size = 10});
    for (std::size_t i = 0; i < 2; ++i) {
        const Span& span = spanOf(moved.pages[0].lines[i]);
        const Span& before = spanOf(plain.pages[0].lines[i]);
        EXPECT_NEAR(before.glyphs[0].y - span.glyphs[0].y, 0.1 * span.size, 1e-9);
    }
}

namespace {

std::string ideographs(int count) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += "\xE6\x97\xA5";
    return text;
}

Layout columnsOf(const std::string& text) {
    return layOut(parseDocument(text, "it"),
                  {{openFont(KWTest::packagedFont("IPAMincho").string())}},
                  {.size = 10, .columns = true});
}

} // namespace

TEST(TextLayout, ColumnsGoFromTheRightMarginToTheLeftOneAndThenBelow) {
    const Layout layout = columnsOf(ideographs(20 * 30));
    ASSERT_EQ(layout.pages.size(), 1U);
    const std::vector<Line>& columns = layout.pages[0].lines;
    ASSERT_EQ(columns.size(), 30U);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        ASSERT_EQ(glyphsOf(columns[i]).size(), 20U);
        EXPECT_GE(glyphsOf(columns[i]).front().x, 79.9);
        EXPECT_LE(glyphsOf(columns[i]).front().x + 10, layout.pageWidth - 79.9);
        EXPECT_NEAR(columns[i].bottom - glyphsOf(columns[i]).front().y, 200 - 8.8, 0.01);
    }
    EXPECT_NEAR(glyphsOf(columns[0]).front().x + 10, layout.pageWidth - 80, 1e-6);
    EXPECT_NEAR(glyphsOf(columns[0]).front().x - glyphsOf(columns[1]).front().x, 17.5, 1e-6);
    EXPECT_GT(columns[29].bottom, columns[0].bottom + 200);
}

TEST(TextLayout, ColumnsAreShorterWhereThePageEndsAndElseGoToTheNext) {
    // Columns of 300 and of 200 points leave room for 14 characters; then for none.
    const Layout layout = columnsOf("@ size 1.5\n" + ideographs(20) + "\n\n" + ideographs(20) +
                                    "\n\n" + ideographs(28) + "\n\n" + ideographs(20));
    ASSERT_EQ(layout.pages.size(), 2U);
    const std::vector<Line>& columns = layout.pages[0].lines;
    ASSERT_EQ(columns.size(), 5U); // with the page number
    EXPECT_EQ(glyphsOf(columns[0]).size(), 20U);
    EXPECT_EQ(glyphsOf(columns[1]).size(), 20U);
    EXPECT_EQ(glyphsOf(columns[2]).size(), 14U);
    EXPECT_EQ(glyphsOf(columns[3]).size(), 14U);
    EXPECT_LE(columns[3].bottom, layout.pageHeight - 84);
    EXPECT_EQ(glyphsOf(layout.pages[1].lines[0]).size(), 20U);
}

TEST(TextLayout, TextFromRightToLeftStandsAtTheRightEdge) {
    const Layout layout = laidOut("\xD8\xA8\xD8\xA8");
    EXPECT_NEAR(rightEdge(layout.pages[0].lines[0]), layout.pageWidth - 80, 1e-3);
}
