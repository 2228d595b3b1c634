#include "typeset/PsWriter.h"

#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace typeset;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

PlacedGlyph placed(unsigned short gid, double x, double y) {
    return {gid, 500, x, y, u"a", false};
}

PsFont compositeFont() {
    PsFont font;
    font.isComposite = true;
    font.names[0] = "F1";
    font.codes = {{7, 1}, {9, 0x102}};
    return font;
}

/// Two simple fonts, with a glyph in each.
PsFont simpleFont() {
    PsFont font;
    font.names = {{0, "F1-0"}, {2, "F1-2"}};
    font.codes = {{7, 0x41}, {9, 0x205}};
    return font;
}

Page pageOf(std::vector<PlacedGlyph> glyphs, Writing writing) {
    Page page;
    page.lines.push_back({20, {{0, 10, writing, false, std::move(glyphs)}}});
    return page;
}

/// The content of a page of 100 points with a span of size 10.
std::string contentOf(const PsFont& font, std::vector<PlacedGlyph> glyphs,
                      Writing writing = Writing::horizontal) {
    return psPageContent(pageOf(std::move(glyphs), writing), {{0, font}}, 100);
}

} // namespace

TEST(PsWriter, GlyphsOnOneLineAreOneStringWithTheStepsBetweenThem) {
    EXPECT_EQ(contentOf(compositeFont(), {placed(7, 10, 20), placed(9, 15.5, 20)}),
              "/F1 10 F 10 80 M\n<00010102>\n[5.5 0] X\n");
}

TEST(PsWriter, StepsAreBetweenRoundedPlacesSoThatErrorsDoNotAddUp) {
    EXPECT_EQ(contentOf(compositeFont(),
                        {placed(7, 0.0004, 20), placed(7, 1.0008, 20), placed(7, 2.0012, 20)}),
              "/F1 10 F 0 80 M\n<000100010001>\n[1.001 1 0] X\n");
}

TEST(PsWriter, AGlyphAboveTheLineStartsAnew) {
    EXPECT_EQ(contentOf(compositeFont(), {placed(7, 10, 20), placed(9, 15, 18.5)}),
              "/F1 10 F 10 80 M\n<0001>\n[0] X\n/F1 10 F 15 81.5 M\n<0102>\n[0] X\n");
}

TEST(PsWriter, AGlyphOfAnotherSimpleFontStartsAnew) {
    EXPECT_EQ(contentOf(simpleFont(), {placed(7, 10, 20), placed(9, 15, 20)}),
              "/F1-0 10 F 10 80 M\n<41>\n[0] X\n/F1-2 10 F 15 80 M\n<05>\n[0] X\n");
}

TEST(PsWriter, GlyphsOnTheirSideAreTurnedToTheRight) {
    EXPECT_EQ(contentOf(compositeFont(), {placed(7, 10, 20), placed(9, 10, 25)}, Writing::sideways),
              "/F1 10 F gsave 10 80 translate -90 rotate 0 0 M\n<00010102>\n[5 0] X grestore\n");
}

TEST(PsWriter, UprightGlyphsStandWhereTheyWerePlaced) {
    EXPECT_EQ(contentOf(compositeFont(), {placed(7, 10, 20), placed(9, 10, 30)}, Writing::upright),
              "/F1 10 F 10 80 M\n<0001>\n[0] X\n/F1 10 F 10 70 M\n<0102>\n[0] X\n");
}

TEST(PsWriter, AGlyphThatTheFontHasNoCodeForIsGlyphZero) {
    EXPECT_THAT(contentOf(compositeFont(), {placed(0, 10, 20)}), HasSubstr("<0000>"));
}

TEST(PsWriter, TheFileIsADocumentThatSaysItsPages) {
    const KWTest::TempDir folder;
    const std::string path = folder.path("a.ps").string();
    Layout layout;
    layout.pageWidth = 595.28;
    layout.pageHeight = 841.89;
    layout.pages = {pageOf({placed(7, 10, 20)}, Writing::horizontal), Page{}};
    PsFont font = compositeFont();
    font.definition = "% the font\n";
    const std::size_t size = writePs(path, layout, {{0, font}}, "A (b) \\ \u00E9");
    const std::string text = KWTest::readFile(path).str();
    EXPECT_EQ(text.size(), size);
    EXPECT_THAT(text, StartsWith("%!PS-Adobe-3.0\n%%LanguageLevel: 3\n"
                                 "%%Title: (A \\(b\\) \\\\ ?)\n%%Pages: 2\n"
                                 "%%BoundingBox: 0 0 596 842\n%%EndComments\n"));
    EXPECT_THAT(text, AllOf(HasSubstr("%%BeginSetup\n% the font\n"
                                      "<< /PageSize [595.28 841.89] >> setpagedevice\n"
                                      "%%EndSetup\n%%Page: 1 1\n/F1 10 F "),
                            EndsWith("showpage\n%%Page: 2 2\nshowpage\n%%EOF\n")));
}
