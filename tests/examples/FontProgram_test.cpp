#include "typeset/FontProgram.h"

#include "typeset/FontFile.h"
#include "typeset/FontSet.h"

#include "support/FontPackages.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace typeset;
using namespace KWTest;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::StartsWith;
using Kind = FontProgram::Kind;

namespace {

FontFile open(const std::filesystem::path& file) {
    return openFont(file.string());
}

/// A member of a collection, which a file name alone does not open.
FontFile openMember() {
    static const TempDir folder;
    static const std::string config =
        folder
            .write("fonts.xml", "<font-config windows-registry=\"disable\"><font-folder path=\"" +
                                    packagedFont("NotoSansCJK").parent_path().string() +
                                    "\"/></font-config>")
            .string();
    static const std::vector<std::string> notes = openService(config);
    EXPECT_THAT(notes, IsEmpty());
    return findFont({"Noto Sans CJK JP"}).value();
}

UsedGlyphs glyphsOf(const FontFile& font, const std::u16string& text) {
    UsedGlyphs glyphs{{0, {}}};
    for (const char16_t character : text)
        glyphs[font.info.getGlyphID(character, false)] = {{character}, 0};
    return glyphs;
}

UsedGlyphs firstGlyphs(int count) {
    UsedGlyphs glyphs;
    for (int gid = 0; gid < count; ++gid)
        glyphs[static_cast<unsigned short>(gid)] = {};
    return glyphs;
}

/// A program of all glyphs, made in these parts.
FontProgram joined(const FontFile& font, const std::vector<UsedGlyphs>& parts) {
    UsedGlyphs all;
    for (const UsedGlyphs& part : parts)
        all.insert(part.begin(), part.end());
    return makeFontProgram(font, all, true, false, parts);
}

} // namespace

TEST(FontProgram, OfATrueTypeFontKeepsTheGlyphIds) {
    const FontFile font = open(packagedFont("DejaVuSans"));
    const FontProgram program = makeFontProgram(font, glyphsOf(font, u"AB"), true, false);
    EXPECT_EQ(program.kind, Kind::trueType);
    EXPECT_FALSE(program.isSimple());
    EXPECT_EQ(program.codeOf(36), 36);
}

TEST(FontProgram, OfANameKeyedFontHasNamesForOneByteCodes) {
    const FontFile font = open(packagedFont("LinLibertine"));
    const FontProgram program = makeFontProgram(font, glyphsOf(font, u"BA\u00C7"), true, false);
    EXPECT_EQ(program.kind, Kind::named);
    EXPECT_TRUE(program.isSimple());
    ASSERT_EQ(program.parts.size(), 1U);
    EXPECT_THAT(program.parts.at(0).names,
                ElementsAre(Pair(0, ".notdef"), Pair(1, "A"), Pair(2, "B"), Pair(3, "Ccedilla")));
    EXPECT_EQ(program.codeOf(font.info.getGlyphID('B', false)), 2);
    EXPECT_EQ(program.italicAngle, 0);
}

TEST(FontProgram, OfANameKeyedFontTellsItsSlope) {
    const FontFile font = open(packagedFont("LinLibertine").parent_path() / "LinLibertine_RI.otf");
    EXPECT_EQ(makeFontProgram(font, glyphsOf(font, u"A"), true, false).italicAngle, -12);
}

TEST(FontProgram, OfMoreGlyphsThanAByteTellsApartIsAnSfntWithTheGlyphIds) {
    const FontFile font = open(packagedFont("LinLibertine"));
    EXPECT_EQ(makeFontProgram(font, firstGlyphs(256), true, false).kind, Kind::named);
    const FontProgram program = makeFontProgram(font, firstGlyphs(257), true, false);
    EXPECT_EQ(program.kind, Kind::openType);
    EXPECT_THAT(program.bytes, StartsWith("OTTO"));
    EXPECT_EQ(program.codeOf(200), 200);
    EXPECT_EQ(makeFontProgram(font, firstGlyphs(257), false, false).kind, Kind::cff);
}

TEST(FontProgram, OfColumnsHasCodesOfTwoBytes) {
    const FontFile font = open(packagedFont("LinLibertine"));
    EXPECT_EQ(makeFontProgram(font, glyphsOf(font, u"A"), true, true).kind, Kind::openType);
}

TEST(FontProgram, OfACidKeyedFontHasTheGlyphIdsForCids) {
    const FontFile font = openMember();
    const UsedGlyphs glyphs = glyphsOf(font, u"\u65E5\u672C");
    const FontProgram program = makeFontProgram(font, glyphs, true, true);
    EXPECT_EQ(program.kind, Kind::cff);
    EXPECT_EQ(program.system.ordering, "Identity");
    for (const auto& [gid, glyph] : glyphs)
        EXPECT_EQ(program.codeOf(gid), gid);
}

TEST(FontProgram, OfAWholeMemberOfACollectionIsAnSfntWithTheFontsOwnCids) {
    const FontFile font = openMember();
    const UsedGlyphs glyphs = glyphsOf(font, u"\u65E5\u672C");
    const FontProgram program = makeFontProgram(font, glyphs, false, true);
    EXPECT_EQ(program.kind, Kind::openType);
    EXPECT_EQ(program.codes.size(), glyphs.size());
    EXPECT_EQ(program.codeOf(0), 0);
    for (const auto& [gid, glyph] : glyphs) {
        if (gid != 0) {
            EXPECT_EQ(font.info.getGlyphIDfromCID(program.codeOf(gid)), gid);
        }
    }
}

TEST(FontProgram, IsJoinedOfTheSubsetsOfParts) {
    const FontFile withCids = openMember(); // opens the service, so before all others
    const FontFile trueType = open(packagedFont("DejaVuSans"));
    const FontProgram sfnt =
        joined(trueType, {glyphsOf(trueType, u"AB"), glyphsOf(trueType, u"BC")});
    EXPECT_EQ(sfnt.kind, Kind::trueType);
    EXPECT_EQ(sfnt.joinedOf.size(), 2U);
    EXPECT_NE(sfnt.bytes, makeFontProgram(trueType, glyphsOf(trueType, u"ABC"), true, false).bytes);

    const FontFile withNames = open(packagedFont("LinLibertine"));
    const FontProgram names =
        joined(withNames, {glyphsOf(withNames, u"A"), glyphsOf(withNames, u"B")});
    EXPECT_EQ(names.kind, Kind::named);
    EXPECT_EQ(names.joinedOf.size(), 2U);
    EXPECT_THAT(names.parts.at(0).names,
                ElementsAre(Pair(0, ".notdef"), Pair(1, "A"), Pair(2, "B")));

    const FontProgram cids =
        joined(withCids, {glyphsOf(withCids, u"\u65E5"), glyphsOf(withCids, u"\u672C")});
    EXPECT_EQ(cids.kind, Kind::cff);
    EXPECT_EQ(cids.joinedOf.size(), 2U);
}

TEST(FontProgram, OfOnePartIsOneSubset) {
    const FontFile font = open(packagedFont("DejaVuSans"));
    const UsedGlyphs glyphs = glyphsOf(font, u"AB");
    const FontProgram program = joined(font, {glyphs, {}});
    EXPECT_TRUE(program.joinedOf.empty());
    EXPECT_EQ(program.bytes, makeFontProgram(font, glyphs, true, false).bytes);
}

TEST(FontProgram, OfPartsThatCannotBeJoinedIsOneSubset) {
    // A run of more than 256 CIDs in one of them.
    const FontFile font = openMember();
    const FontProgram program = joined(font, {firstGlyphs(400), glyphsOf(font, u"\u65E5")});
    EXPECT_EQ(program.kind, Kind::cff);
    EXPECT_TRUE(program.joinedOf.empty());
}
