#include <KWFontService17/KWFontService.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <vector>

namespace {

//! [layout]
using namespace KWFontService_NS;

struct FreeLayout {
    void operator()(FS_GSUBGPOSInfo* layout) const { FS_FontInfo::deleteGSUBGPOSInfo(layout); }
};
using Layout = std::unique_ptr<FS_GSUBGPOSInfo, FreeLayout>;

/// @param script    as OpenType calls it, such as "arab"
/// @param language  such as "URD"; empty for the default of the script
/// @return          null when the font has no layout for the script nor for any
Layout layoutOf(const FS_FontInfo& font, const UnicodeString& script,
                const UnicodeString& language) {
    const unsigned int wanted = language.isEmpty() ? 0 : toTAG(language);
    for (const UnicodeString& name : {script, UnicodeString(u"DFLT"), UnicodeString(u"latn")}) {
        Layout layout(font.getGSUBGPOSInfo(toTAG(name), wanted));
        if (FS_FontInfo::hasGSUBInfo(layout.get()) || FS_FontInfo::hasGPOSInfo(layout.get()))
            return layout;
    }
    return nullptr;
}
//! [layout]

//! [plan]
bool isWanted(unsigned int tag, const FS_FontFeatureSettings& wishes) {
    if (const int wish = wishes.getValue(tag); wish >= 0)
        return wish != 0;
    for (const char16_t* name :
         {u"ccmp", u"locl", u"rlig", u"liga", u"calt", u"kern", u"mark", u"mkmk", u"curs"}) {
        if (tag == toTAG(name))
            return true;
    }
    return false;
}
//! [plan]

//! [substitute]
void substitute(const FS_GSUBGPOSInfo* layout, const FS_FontFeatureSettings& wishes,
                std::vector<GlyphIDPosition>& glyphs) {
    GlyphIDArray2 run;
    GlyphIDArray2 result;
    for (int i = 0; FS_FontInfo::getGSUBFeatureTag(layout, i) != 0; ++i) {
        const unsigned int tag = FS_FontInfo::getGSUBFeatureTag(layout, i);
        run.readGIDs(glyphs, true);
        if (!isWanted(tag, wishes) || !FS_FontInfo::processGSUB3(layout, i, run, result, 1))
            continue;
        std::vector<GlyphIDPosition> replaced(static_cast<std::size_t>(result.size()));
        std::size_t from = 0;
        for (std::size_t g = 0; g < replaced.size(); ++g) {
            const int index = static_cast<int>(g);
            replaced[g].setGlyphIDClassPair(result[index]);
            for (int n = result.ligaInfo(index); n > 0 && from < glyphs.size(); --n, ++from)
                replaced[g].addCorrespondLength(glyphs[from].getCorrespondLength());
        }
        glyphs = replaced;
    }
}
//! [substitute]

//! [position]
void position(const FS_FontInfo& font, const FS_GSUBGPOSInfo* layout,
              const FS_FontFeatureSettings& wishes, bool rightToLeft,
              std::vector<GlyphIDPosition>& glyphs) {
    for (GlyphIDPosition& glyph : glyphs) {
        const bool mark = glyph.getGlyphClassDef() == GlyphClassDef::Mark;
        const float width = mark ? 0.0F : font.getGlyphWidth(glyph.getGlyphID(), 0, false);
        glyph.setGlyph2(glyph.getGlyphIDClassPair(), static_cast<int>(std::lround(width)));
        glyph.setFlag(GLYPH_FLAG_LOOKUP_SKIP | GLYPH_FLAG_COMPONENT_INFO);
    }
    for (int i = 0; FS_FontInfo::getGPOSFeatureTag(layout, i) != 0; ++i) {
        const unsigned int tag = FS_FontInfo::getGPOSFeatureTag(layout, i);
        if (isWanted(tag, wishes))
            FS_FontInfo::processGPOS3(layout, i, glyphs, rightToLeft);
    }
}
//! [position]

//! [shape]
std::vector<GlyphIDPosition> shape(const FS_FontInfo& font, const UnicodeString& run,
                                   const UnicodeString& script, bool rightToLeft,
                                   const FS_FontFeatureSettings& wishes) {
    std::vector<GlyphIDPosition> glyphs;
    for (int i = 0; i < run.length(); i = run.moveIndex32(i, 1)) {
        const unsigned short gid = font.getGlyphID(run.char32At(i), false);
        glyphs.emplace_back(run.moveIndex32(i, 1) - i, 0); // how many units of text it stands for
        glyphs.back().setGlyphID(gid, font.getGlyphClassDef(gid));
    }
    const Layout layout = layoutOf(font, script, UnicodeString());
    substitute(layout.get(), wishes, glyphs);
    position(font, layout.get(), wishes, rightToLeft, glyphs);
    return glyphs;
}
//! [shape]

//! [place]
struct Place {
    unsigned short glyph;
    double x, y; // of its origin, y upwards
};

std::vector<Place> placesOf(const FS_FontInfo& font, std::vector<GlyphIDPosition> glyphs,
                            bool rightToLeft, double size) {
    if (rightToLeft)
        glyphs = {glyphs.rbegin(), glyphs.rend()};
    const double unit = size / font.getUnitsPerEm();
    double pen = 0;
    std::vector<Place> places;
    for (const GlyphIDPosition& glyph : glyphs) {
        places.push_back(
            {glyph.getGlyphID(), (pen + glyph.getMoveX1()) * unit, -glyph.getMoveY() * unit});
        pen += glyph.getMoveX();
    }
    return places;
}
//! [place]

class GuideShape : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(font.createFont(KWUri(UnicodeString(KW_GUIDE_FONT)))); }

    unsigned short glyphOf(int ch) const { return font.getGlyphID(ch, false); }

    FS_FontInfo font;
};

TEST_F(GuideShape, LigaturesStandForTheirLetters) {
    const auto glyphs = shape(font, u"office", u"latn", false, {});
    ASSERT_EQ(glyphs.size(), 4U);
    EXPECT_EQ(glyphs[1].getGlyphID(), glyphOf(0xFB03));
    EXPECT_EQ(glyphs[1].getCorrespondLength(), 3);
    EXPECT_EQ(glyphs[1].getMoveX(), font.getGlyphWidth(glyphOf(0xFB03), 0, false));
}

TEST_F(GuideShape, AWishTurnsAFeatureOff) {
    FS_FontFeatureSettings wishes;
    ASSERT_TRUE(wishes.setValue(KWCommonNS::KWValue(UnicodeString(u"\"liga\" 0, \"kern\" off"))));
    EXPECT_EQ(shape(font, u"office", u"latn", false, wishes).size(), 6U);
    const auto kerned = placesOf(font, shape(font, u"AV", u"latn", false, {}), false, 2048);
    const auto plain = placesOf(font, shape(font, u"AV", u"latn", false, wishes), false, 2048);
    EXPECT_LT(kerned[1].x, plain[1].x);
    EXPECT_EQ(plain[1].x, static_cast<double>(font.getGlyphWidth(glyphOf('A'), 0, false)));
}

TEST_F(GuideShape, MarksStandAboveTheirBases) {
    const auto glyphs = shape(font, u"\u1EA1\u0304\u0301", u"latn", false, {});
    ASSERT_EQ(glyphs.size(), 3U);
    const auto places = placesOf(font, glyphs, false, 2048);
    EXPECT_EQ(places[1].y, 0);
    EXPECT_GT(places[2].y, 300);
    EXPECT_EQ(glyphs[1].getMoveX(), 0);
}

TEST_F(GuideShape, FromRightToLeftTheLastGlyphIsTheLeftmost) {
    const auto glyphs = shape(font, u"\u05D0\u05D1", u"hebr", true, {});
    const auto places = placesOf(font, glyphs, true, 2048);
    ASSERT_EQ(places.size(), 2U);
    EXPECT_EQ(places[0].glyph, glyphOf(0x05D1));
    EXPECT_EQ(places[0].x, 0);
    EXPECT_GT(places[1].x, 0);
}

TEST_F(GuideShape, AScriptThatTheFontLacksFallsBack) {
    const Layout none(font.getGSUBGPOSInfo(toTAG(u"none"), 0));
    EXPECT_FALSE(FS_FontInfo::hasGSUBInfo(none.get()));
    EXPECT_FALSE(FS_FontInfo::hasGPOSInfo(none.get()));
    const Layout layout = layoutOf(font, u"none", UnicodeString());
    ASSERT_NE(layout, nullptr);
    EXPECT_TRUE(FS_FontInfo::hasGPOSInfo(layout.get()));
    EXPECT_EQ(layoutOf(FS_FontInfo(), u"latn", UnicodeString()), nullptr);
}

} // namespace
