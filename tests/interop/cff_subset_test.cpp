// Subsets of packaged fonts with `CFF ` outlines, read by others: FreeType, fontTools and OpenType
// Sanitizer.

#include "CffSubsetFixture.h"
#include "fonts/FontTyping.h"
#include "support/CffTable.h"

#include <algorithm>

namespace KWFontService_NS {
namespace {

TEST_P(CffSubsetOf, PackedHasTheSourcesOutlinesAndWidthsForFreeType) {
    for (const Glyphs& glyphs : randomLists()) {
        const Bytes subset = table_->renumbered(glyphs);
        const FreeTypeFace cut(subset);
        EXPECT_LT(subset.size(), table_->bytes().size());
        for (const auto& [gid, place] :
             placesIn(subset, static_cast<unsigned>(cut->num_glyphs), glyphs))
            expectSameOutline(*face_, cut, sourceIndex(gid), packedIndex(gid, place));
    }
}

TEST_P(CffSubsetOf, PackedWithEveryGlyphHasThemAll) {
    const Glyphs all = everyGlyph();
    const Bytes subset = table_->renumbered(all);
    const FreeTypeFace cut(subset);
    ASSERT_EQ(cut->num_glyphs, (*face_)->num_glyphs);
    for (const auto& [gid, place] : placesIn(subset, static_cast<unsigned>(cut->num_glyphs), all)) {
        expectSameOutline(*face_, cut, sourceIndex(gid), packedIndex(gid, place));
        if (HasFatalFailure())
            return;
    }
}

TEST_P(CffSubsetOf, PackedLooksTheSameWithHints) {
    for (const Glyphs& glyphs : randomLists()) {
        const Bytes subset = table_->renumbered(glyphs);
        const FreeTypeFace cut(subset);
        for (const auto& [gid, place] :
             placesIn(subset, static_cast<unsigned>(cut->num_glyphs), glyphs))
            ASSERT_EQ(hintedPicture(*face_, sourceIndex(gid)),
                      hintedPicture(cut, packedIndex(gid, place)))
                << gid;
    }
}

TEST_P(CffSubsetOf, PackedHasTheSourcesGlyphsForFontTools) {
    const Glyphs glyphs = randomGlyphs(77, 400);
    expectSameForFontTools(table_->renumbered(glyphs), glyphs);
}

TEST_P(CffSubsetOf, InPlaceHasTheSourcesOutlinesAndWidthsForFreeType) {
    for (const Glyphs& glyphs : randomLists()) {
        const FreeTypeFace cut(table_->inPlace(glyphs, space()));
        for (const unsigned short gid : glyphs)
            expectSameOutline(*face_, cut, sourceIndex(gid), sourceIndex(gid));
        expectSameOutline(*face_, cut, 0, 0);
    }
}

TEST_P(CffSubsetOf, InPlaceLooksTheSameWithHints) {
    for (const Glyphs& glyphs : randomLists()) {
        const FreeTypeFace cut(table_->inPlace(glyphs, space()));
        for (const unsigned short gid : glyphs)
            ASSERT_EQ(hintedPicture(*face_, sourceIndex(gid)), hintedPicture(cut, sourceIndex(gid)))
                << gid;
    }
}

TEST_P(CffSubsetOf, InPlaceWithEveryGlyphIsTheTableItself) {
    Bytes expected = table_->bytes();
    EXPECT_EQ(table_->inPlace(everyGlyph(), space()), expected.patchU8At(3, 3));
}

INSTANTIATE_TEST_SUITE_P(PackagedFonts, CffSubsetOf,
                         testing::Values(Sample{"LMRoman10"}, Sample{"LMMono10"},
                                         Sample{"TeXGyreTermesMath"}, Sample{"C059-Roman"},
                                         Sample{"NimbusSans"}, Sample{"D050000L"},
                                         Sample{"LinLibertine"}, Sample{"FreeSerif"},
                                         Sample{"NotoSansCJK", true}, Sample{"NotoSerifCJK", true}),
                         [](const auto& parameter) {
                             std::string name = parameter.param.font;
                             std::erase(name, '-');
                             return name;
                         });

/// An OpenType file of one font, cut in place through its operations.
class CffFileOf : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        path_ = KWTest::packagedFont(GetParam());
        ASSERT_TRUE(font_.createFont(KWTest::fileUri(path_)));
        const FreeTypeFace face(KWTest::readFile(path_));
        last_ = static_cast<unsigned short>(face->num_glyphs - 1);
        KWTest::Rng random(78);
        for (int i = 0; i < 300; ++i)
            glyphs_.push_back(static_cast<unsigned short>(random.below(last_)));
    }

    Bytes subset(const Glyphs& glyphs) {
        KWMemStream out;
        EXPECT_TRUE(font_.makeSubsetFont(glyphs, out));
        return bytesOf(out);
    }
    ProcessResult sanitized(const Bytes& file) {
        return KWTest::runProgram("ots-sanitize", {folder_.write("subset.otf", file).string()});
    }
    ProcessResult comparedByFontTools(const Bytes& file, const Glyphs& glyphs) {
        return runComparison(path_, folder_.write("subset.otf", file), glyphs);
    }

    std::filesystem::path path_;
    KWTest::TempDir folder_;
    FS_FontInfo font_;
    Glyphs glyphs_; ///< without the last one
    unsigned short last_ = 0;
};

TEST_P(CffFileOf, WithItsLastGlyphPassesTheSanitizerAndFontTools) {
    Glyphs glyphs = glyphs_;
    glyphs.push_back(last_);
    const Bytes file = subset(glyphs);
    EXPECT_LT(file.size(), std::filesystem::file_size(path_));
    const ProcessResult result = sanitized(file);
    EXPECT_TRUE(result.ok()) << result.describe();
    const ProcessResult same = comparedByFontTools(file, glyphs);
    EXPECT_TRUE(same.ok()) << same.describe();
    EXPECT_TRUE(same.output.starts_with("same ")) << same.describe();
}

// CharStrings end behind the highest glyph that is listed, charset and `maxp` do not.
TEST_P(CffFileOf, WithoutItsLastGlyphIsRefusedByTheSanitizerAndNotByFreeType) {
    Glyphs glyphs = glyphs_;
    std::erase_if(glyphs, [this](unsigned short gid) { return gid > last_ / 2; });
    const Bytes file = subset(glyphs);
    const ProcessResult result = sanitized(file);
    EXPECT_FALSE(result.ok());
    EXPECT_NE(result.errors.find("Failed to parse Top DICT Data"), std::string::npos)
        << result.describe();
    const FreeTypeFace source(KWTest::readFile(path_));
    const FreeTypeFace cut(file);
    for (const unsigned short gid : glyphs)
        expectSameOutline(source, cut, gid, gid);
}

// A list of values is read no further than there are charstrings.
TEST_P(CffFileOf, WithoutItsLastGlyphIsRefusedByFontToolsWhereARangeOfTheCharsetGoesOn) {
    Glyphs glyphs = glyphs_;
    std::erase_if(glyphs, [this](unsigned short gid) { return gid > last_ / 2; });
    const Table table(KWTest::fontTable(path_, "CFF "));
    const auto& ranges = table.font().charsetByGlyph;
    const unsigned short highest = *std::ranges::max_element(glyphs);
    const bool endsThere = ranges.empty() || std::ranges::any_of(ranges, [&](const auto& range) {
                               return range.last == highest;
                           });
    EXPECT_EQ(comparedByFontTools(subset(glyphs), glyphs).ok(), endsThere);
}

TEST_P(CffFileOf, OpensHereAndAnswersAsItsSourceDoes) {
    const KWTest::TempDir folder;
    FS_FontInfo cut;
    ASSERT_TRUE(cut.createFont(KWTest::fileUri(folder.write("cut.otf", subset(glyphs_)))));
    for (const unsigned short gid : glyphs_) {
        EXPECT_EQ(cut.getGlyphWidth(gid, 0, false), font_.getGlyphWidth(gid, 0, false));
        EXPECT_EQ(cut.getStringID(gid), font_.getStringID(gid));
    }
}

INSTANTIATE_TEST_SUITE_P(PackagedFonts, CffFileOf,
                         testing::Values("LMRoman10", "LMMono10", "TeXGyreTermesMath", "C059-Roman",
                                         "NimbusSans", "D050000L", "LinLibertine", "FreeSerif",
                                         "Unifont"),
                         [](const auto& parameter) {
                             std::string name = parameter.param;
                             std::erase(name, '-');
                             return name;
                         });

TEST(CffSubset, OfAMemberOfACollectionIsThatOfItsTable) {
    const auto path = KWTest::packagedFont("NotoSansCJK");
    const auto font = createFontObject(KWTest::fileUri(path), FS_FILETYPE_COLLECTION);
    std::ifstream stream(path, std::ios::binary);
    KWError error;
    ASSERT_TRUE(font->scanFont(error, stream));
    ASSERT_TRUE(font->loadFont(error, 0, nullptr));
    Table table(KWTest::fontTable(path, "CFF "));
    const Glyphs glyphs{1000, 34, 20000, 65534};
    KWMemStream packed;
    ASSERT_TRUE(font->getEmbedFont(glyphs, packed, nullptr, 0));
    EXPECT_EQ(bytesOf(packed), table.renumbered(glyphs));
    KWMemStream cut;
    ASSERT_TRUE(font->makeSubsetFont(glyphs, cut, nullptr, 0));
    const KWTest::TempDir folder;
    const ProcessResult result =
        KWTest::runProgram("ots-sanitize", {folder.write("cut.otf", bytesOf(cut)).string()});
    EXPECT_TRUE(result.ok()) << result.describe();
    const FreeTypeFace source(KWTest::readFile(path));
    const FreeTypeFace file(bytesOf(cut));
    for (const unsigned short gid : glyphs)
        expectSameOutline(source, file, gid, gid);
}

// The only packaged font with a FontMatrix in its Font DICT.
TEST(CffSubset, WithoutTheFontMatrixOfItsFontDictIsDrawnByTheDefaultOne) {
    const auto path = KWTest::packagedFont("Unifont");
    Table table(KWTest::fontTable(path, "CFF "));
    const FreeTypeFace source(KWTest::readFile(path));
    const FreeTypeFace cut(table.renumbered({36, 1000}));
    EXPECT_EQ(source->units_per_EM, 64);
    EXPECT_EQ(cut->units_per_EM, 1000);
    for (const unsigned gid : {36u, 1000u}) {
        expectSameOutline(source, cut, gid, gid);
        EXPECT_NE(hintedPicture(source, gid), hintedPicture(cut, gid));
    }
}

/// Glyphs .notdef, space, A, acute and one that is put together of the last two.
KWTest::CffSections accented() {
    KWTest::CffSections table;
    table.charset = Bytes{0}.u16s({1, 34, 125, 171});
    table.charStrings = {KWTest::rectangleCharstring(0, 50, 0, 450, 700), Bytes{139, 14},
                         KWTest::rectangleCharstring(100, 50, 0, 550, 700),
                         KWTest::rectangleCharstring(0, 100, 600, 200, 700),
                         Bytes{139, 149, 149, 139 + 65, 247, 86, 14}};
    table.privateDict = KWTest::CffPrivate{.dict = Bytes{140, 20}};
    return table;
}

TEST(CffSubset, AccentedGlyphsBringTheirPartsForFreeType) {
    Table table(accented().build());
    const FreeTypeFace source(table.bytes());
    const FreeTypeFace cut(table.renumbered({4}));
    ASSERT_EQ(cut->num_glyphs, 4); // the space stays behind
    expectSameOutline(source, cut, 4, 3);
    EXPECT_GT(cut.load(3)->outline.n_points, 4);
}

// A font with an Encoding of its own is not closed over accents.
TEST(CffSubset, OfCustomEncodingFreeTypeMissesThePartsOfAccentedGlyphs) {
    KWTest::CffSections custom = accented();
    custom.encoding = Bytes{0, 4, 32, 65, 66, 67};
    Table table(custom.build());
    const FreeTypeFace cut(table.renumbered({4}));
    ASSERT_EQ(cut->num_glyphs, 2);
    EXPECT_NE(FT_Load_Glyph(cut.get(), 1, FT_LOAD_NO_SCALE), 0);
    const FreeTypeFace listed(table.renumbered({4, 2, 3}));
    EXPECT_EQ(FT_Load_Glyph(listed.get(), 3, FT_LOAD_NO_SCALE), 0);
}

// A predefined charset is not known here: all its glyphs are .notdef.
TEST(CffSubset, OfAPredefinedCharsetFreeTypeFindsGlyphZeroOnly) {
    KWTest::CffSections predefined = accented();
    predefined.charset.reset();
    Table table(predefined.build());
    EXPECT_EQ(FreeTypeFace(table.bytes())->num_glyphs, 5);
    EXPECT_EQ(FreeTypeFace(table.renumbered({1, 2, 3}))->num_glyphs, 1);
}

} // namespace
} // namespace KWFontService_NS
