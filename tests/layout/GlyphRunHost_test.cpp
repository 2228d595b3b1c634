#include <KWFontService17/KWFontService.h>

#include <gtest/gtest.h>

#include <vector>

// What a host does between characters and glyphs, linked to nothing but the shared library.

namespace {

using namespace KWFontService_NS;

TEST(GlyphRunHost, CarriesGlyphsThroughARunAndBack) {
    std::vector<GlyphIDPosition> positions(3, GlyphIDPosition(1, 500));
    positions[0].setGlyph(40, GlyphClassDef::Base, 600);
    positions[1].setGlyph(41, GlyphClassDef::Base, 300);
    positions[2].ignoreGlyph();
    GlyphIDArray2 run;
    ASSERT_EQ(run.readGIDs(positions, false), 2);
    GlyphIDArray plain;
    EXPECT_EQ(plain.readGIDs(positions, true), 2);
    EXPECT_EQ(plain, run.glyphs());

    // As a ligature of the two would leave them.
    run[0] = GlyphIDClassPair(90, GlyphClassDef::Ligature);
    run.erase(1, 2);
    run.words() = {2};
    positions[0].setGlyph2(run[0], 880);
    positions[0].setCorrespondLength(run.ligaInfo(0));
    positions[0].setSkipInfo(run.skipInfo(0));
    EXPECT_EQ(positions[0].getGlyphID(), 90);
    EXPECT_EQ(positions[0].getCorrespondLength(), 2);
    EXPECT_EQ(positions[0].getMoveX(), 880);
}

TEST(GlyphRunHost, MasksGlyphsByTheWords) {
    GlyphIDArray2 run(3);
    run.words()[1] = 1;
    EXPECT_EQ(run.ligaInfo(1), 1);
    const GlyphIDArray2 copy = run;
    run.clear();
    EXPECT_EQ(copy.size(), 3);
    EXPECT_FALSE(FS_FontInfo::processMorx(nullptr, copy.glyphs(), run.glyphs()));
}

TEST(GlyphRunHost, AsksForFeatures) {
    FS_FontFeatureSettings settings;
    EXPECT_TRUE(settings.setValue(u"liga", 0));
    EXPECT_TRUE(settings.setValue(KWCommonNS::KWValue(UnicodeString(u"smcp, swsh 2"))));
    EXPECT_EQ(settings.getValue(toTAG(u"swsh")), 2);
    EXPECT_EQ(settings.getValue(toTAG(u"kern")), -1);
    EXPECT_EQ(settings.getFeatures().size(), 3U);
}

} // namespace
