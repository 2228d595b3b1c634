// What an enumeration reports.

#include "registry/EnumerationFixture.h"
#include "registry/FS_ExtraFontPool.h"
#include "support/MetricsFiles.h"
#include "support/WoffFile.h"

#include <KWFontService17/FS_FontInfo.h>

#include <gmock/gmock.h>

namespace {

using namespace KWFontService_NS;
using namespace KWTest;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

using FontEnumeration = EnumerationTest;

Reported face(int type, const std::string& family, int weight = 400) {
    return {type, family, family + " Regular", weight, false};
}
Reported fake(int type, const std::string& family, int weight = 400, bool italic = false) {
    return {type, family, family + "0", weight, italic};
}

// --- all fonts ----------------------------------------------------------------------------------

TEST_F(FontEnumeration, OfAllFontsReportsEachFaceOnce) {
    write("fonts/a.ttf", namedFont(u"Alpha"));
    write("fonts/b.otf", TestFont::openType());
    SfntCollection collection;
    collection.fonts = {namedFont(u"Gamma").sfnt(), namedFont(u"Delta", 700).sfnt()};
    write("fonts/c.ttc", collection.build());
    files.write("fonts/d.afm", AfmFile::latin().build());
    ASSERT_EQ(addFolder("fonts"), 4);
    std::vector<Reported> faces = reported(Text());
    EXPECT_THAT(faces, UnorderedElementsAre(face(0, "Alpha"), face(0, "KWTest OpenType"),
                                            face(0, "Gamma"), face(0, "Delta", 700),
                                            Reported{0, "KWTest", "KWTest Bold", 700, false}));
}

TEST_F(FontEnumeration, OfAllFontsIsInTheOrderOfTheirRegistration) {
    pooled(u"B");
    pooled(u"C");
    pooled(u"A")->faceCount = 2;
    EXPECT_THAT(reported(Text()), ElementsAre(fake(0, "B"), fake(0, "C"), fake(0, "A"),
                                              Reported{0, "A", "A1", 400, false}));
}

TEST_F(FontEnumeration, OfAllFontsReportsTwoOfOneNameAndStyle) {
    pooled(u"Twin");
    pooled(u"Twin");
    EXPECT_EQ(reported(Text()).size(), 2U);
    EXPECT_EQ(reported(u"Twin").size(), 1U) << "by name the first stands";
}

TEST_F(FontEnumeration, OfAllFontsTellsWhereMarkedFontsComeFrom) {
    pooled(u"Plain");
    pooled(u"Registered")->setMarks(FS_FONTMARK_REGISTRY);
    pooled(u"Eudc")->setMarks(FS_FONTMARK_EUDC);
    pooled(u"Both")->setMarks(FS_FONTMARK_REGISTRY | FS_FONTMARK_EUDC);
    EXPECT_THAT(reported(Text()), ElementsAre(fake(0, "Plain"), fake(5, "Registered"),
                                              fake(4, "Eudc"), fake(5, "Both")));
}

TEST_F(FontEnumeration, OfAllFontsLeavesAliasesOut) {
    enter(aliasPool(), u"Alias", *pooled(u"Real"));
    EXPECT_THAT(reported(Text()), ElementsAre(fake(0, "Real")));
}

// --- by name ------------------------------------------------------------------------------------

TEST_F(FontEnumeration, OfANameIsInTheOrderOfTheStyles) {
    const auto heavy = pooled(u"Name", {700, true, 5});
    enter(fontPool(), u"Name", *pooled(u"Wide", {700, false, 7}), {700, false, 7});
    enter(fontPool(), u"Name", *pooled(u"Narrow", {700, false, 3}), {700, false, 3});
    enter(fontPool(), u"Name", *pooled(u"Light", {300, true, 5}), {300, true, 5});
    pooled(u"Other");
    EXPECT_THAT(reported(u"Name"), ElementsAre(fake(0, "Light", 300, true), fake(0, "Narrow", 700),
                                               fake(0, "Wide", 700), fake(0, "Name", 700, true)));
}

TEST_F(FontEnumeration, OfANameTakesItAsALookupDoes) {
    write("fonts/File.ttf", namedFont(u"Alpha Beta"));
    ASSERT_EQ(addFolder("fonts"), 1);
    for (const Text name : {u"Alpha Beta", u"ALPHA-BETA", u"alpha\u3000beta", u"Alpha Beta Regular",
                            u"file", u"FILE.ttf"})
        EXPECT_THAT(reported(name), ElementsAre(face(0, "Alpha Beta")));
    for (const Text name : {u"Alpha", u"Beta", u"@", u"@@Alpha Beta", u" ", u"-"})
        EXPECT_THAT(reported(name), IsEmpty());
}

TEST_F(FontEnumeration, OfAnUnknownNameCallsNothingAndAnswers0) {
    EXPECT_EQ(enumerate(u"Nobody", [](const auto&, const auto&, const auto&) { return 7; }), 0);
}

TEST_F(FontEnumeration, OfANameReportsTheFaceThatTheNameIsOf) {
    enter(fontPool(), u"Second", *pooled(u"First"), {}, 1);
    EXPECT_THAT(reported(u"Second"), ElementsAre(Reported{0, "First", "First1", 400, false}));
}

TEST_F(FontEnumeration, OfAnAliasReportsTheRealFontsRecords) {
    enter(aliasPool(), u"Alias", *pooled(u"Real"));
    EXPECT_THAT(reported(u"Alias"), ElementsAre(fake(1, "Real")));
    EXPECT_THAT(reported(u"Real"), ElementsAre(fake(0, "Real")));
}

TEST_F(FontEnumeration, OfANameThatIsAnAliasAsWellReportsTheAliasFirst) {
    enter(aliasPool(), u"Name", *pooled(u"Hidden"));
    pooled(u"Name");
    EXPECT_THAT(reported(u"Name"), ElementsAre(fake(1, "Hidden"), fake(0, "Name")));
}

TEST_F(FontEnumeration, OfANameDoesNotTellMarkedFontsApart) {
    pooled(u"Registered")->setMarks(FS_FONTMARK_REGISTRY);
    pooled(u"Eudc")->setMarks(FS_FONTMARK_EUDC);
    EXPECT_THAT(reported(u"Registered"), ElementsAre(fake(0, "Registered")));
    EXPECT_THAT(reported(u"Eudc"), ElementsAre(fake(0, "Eudc")));
}

TEST_F(FontEnumeration, OfAFamilyThatWasUsedReportsAFaceForEachStyleItHasStoodInFor) {
    pooled(u"Used");
    EXPECT_EQ(reported(u"Used").size(), 1U);
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(u"Used", 900, true, nullptr, false));
    const std::vector<Reported> faces = reported(u"Used");
    EXPECT_EQ(faces.size(), 18U) << "nine weights, upright and italic";
    EXPECT_EQ(std::ranges::count(faces, fake(0, "Used")), 18);
    EXPECT_EQ(reported(Text()).size(), 1U) << "of all fonts it is one face as before";
}

// --- WOFF ---------------------------------------------------------------------------------------

TEST_F(FontEnumeration, TellsWoffFilesInAWalkByNameAlone) {
    write("fonts/packed.woff", WoffFile::of(namedFont(u"Inside").build()).build());
    ASSERT_EQ(addFolder("fonts"), 1);
    const std::vector<Reported> byName = reported(u"packed");
    ASSERT_EQ(byName.size(), 1U);
    EXPECT_EQ(byName[0].type, 3);
    const std::vector<Reported> all = reported(Text());
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].type, 0);
}

// --- fonts of a document ------------------------------------------------------------------------

class DocumentEnumeration : public EnumerationTest {
protected:
    int append(std::string_view file, const Text& family, int weight = 0) {
        return fonts.appendExtraFont(files.text(file), family, weight, -1, FS_FILETYPE_UNKNOWN,
                                     nullptr);
    }
    FS_ExtraFontManager fonts;
};

TEST_F(DocumentEnumeration, ReportsTheFontsOfTheDocumentFirst) {
    write("brought.ttf", namedFont(u"Inside"));
    ASSERT_EQ(append("brought.ttf", u"Name", 300), 0);
    enter(aliasPool(), u"Name", *pooled(u"Real"));
    pooled(u"Name");
    EXPECT_THAT(reported(u"Name", &fonts), ElementsAre(Reported{2, "Name", "Name", 300, false},
                                                       fake(1, "Real"), fake(0, "Name")));
    EXPECT_THAT(reported(Text(), &fonts), ElementsAre(Reported{2, "Name", "Name", 300, false},
                                                      fake(0, "Real"), fake(0, "Name")));
    EXPECT_EQ(reported(u"Name").size(), 2U) << "without the document";
}

TEST_F(DocumentEnumeration, ReportsAWoffFileAsSuchByNameAlone) {
    write("brought.woff", WoffFile::of(namedFont(u"Inside").build()).build());
    ASSERT_EQ(append("brought.woff", u"Name"), 0);
    EXPECT_THAT(reported(u"Name", &fonts), ElementsAre(Reported{3, "Name", "Name", 400, false}));
    EXPECT_THAT(reported(Text(), &fonts), ElementsAre(Reported{2, "Name", "Name", 400, false}));
}

TEST_F(DocumentEnumeration, ReportsWhatTheDocumentMarkedAsItsOwnWhateverTheMarks) {
    write("brought.ttf", namedFont(u"Inside"));
    ASSERT_EQ(append("brought.ttf", u"Name"), 0);
    fonts.getExtraFonts()->fontAt(0)->setMarks(FS_FONTMARK_REGISTRY);
    EXPECT_THAT(reported(Text(), &fonts), ElementsAre(Reported{2, "Name", "Name", 400, false}));
}

TEST_F(DocumentEnumeration, AnAnswerAmongTheFontsOfTheDocumentEndsAll) {
    write("brought.ttf", namedFont(u"Inside"));
    ASSERT_EQ(append("brought.ttf", u"Name"), 0);
    enter(aliasPool(), u"Name", *pooled(u"Name"));
    for (const Text name : {u"Name", u""}) {
        int calls = 0;
        EXPECT_EQ(enumerate(
                      name,
                      [&calls](const auto&, const auto&, const auto&) {
                          ++calls;
                          return 5;
                      },
                      &fonts),
                  5);
        EXPECT_EQ(calls, 1);
    }
}

// --- vertical faces -----------------------------------------------------------------------------

TEST_F(FontEnumeration, OfANameBehindAnAtSignReportsVerticalFacesAlone) {
    TestFont upright = TestFont::vertical();
    upright.name = Name::english(u"Mixed");
    write("fonts/v.ttf", upright);
    write("fonts/h.ttf", namedFont(u"Mixed", 700));
    ASSERT_EQ(addFolder("fonts"), 2);
    EXPECT_THAT(reported(u"@Mixed"), ElementsAre(face(0, "Mixed")));
    EXPECT_THAT(reported(u"Mixed"), ElementsAre(face(0, "Mixed"), face(0, "Mixed", 700)));
}

TEST_F(FontEnumeration, OpensNoFontUnlessVerticalOnesAreAskedFor) {
    int loads = 0;
    const auto font = pooled(u"Name");
    font->vertical = true;
    font->onLoad = [&loads] { return ++loads > 0; };
    reported(u"Name");
    reported(Text());
    EXPECT_EQ(loads, 0);
    EXPECT_EQ(reported(u"@Name").size(), 1U);
    EXPECT_EQ(loads, 1);
}

TEST_F(FontEnumeration, LeavesOutAVerticalFaceThatDoesNotOpen) {
    const auto broken = pooled(u"Name", {300, false, 5});
    broken->vertical = true;
    broken->onLoad = [] { return false; };
    const auto good = pooled(u"Name");
    good->vertical = true;
    EXPECT_THAT(reported(u"@Name"), ElementsAre(fake(0, "Name")));
    EXPECT_EQ(reported(u"Name").size(), 2U);
}

TEST_F(FontEnumeration, LooksForVerticalFacesAmongAliasesToo) {
    const auto font = pooled(u"Real");
    font->vertical = true;
    enter(aliasPool(), u"Alias", *font);
    EXPECT_THAT(reported(u"@Alias"), ElementsAre(fake(1, "Real")));
    font->vertical = false;
    EXPECT_THAT(reported(u"@Alias"), IsEmpty());
}

// --- records ------------------------------------------------------------------------------------

TEST_F(FontEnumeration, LeavesOutAFaceWithoutBothRecords) {
    pooled(u"Name", {100, false, 5})->hasLogFont = false;
    pooled(u"Name", {200, false, 5})->hasMetric = false;
    pooled(u"Name", {300, false, 5});
    EXPECT_THAT(reported(u"Name"), ElementsAre(fake(0, "Name", 300)));
    EXPECT_THAT(reported(Text()), ElementsAre(fake(0, "Name", 300)));
}

TEST_F(FontEnumeration, TellsFileTypeEmbeddingAndMarks) {
    TestFont restricted = namedFont(u"Restricted");
    restricted.os2.fsType = 2;
    write("fonts/a.ttf", restricted);
    ASSERT_EQ(addFolder("fonts"), 1);
    fontPool().fonts[0]->setMarks(FS_FONTMARK_EUDC);
    for (const Text name : {u"Restricted", u""}) {
        int calls = 0;
        enumerate(name, [&](const Reported&, const FS_EnumLogFontEx& font, const auto&) {
            EXPECT_EQ(font.getFileType(), FS_FILETYPE_TRUETYPE);
            EXPECT_EQ(font.getEmbedding(), FS_EMBED_RESTRICTED);
            EXPECT_EQ(font.getFlags(), 8U);
            return ++calls, 0;
        });
        EXPECT_EQ(calls, 1);
    }
}

TEST_F(FontEnumeration, GivesEachFaceItsTextMetricsInFontUnits) {
    TestFont first = namedFont(u"Name");
    first.os2.usWinAscent = 901;
    TestFont second = namedFont(u"Name", 700);
    second.os2.usWinAscent = 902;
    write("fonts/a.ttf", first);
    write("fonts/b.ttf", second);
    ASSERT_EQ(addFolder("fonts"), 2);
    enumerate(u"Name", [](const Reported& font, const auto&, const FS_NewTextMetricEx& metric) {
        EXPECT_EQ(metric.getAscent(), font.weight == 700 ? 902 : 901);
        EXPECT_TRUE(metric.hasTypoInfo());
        return 0;
    });
}

TEST_F(FontEnumeration, BeginsEachFaceWithAFreshRecord) {
    write("fonts/a.ttf", namedFont(u"Real"));
    ASSERT_EQ(addFolder("fonts"), 1);
    pooled(u"Empty");
    std::vector<bool> typographic;
    enumerate(Text(), [&](const Reported&, const auto&, const FS_NewTextMetricEx& metric) {
        typographic.push_back(metric.hasTypoInfo());
        return 0;
    });
    EXPECT_THAT(typographic, testing::ElementsAre(true, false)) << "the second fills none";
}

// --- answers ------------------------------------------------------------------------------------

TEST_F(FontEnumeration, EndsWithTheFirstAnswerThatIsNot0) {
    for (int i = 1; i <= 4; ++i)
        pooled(u"Name", {100 * i, false, 5});
    for (const Text name : {u"Name", u""}) {
        int calls = 0;
        EXPECT_EQ(enumerate(name,
                            [&calls](const auto&, const auto&, const auto&) {
                                ++calls;
                                return 7;
                            }),
                  7);
        EXPECT_EQ(calls, 1);
        EXPECT_EQ(enumerate(name, [&calls](const auto&, const auto&,
                                           const auto&) { return ++calls == 4 ? -1 : 0; }),
                  -1);
        EXPECT_EQ(calls, 4);
    }
}

TEST_F(FontEnumeration, AnAnswerAmongAliasesEndsAll) {
    enter(aliasPool(), u"Name", *pooled(u"Name"));
    int calls = 0;
    EXPECT_EQ(enumerate(u"Name",
                        [&calls](const auto&, const auto&, const auto&) {
                            ++calls;
                            return 3;
                        }),
              3);
    EXPECT_EQ(calls, 1);
}

TEST_F(FontEnumeration, ANumberThatIsReservedChangesNothing) {
    pooled(u"Name");
    for (const int reserved : {-1, 0, 1, 99}) {
        EXPECT_EQ(enumerate(
                      u"Name", [](const auto&, const auto&, const auto&) { return 4; }, nullptr,
                      reserved),
                  4);
    }
}

} // namespace
