#include "typeset/PageContent.h"

#include <gtest/gtest.h>

using namespace typeset;

namespace {

PlacedGlyph placed(unsigned short gid, double x, double y, const char16_t* text,
                   bool joined = false) {
    return {gid, 500, x, y, text, joined};
}

/// A page of 100 points with a span of size 10, in a font where glyph 1 is "a", 2 is "b", and 3 is
/// no text.
std::string contentOf(std::vector<PlacedGlyph> glyphs, Writing writing = Writing::horizontal,
                      bool rightToLeft = false) {
    PdfFonts fonts;
    fonts[0].glyphs = {{1, {u"a", 500}}, {2, {u"b", 500}}, {3, {u"", 500}}};
    Page page;
    page.lines.push_back({20, {{0, 10, writing, rightToLeft, std::move(glyphs)}}});
    return pageContent(page, fonts, 100);
}

} // namespace

TEST(PageContent, GlyphsThatFollowTheirWidthsAreOneString) {
    EXPECT_EQ(contentOf({placed(1, 10, 20, u"a"), placed(2, 15, 20, u"b")}),
              "BT /F1 10 Tf\n1 0 0 1 10 80 Tm [<00010002>] TJ\nET\n");
}

TEST(PageContent, OtherStepsAreMovesOfThousandthsToTheLeft) {
    EXPECT_EQ(contentOf({placed(1, 10, 20, u"a"), placed(2, 14, 20, u"b")}),
              "BT /F1 10 Tf\n1 0 0 1 10 80 Tm [<0001>100<0002>] TJ\nET\n");
}

TEST(PageContent, AGlyphAboveTheLineStartsAnew) {
    EXPECT_EQ(contentOf({placed(1, 10, 20, u"a"), placed(2, 15, 18.5, u"b")}),
              "BT /F1 10 Tf\n1 0 0 1 10 80 Tm [<0001>] TJ\n1 0 0 1 15 81.5 Tm [<0002>] TJ\nET\n");
}

TEST(PageContent, UprightGlyphsAreTakenByTheMiddleOfTheirTops) {
    // The origin lies half the width to the left of that and 0.88 of the size below.
    EXPECT_EQ(
        contentOf({placed(1, 10, 28.8, u"a"), placed(2, 10, 38.8, u"b"), placed(1, 10, 49.8, u"a")},
                  Writing::upright),
        "BT /F1V 10 Tf\n1 0 0 1 12.5 80 Tm [<00010002>100<0001>] TJ\nET\n");
}

TEST(PageContent, GlyphsOnTheirSideAreTurnedToTheRight) {
    EXPECT_EQ(contentOf({placed(1, 10, 20, u"a"), placed(2, 10, 25, u"b")}, Writing::sideways),
              "BT /F1 10 Tf\n0 -1 1 0 10 80 Tm [<00010002>] TJ\nET\n");
}

TEST(PageContent, TextThatTheGlyphsDoNotGiveBackStandsBesideThem) {
    EXPECT_EQ(contentOf({placed(1, 10, 20, u"a"), placed(1, 15, 20, u"\U0001D538"),
                         placed(2, 20, 20, u"b")}),
              "BT /F1 10 Tf\n1 0 0 1 10 80 Tm [<0001>] TJ\n"
              "/Span <</ActualText <FEFFD835DD38>>> BDC\n1 0 0 1 15 80 Tm [<0001>] TJ\nEMC\n"
              "1 0 0 1 20 80 Tm [<0002>] TJ\nET\n");
}

TEST(PageContent, ThatGoesForAllGlyphsOfAClusterInTheOrderOfTheText) {
    EXPECT_EQ(contentOf({placed(2, 10, 20, u"y"), placed(1, 15, 20, u"x", true)}),
              "BT /F1 10 Tf\n/Span <</ActualText <FEFF00790078>>> BDC\n"
              "1 0 0 1 10 80 Tm [<00020001>] TJ\nEMC\nET\n");
    EXPECT_EQ(contentOf({placed(2, 10, 20, u"y"), placed(1, 15, 20, u"x", true)},
                        Writing::horizontal, true),
              "BT /F1 10 Tf\n/Span <</ActualText <FEFF00780079>>> BDC\n"
              "1 0 0 1 10 80 Tm [<00020001>] TJ\nEMC\nET\n");
    EXPECT_EQ(contentOf({placed(1, 10, 20, u"a"), placed(3, 15, 20, u"", true)}),
              "BT /F1 10 Tf\n1 0 0 1 10 80 Tm [<00010003>] TJ\nET\n");
}
