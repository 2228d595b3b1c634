#include "layout/FS_GSUBGPOSInfo.h"

#include "fonts/FS_TrueType.h"
#include "layout/LayoutFixture.h"
#include "support/FontPackages.h"
#include "support/TempDir.h"
#include "support/TestFont.h"

#include <KWFontService17/FS_FontInfo.h>

#include <gtest/gtest.h>

#include <memory>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using Kind = TTI_LayoutTable::Kind;

TTI_LayoutTable tableOf(const LayoutBytes& bytes, Kind kind) {
    TTI_LayoutTable table;
    EXPECT_TRUE(table.read(bytes.build().vector(), kind).empty());
    return table;
}

/// Features smcp (lookups 4, 1), liga (2), kern (3), in this order. DFLT and latn have all of them
/// by default, latn has liga for TRK; cyrl has no default language system and kern for SRB.
LayoutBytes substitutions() {
    const Bytes all = langSysTable({0, 1, 2});
    return {.scripts = scriptList({{"DFLT", scriptTable(all)},
                                   {"cyrl", scriptTable({}, {{"SRB ", langSysTable({2})}})},
                                   {"latn", scriptTable(all, {{"TRK ", langSysTable({1})}})}}),
            .features = featureList({{"smcp", featureTable({4, 1})},
                                     {"liga", featureTable({2})},
                                     {"kern", featureTable({3})}})};
}

/// Feature mark (lookup 0): arab has it by default, latn has it for DEU alone.
LayoutBytes positionings() {
    const Bytes mark = langSysTable({0});
    return {.scripts = scriptList(
                {{"arab", scriptTable(mark)}, {"latn", scriptTable({}, {{"DEU ", mark}})}}),
            .features = featureList({{"mark", featureTable({0})}})};
}

class LayoutHandle : public testing::Test {
protected:
    const FS_GSUBGPOSInfo* ask(std::string_view script, std::string_view language = {}) {
        info = findLayout(tagValue(script), language.empty() ? 0 : tagValue(language), nullptr,
                          gsub, gpos);
        return &info;
    }

    static std::vector<unsigned int> gsubOrder(const FS_GSUBGPOSInfo* handle) {
        std::vector<unsigned int> tags;
        for (int i = 0; const unsigned int tag = FS_FontInfo::getGSUBFeatureTag(handle, i); ++i)
            tags.push_back(tag);
        return tags;
    }

    const TTI_LayoutTable gsub = tableOf(substitutions(), Kind::Gsub);
    const TTI_LayoutTable gpos = tableOf(positionings(), Kind::Gpos);
    const std::vector<unsigned int> everything = {tagValue("smcp"), tagValue("liga"),
                                                  tagValue("kern"), tagValue("smcp")};
    FS_GSUBGPOSInfo info;
};

// --- what is found ------------------------------------------------------------------------------

TEST_F(LayoutHandle, KeepsWhatWasAskedForAndTheGlyphClasses) {
    const TTI_Gdef gdef;
    const FS_GSUBGPOSInfo handle = findLayout(tagValue("latn"), 0, &gdef, gsub, gpos);
    EXPECT_EQ(handle.script, tagValue("latn"));
    EXPECT_EQ(handle.gdef, &gdef);
}

TEST_F(LayoutHandle, AScriptThatTheFontDoesNotListIsNotReplacedByDFLT) {
    const FS_GSUBGPOSInfo* handle = ask("grek");
    EXPECT_FALSE(FS_FontInfo::hasGSUBInfo(handle));
    EXPECT_FALSE(FS_FontInfo::hasGPOSInfo(handle));
    EXPECT_FALSE(FS_FontInfo::isGSUBDefaultLangSys(handle));
    EXPECT_FALSE(FS_FontInfo::isGPOSDefaultLangSys(handle));
    EXPECT_FALSE(FS_FontInfo::hasGSUBFeature(handle, tagValue("liga")));
    EXPECT_FALSE(FS_FontInfo::hasGPOSFeature(handle, tagValue("mark")));
    EXPECT_EQ(FS_FontInfo::getGSUBFeatureTag(handle, 0), 0U);
    EXPECT_EQ(FS_FontInfo::getGPOSFeatureTag(handle, 0), 0U);
    EXPECT_EQ(handle->gsubLangSys, nullptr);
    EXPECT_EQ(handle->gposLangSys, nullptr);
    EXPECT_TRUE(FS_FontInfo::hasGSUBInfo(ask("DFLT"))) << "the caller may ask again";
}

TEST_F(LayoutHandle, TheScriptTagCountsToTheLetter) {
    EXPECT_FALSE(FS_FontInfo::hasGSUBInfo(ask("LATN")));
    EXPECT_FALSE(FS_FontInfo::hasGSUBInfo(ask("lat ")));
    EXPECT_TRUE(FS_FontInfo::hasGSUBInfo(ask("latn")));
}

TEST_F(LayoutHandle, LanguageZeroIsTheDefaultLanguageSystem) {
    const FS_GSUBGPOSInfo* handle = ask("latn");
    EXPECT_TRUE(FS_FontInfo::hasGSUBInfo(handle));
    EXPECT_TRUE(FS_FontInfo::isGSUBDefaultLangSys(handle));
    EXPECT_EQ(handle->gsubTable, &gsub);
    EXPECT_EQ(gsubOrder(handle), everything);
}

TEST_F(LayoutHandle, AListedLanguageIsNotTheDefault) {
    const FS_GSUBGPOSInfo* handle = ask("latn", "TRK ");
    EXPECT_TRUE(FS_FontInfo::hasGSUBInfo(handle));
    EXPECT_FALSE(FS_FontInfo::isGSUBDefaultLangSys(handle));
    EXPECT_EQ(gsubOrder(handle), std::vector<unsigned int>{tagValue("liga")});
}

TEST_F(LayoutHandle, ALanguageThatTheScriptDoesNotListTakesTheDefault) {
    const FS_GSUBGPOSInfo* handle = ask("latn", "JAN ");
    EXPECT_TRUE(FS_FontInfo::hasGSUBInfo(handle));
    EXPECT_TRUE(FS_FontInfo::isGSUBDefaultLangSys(handle));
    EXPECT_EQ(gsubOrder(handle), everything);
}

// The flag says what was looked for, not what was found.
TEST_F(LayoutHandle, TheDefaultFlagIsSetEvenWithoutADefaultLanguageSystem) {
    for (const std::string_view language : {"", "JAN "}) {
        const FS_GSUBGPOSInfo* handle = ask("cyrl", language);
        EXPECT_TRUE(FS_FontInfo::isGSUBDefaultLangSys(handle)) << language;
        EXPECT_FALSE(FS_FontInfo::hasGSUBInfo(handle)) << language;
        EXPECT_EQ(handle->gsubLangSys, nullptr) << language;
        EXPECT_EQ(FS_FontInfo::getGSUBFeatureTag(handle, 0), 0U) << language;
        EXPECT_FALSE(FS_FontInfo::hasGSUBFeature(handle, tagValue("kern"))) << language;
    }
    EXPECT_TRUE(FS_FontInfo::hasGSUBInfo(ask("cyrl", "SRB ")));
}

TEST_F(LayoutHandle, GsubAndGposAreFoundApart) {
    const FS_GSUBGPOSInfo* gposAlone = ask("arab");
    EXPECT_FALSE(FS_FontInfo::hasGSUBInfo(gposAlone));
    EXPECT_FALSE(FS_FontInfo::isGSUBDefaultLangSys(gposAlone));
    EXPECT_TRUE(FS_FontInfo::hasGPOSInfo(gposAlone));
    EXPECT_TRUE(FS_FontInfo::isGPOSDefaultLangSys(gposAlone));
    EXPECT_EQ(gposAlone->gposTable, &gpos);

    const FS_GSUBGPOSInfo* gsubAlone = ask("DFLT");
    EXPECT_TRUE(FS_FontInfo::hasGSUBInfo(gsubAlone));
    EXPECT_TRUE(FS_FontInfo::isGSUBDefaultLangSys(gsubAlone));
    EXPECT_FALSE(FS_FontInfo::hasGPOSInfo(gsubAlone));
    EXPECT_FALSE(FS_FontInfo::isGPOSDefaultLangSys(gsubAlone));

    const FS_GSUBGPOSInfo* defaultInGsubAlone = ask("latn", "DEU ");
    EXPECT_TRUE(FS_FontInfo::hasGSUBInfo(defaultInGsubAlone));
    EXPECT_TRUE(FS_FontInfo::isGSUBDefaultLangSys(defaultInGsubAlone));
    EXPECT_TRUE(FS_FontInfo::hasGPOSInfo(defaultInGsubAlone));
    EXPECT_FALSE(FS_FontInfo::isGPOSDefaultLangSys(defaultInGsubAlone));
}

// --- features -----------------------------------------------------------------------------------

TEST_F(LayoutHandle, AFeatureCountsOnlyInItsLanguageSystemAndTable) {
    const FS_GSUBGPOSInfo* turkish = ask("latn", "TRK ");
    EXPECT_TRUE(FS_FontInfo::hasGSUBFeature(turkish, tagValue("liga")));
    EXPECT_FALSE(FS_FontInfo::hasGSUBFeature(turkish, tagValue("smcp")));
    const FS_GSUBGPOSInfo* german = ask("latn", "DEU ");
    EXPECT_TRUE(FS_FontInfo::hasGSUBFeature(german, tagValue("smcp")));
    EXPECT_FALSE(FS_FontInfo::hasGSUBFeature(german, tagValue("mark")));
    EXPECT_TRUE(FS_FontInfo::hasGPOSFeature(german, tagValue("mark")));
    EXPECT_FALSE(FS_FontInfo::hasGPOSFeature(german, tagValue("smcp")));
}

TEST_F(LayoutHandle, TagsComeInLookupOrderWith0PastBothEnds) {
    const FS_GSUBGPOSInfo* german = ask("latn", "DEU ");
    EXPECT_EQ(FS_FontInfo::getGSUBFeatureTag(german, -1), 0U);
    EXPECT_EQ(FS_FontInfo::getGSUBFeatureTag(german, 0), tagValue("smcp"));
    EXPECT_EQ(FS_FontInfo::getGSUBFeatureTag(german, 1), tagValue("liga"));
    EXPECT_EQ(FS_FontInfo::getGSUBFeatureTag(german, 2), tagValue("kern"));
    EXPECT_EQ(FS_FontInfo::getGSUBFeatureTag(german, 3), tagValue("smcp"));
    EXPECT_EQ(FS_FontInfo::getGSUBFeatureTag(german, 4), 0U);
    EXPECT_EQ(FS_FontInfo::getGPOSFeatureTag(german, -1), 0U);
    EXPECT_EQ(FS_FontInfo::getGPOSFeatureTag(german, 0), tagValue("mark"));
    EXPECT_EQ(FS_FontInfo::getGPOSFeatureTag(german, 1), 0U);
}

TEST_F(LayoutHandle, NullAnswersFalseAnd0) {
    EXPECT_FALSE(FS_FontInfo::hasGSUBInfo(nullptr));
    EXPECT_FALSE(FS_FontInfo::hasGPOSInfo(nullptr));
    EXPECT_FALSE(FS_FontInfo::hasMorxInfo(nullptr));
    EXPECT_FALSE(FS_FontInfo::isGSUBDefaultLangSys(nullptr));
    EXPECT_FALSE(FS_FontInfo::isGPOSDefaultLangSys(nullptr));
    EXPECT_FALSE(FS_FontInfo::hasGSUBFeature(nullptr, tagValue("liga")));
    EXPECT_FALSE(FS_FontInfo::hasGPOSFeature(nullptr, tagValue("mark")));
    EXPECT_EQ(FS_FontInfo::getGSUBFeatureTag(nullptr, 0), 0U);
    EXPECT_EQ(FS_FontInfo::getGPOSFeatureTag(nullptr, 0), 0U);
    FS_FontInfo::deleteGSUBGPOSInfo(nullptr);
}

// --- from a font --------------------------------------------------------------------------------

struct DeleteHandle {
    void operator()(FS_GSUBGPOSInfo* handle) const { FS_FontInfo::deleteGSUBGPOSInfo(handle); }
};
using HandlePtr = std::unique_ptr<FS_GSUBGPOSInfo, DeleteHandle>;

HandlePtr handleOf(const FS_FontInfo& font, std::string_view script, std::string_view language) {
    return HandlePtr(
        font.getGSUBGPOSInfo(tagValue(script), language.empty() ? 0 : tagValue(language)));
}

TEST(LayoutHandleOfAFont, HasTheTablesOfItsFace) {
    const TempDir dir;
    dir.write("a.ttf",
              TestFont::latin().with("GSUB", substitutions()).with("GPOS", positionings()).build());
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(dir.uri("a.ttf")));
    const HandlePtr handle = handleOf(font, "latn", "DEU ");
    ASSERT_NE(handle, nullptr);
    const auto* face = static_cast<FS_TrueType*>(font.getFont())->face(0);
    EXPECT_EQ(handle->gdef, &face->tables().gdef);
    EXPECT_EQ(handle->gsubTable, &face->tables().gsub);
    EXPECT_EQ(handle->gposTable, &face->tables().gpos);
    EXPECT_TRUE(FS_FontInfo::hasGSUBFeature(handle.get(), tagValue("smcp")));
    EXPECT_TRUE(FS_FontInfo::hasGPOSFeature(handle.get(), tagValue("mark")));
}

TEST(LayoutHandleOfAFont, IsARecordEvenWithoutLayoutTables) {
    const TempDir dir;
    dir.write("a.ttf", TestFont::latin().build());
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(dir.uri("a.ttf")));
    const HandlePtr handle = handleOf(font, "latn", "");
    ASSERT_NE(handle, nullptr);
    EXPECT_FALSE(FS_FontInfo::hasGSUBInfo(handle.get()));
    EXPECT_FALSE(FS_FontInfo::hasGPOSInfo(handle.get()));
    EXPECT_FALSE(FS_FontInfo::hasMorxInfo(handle.get()));
}

TEST(LayoutHandleOfAFont, ReadsTheLanguagesOfLinLibertine) {
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(fileUri(packagedFont("LinLibertine"))));

    const HandlePtr romanian = handleOf(font, "latn", "ROM ");
    ASSERT_TRUE(FS_FontInfo::hasGSUBInfo(romanian.get()));
    EXPECT_FALSE(FS_FontInfo::isGSUBDefaultLangSys(romanian.get()));
    EXPECT_TRUE(FS_FontInfo::hasGSUBFeature(romanian.get(), tagValue("locl")));
    EXPECT_EQ(FS_FontInfo::getGSUBFeatureTag(romanian.get(), 0), tagValue("aalt"));
    EXPECT_EQ(FS_FontInfo::getGSUBFeatureTag(romanian.get(), 1), tagValue("locl"));
    EXPECT_EQ(FS_FontInfo::getGSUBFeatureTag(romanian.get(), 28), tagValue("nalt"));
    EXPECT_EQ(FS_FontInfo::getGSUBFeatureTag(romanian.get(), 29), 0U);

    const HandlePtr japanese = handleOf(font, "latn", "JAN ");
    EXPECT_TRUE(FS_FontInfo::hasGSUBInfo(japanese.get()));
    EXPECT_TRUE(FS_FontInfo::isGSUBDefaultLangSys(japanese.get()));
    EXPECT_FALSE(FS_FontInfo::hasGSUBFeature(japanese.get(), tagValue("locl")));
    EXPECT_TRUE(FS_FontInfo::hasGSUBFeature(japanese.get(), tagValue("liga")));
    EXPECT_TRUE(FS_FontInfo::hasGPOSFeature(japanese.get(), tagValue("kern")));
    EXPECT_EQ(FS_FontInfo::getGPOSFeatureTag(japanese.get(), 5), tagValue("lfbd"));
    EXPECT_EQ(FS_FontInfo::getGPOSFeatureTag(japanese.get(), 6), 0U);
}

} // namespace
} // namespace KWFontService_NS
