#include "registry/EudcFonts.h"

#include "fonts/FaceFixture.h"
#include "registry/FolderScan.h"
#include "registry/RegistryFixture.h"
#include "support/DefaultLocale.h"
#include "support/SystemDouble.h"
#include "support/WoffFile.h"

#include <gmock/gmock.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace KWFontService_NS;
using namespace KWTest;
using KWPlatform::RegistryHive;
using KWPlatform::RegistryText;
using KWPlatform::RegistryType;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

constexpr char16_t kRanges[] = u"System\\CurrentControlSet\\Control\\NLS\\CodePage\\EUDCCodeRange";

/// A registry in memory, and a fonts folder.
class FakeRegistry : public SystemDouble {
public:
    void set(RegistryHive hive, const std::u16string& key, const std::u16string& name,
             const std::u16string& text, RegistryType type = RegistryType::string) {
        values_[{hive, key}].push_back({name, type, text});
    }
    void setUser(const std::u16string& key, const std::u16string& name, const std::u16string& text,
                 RegistryType type = RegistryType::string) {
        set(RegistryHive::currentUser, key, name, text, type);
    }
    void setRanges(const std::u16string& text, RegistryType type = RegistryType::string) {
        set(RegistryHive::localMachine, kRanges, u"Unicode", text, type);
    }

    std::optional<RegistryText> registryText(RegistryHive hive, const std::u16string& key,
                                             const std::u16string& name) override {
        for (const RegistryText& value : values_[{hive, key}]) {
            if (value.name == name)
                return value;
        }
        return std::nullopt;
    }
    std::vector<RegistryText> registryTexts(RegistryHive hive, const std::u16string& key) override {
        return values_[{hive, key}];
    }
    std::u16string knownFolder(KWPlatform::KnownFolder) override { return fontsFolder; }

    std::u16string fontsFolder;

private:
    std::map<std::pair<RegistryHive, std::u16string>, std::vector<RegistryText>> values_;
};

std::string utf8(const UnicodeString& text) {
    std::string bytes;
    return text.toUTF8String(bytes);
}

class EudcFonts : public RegistryTest {
protected:
    /// A font with a glyph for each of the characters, and no others.
    static TestFont privateFont(std::u16string_view family, std::initializer_list<char16_t> chars) {
        TestFont font = namedFont(family);
        CmapMap glyphs;
        for (const char16_t character : chars)
            glyphs[character] = TestFont::kA;
        font.cmap = Cmap::unicode(glyphs);
        return font;
    }
    /// Loads what lies in the scratch folder's "base".
    void loadBase(std::initializer_list<std::pair<const char*, TestFont>> fonts) {
        for (const auto& [name, font] : fonts)
            write(std::string("base/") + name, font);
        addFolder("base", false);
        scanFolders(service());
    }
    /// The font files that were loaded as end-user-defined ones.
    std::vector<std::string> eudcFiles() {
        std::vector<std::string> names;
        for (const auto& font : service().fontPool.fonts) {
            if (font->getMarks() == FS_FONTMARK_EUDC)
                names.push_back(below(font->getUri()));
        }
        return names;
    }
    /// The file of the font that a face of the pool is linked to, "" when it is to none.
    std::string linkOf(const UnicodeString& name, int weight = 0, bool italic = false) {
        bool isAlias = false;
        const FS_FontRef ref =
            service().findFont(name, FS_FontKey::ofRequest(weight, italic, 0), isAlias, false);
        const FS_FontRef link = ref ? ref.font->getEudcFont(ref.face) : FS_FontRef();
        return link ? below(link.font->getUri()) : std::string();
    }
    std::u16string path(std::string_view name) const { return files().path(name).u16string(); }
    std::map<std::string, std::string> links() {
        std::map<std::string, std::string> pairs;
        for (const auto& [family, uri] : service().eudcMap)
            pairs[utf8(family)] = below(uri);
        return pairs;
    }
};

// --- the registry -------------------------------------------------------------------------------

TEST_F(EudcFonts, RangesOfTheRegistryAreHexadecimalPairs) {
    FakeRegistry registry;
    registry.setRanges(u"E000-E7FF,0xf000 , F100-f101,F200 -F201");
    readEudcRanges(service());
    EXPECT_TRUE(service().eudcRangeGiven);
    for (const int inside : {0xE000, 0xE7FF, 0xF100, 0xF101})
        EXPECT_TRUE(service().isEudcCodePoint(inside)) << inside;
    for (const int outside : {0xDFFF, 0xE800, 0xF0FF, 0xF102})
        EXPECT_FALSE(service().isEudcCodePoint(outside)) << outside;
    EXPECT_FALSE(service().isEudcCodePoint(0xF000)) << "a number alone";
    EXPECT_FALSE(service().isEudcCodePoint(0xF200)) << "the dash follows the number at once";
}

TEST_F(EudcFonts, ARangeOfOneNumberSetsNothingAndGivesNoRange) {
    FakeRegistry registry;
    registry.setRanges(u"E000");
    readEudcRanges(service());
    EXPECT_FALSE(service().eudcRangeGiven);
    EXPECT_FALSE(service().isEudcCodePoint(0xE000));
}

TEST_F(EudcFonts, AnEmptyRangeEndsTheRanges) {
    FakeRegistry registry;
    registry.setRanges(u"E000-E000,,E100-E100");
    readEudcRanges(service());
    EXPECT_TRUE(service().isEudcCodePoint(0xE000));
    EXPECT_FALSE(service().isEudcCodePoint(0xE100));
}

TEST_F(EudcFonts, RangesPastThePlaneAreCutOff) {
    FakeRegistry registry;
    registry.setRanges(u"-5-E000,FFFE-FFFFFFFFFFFFFFFFFFFF");
    readEudcRanges(service());
    EXPECT_TRUE(service().isEudcCodePoint(0));
    EXPECT_TRUE(service().isEudcCodePoint(0xE000));
    EXPECT_FALSE(service().isEudcCodePoint(0xE001));
    EXPECT_TRUE(service().isEudcCodePoint(0xFFFF));
    EXPECT_FALSE(service().isEudcCodePoint(0x10000));
}

TEST_F(EudcFonts, ARangeThatRunsBackwardsSetsNothingAndIsARangeAllTheSame) {
    FakeRegistry registry;
    registry.setRanges(u"E7FF-E000");
    readEudcRanges(service());
    EXPECT_TRUE(service().eudcRangeGiven);
    for (const int ch : {0xE000, 0xE400, 0xE7FF})
        EXPECT_FALSE(service().isEudcCodePoint(ch));
}

TEST_F(EudcFonts, ARangeOfAnotherTypeIsNone) {
    FakeRegistry registry;
    registry.setRanges(u"E000-E7FF", RegistryType::multiString);
    readEudcRanges(service());
    EXPECT_FALSE(service().eudcRangeGiven);
}

TEST_F(EudcFonts, TheDefaultFontIsThatOfTheLocalesCodePage) {
    const std::pair<const char*, const char16_t*> cases[] = {
        {"zh_TW", u"950"}, {"zh_Hant_TW", u"950"}, {"ko", u"949"},    {"ko_KR", u"949"},
        {"zh_CN", u"936"}, {"ja_JP", u"932"},      {"en_US", u"932"}, {"zh_SG", u"932"}};
    for (const char16_t* const page : {u"932", u"936", u"949", u"950"})
        files().write(std::filesystem::path(page).string() + ".tte", "");
    for (const auto& [locale, page] : cases) {
        const DefaultLocale set(locale);
        FakeRegistry registry;
        for (const char16_t* const each : {u"932", u"936", u"949", u"950"}) {
            registry.setUser(
                std::u16string(u"EUDC\\") + each, u"SystemDefaultEUDCFont",
                files().path(std::filesystem::path(each).string() + ".tte").u16string());
        }
        readSystemDefaultEudc(service(), KWUri());
        EXPECT_EQ(below(service().eudcSystemDefault), std::filesystem::path(page).string() + ".tte")
            << locale;
    }
}

TEST_F(EudcFonts, ABareNameOfTheDefaultFontLiesInTheFontsFolder) {
    const DefaultLocale japanese("ja_JP");
    FakeRegistry registry;
    files().write("system/EUDC.TTE", "");
    registry.fontsFolder = path("system");
    registry.setUser(u"EUDC\\932", u"SystemDefaultEUDCFont", u"EUDC.TTE");
    readEudcRegistry(service());
    EXPECT_EQ(below(service().eudcSystemDefault), "system/EUDC.TTE");
}

TEST_F(EudcFonts, ADefaultFontThatIsNotThereOrNoTextIsNotTaken) {
    const DefaultLocale japanese("ja_JP");
    files().write("a.tte", "");
    {
        FakeRegistry registry;
        registry.setUser(u"EUDC\\932", u"SystemDefaultEUDCFont", path("gone.tte"));
        readSystemDefaultEudc(service(), KWUri());
        EXPECT_TRUE(service().eudcSystemDefault.isEmpty());
    }
    {
        FakeRegistry registry;
        registry.setUser(u"EUDC\\932", u"SystemDefaultEUDCFont", path("a.tte"),
                         RegistryType::multiString);
        readSystemDefaultEudc(service(), KWUri());
        EXPECT_TRUE(service().eudcSystemDefault.isEmpty());
    }
    FakeRegistry registry;
    registry.setUser(u"EUDC\\932", u"SystemDefaultEUDCFont", u"a.tte");
    readSystemDefaultEudc(service(), KWUri());
    EXPECT_TRUE(service().eudcSystemDefault.isEmpty()) << "without a folder for bare names";
}

TEST_F(EudcFonts, FamiliesOfTheCodePagesGetTheirFilesAndTheFirstStays) {
    FakeRegistry registry;
    registry.fontsFolder = path("system");
    registry.setUser(u"EUDC\\932", u"Alpha", path("a.tte"));
    registry.setUser(u"EUDC\\932", u"systemdefaulteudcfont", path("default.tte"));
    registry.setUser(u"EUDC\\932", u"Beta", path("b.tte"), RegistryType::multiString);
    registry.setUser(u"EUDC\\936", u"Alpha", path("late.tte"));
    registry.setUser(u"EUDC\\950", u"Gamma", u"c.tte");
    registry.setUser(u"EUDC\\949", u"Delta", path("d.tte"));
    registry.setUser(u"EUDC\\1252", u"Epsilon", path("e.tte"));
    service().eudcMap.emplace(u"Delta", uriOf("configured.tte"));
    readEudcRegistry(service());
    EXPECT_THAT(links(), UnorderedElementsAre(Pair("Alpha", "a.tte"), Pair("Gamma", "system/c.tte"),
                                              Pair("Delta", "configured.tte")));
}

TEST_F(EudcFonts, CodePagesGoInTheirOrder) {
    FakeRegistry registry;
    const std::u16string pages[] = {u"950", u"949", u"936", u"932"};
    for (std::size_t i = 0; i < 4; ++i) {
        // The family of this number stands under the pages up to this one.
        for (std::size_t family = i; family < 4; ++family) {
            registry.setUser(u"EUDC\\" + pages[i],
                             u"Family" + std::u16string(1, u'0' + char16_t(family)),
                             path(std::filesystem::path(pages[i]).string() + ".tte"));
        }
    }
    readEudcRegistry(service());
    EXPECT_THAT(links(),
                UnorderedElementsAre(Pair("Family0", "950.tte"), Pair("Family1", "949.tte"),
                                     Pair("Family2", "936.tte"), Pair("Family3", "932.tte")));
}

TEST_F(EudcFonts, TheRegistryAddsNothingToWhatTheConfigurationGave) {
    const DefaultLocale japanese("ja_JP");
    FakeRegistry registry;
    files().write("a.tte", "");
    registry.setUser(u"EUDC\\932", u"SystemDefaultEUDCFont", path("a.tte"));
    registry.setRanges(u"E100-E1FF");
    service().eudcSystemDefault = uriOf("configured.tte");
    service().eudcRangeGiven = true;
    readEudcRegistry(service());
    EXPECT_EQ(below(service().eudcSystemDefault), "configured.tte");
    EXPECT_FALSE(service().isEudcCodePoint(0xE100));
}

// --- the default font ---------------------------------------------------------------------------

TEST_F(EudcFonts, TheDefaultFontIsLoadedForBothDirectionsUnderNamesOfItsOwn) {
    write("own/eudc.tte", privateFont(u"Own Signs", {0xE000}));
    service().eudcSystemDefault = uriOf("own/eudc.tte");
    loadDefaultEudcFont(service());
    EXPECT_THAT(eudcFiles(), ElementsAre("own/eudc.tte", "own/eudc.tte"));
    EXPECT_THAT(folderNames(), ElementsAre("own/"));
    const FS_FontRef horizontal = service().defaultEudcFont;
    const FS_FontRef vertical = service().defaultEudcFontVertical;
    ASSERT_TRUE(horizontal && vertical);
    EXPECT_NE(horizontal.font, vertical.font);
    EXPECT_FALSE(horizontal.font->hasVerticalGlyph(0));
    EXPECT_TRUE(vertical.font->hasVerticalGlyph(0));
    EXPECT_EQ(horizontal.font->getEudcGlyphID(0xE000, 0), TestFont::kA) << "it is open";
    EXPECT_EQ(found(u"OwnSigns-Regular"), "own/eudc.tte");
    EXPECT_EQ(utf8(vertical.font->getPostScriptName(0, 0)), "VOwnSigns-Regular");
    EXPECT_EQ(found(u"VOwnSigns-Regular"), "own/eudc.tte");
    EXPECT_EQ(found(u"Own Signs"), "") << "its other names are not entered";
    EXPECT_TRUE(service().errors.empty());
}

TEST_F(EudcFonts, ADefaultFontOfAnotherTypeIsNotLoaded) {
    const Bytes sfnt = privateFont(u"Own Signs", {0xE000}).build();
    const Bytes collection = collectionOf({privateFont(u"Own Signs", {0xE000})}).build();
    const std::pair<const char*, Bytes> sources[] = {
        {"a.ttc", collection}, {"a.woff", WoffFile::of(sfnt).build()}, {"a.dfont", sfnt}};
    for (const auto& [name, bytes] : sources) {
        files().write(name, bytes);
        service().eudcSystemDefault = uriOf(name);
        loadDefaultEudcFont(service());
        EXPECT_FALSE(service().defaultEudcFont) << name;
    }
    EXPECT_THAT(folderNames(), IsEmpty());
    EXPECT_TRUE(service().errors.empty());
    write("a.otf", privateFont(u"Own Signs", {0xE000}));
    service().eudcSystemDefault = uriOf("a.otf");
    loadDefaultEudcFont(service());
    EXPECT_TRUE(service().defaultEudcFont);
}

TEST_F(EudcFonts, AnExcludedDefaultFontIsNotLoaded) {
    write("own/eudc.tte", privateFont(u"Own Signs", {0xE000}));
    addFolder("own", false).optionsOf(u"eudc.tte").fontExclude = true;
    service().eudcSystemDefault = uriOf("own/eudc.tte");
    loadDefaultEudcFont(service());
    EXPECT_THAT(eudcFiles(), IsEmpty());
    EXPECT_FALSE(service().defaultEudcFont);
}

TEST_F(EudcFonts, ADefaultFontThatIsMissingIsPassedOver) {
    service().eudcSystemDefault = uriOf("own/eudc.tte");
    loadDefaultEudcFont(service());
    EXPECT_FALSE(service().defaultEudcFont);
    EXPECT_TRUE(service().errors.empty());
}

TEST_F(EudcFonts, ADefaultFontThatDoesNotOpenIsToldAndKeptUnused) {
    TestFont font = privateFont(u"Own Signs", {0xE000});
    font.without("cmap");
    write("own/eudc.tte", font);
    service().eudcSystemDefault = uriOf("own/eudc.tte");
    loadDefaultEudcFont(service());
    EXPECT_FALSE(service().defaultEudcFont);
    EXPECT_FALSE(service().defaultEudcFontVertical);
    EXPECT_THAT(eudcFiles(), ElementsAre("own/eudc.tte")) << "one try";
    ASSERT_EQ(service().errors.size(), 1U);
    EXPECT_EQ(service().errors.get(0)->getCode(), 1928);
}

// --- fonts of single families -------------------------------------------------------------------

TEST_F(EudcFonts, AFamilyIsLinkedByTheFaceThatSortsFirst) {
    loadBase({{"italic.ttf", namedFont(u"Alpha", 300, true)},
              {"bold.ttf", namedFont(u"Alpha", 700)},
              {"light.ttf", namedFont(u"Alpha", 300)}});
    write("own/a.tte", privateFont(u"Own Signs", {0xE000}));
    service().eudcMap.emplace(u"alpha", uriOf("own/a.tte"));
    linkEudcMap(service());
    EXPECT_EQ(linkOf(u"Alpha", 300), "own/a.tte");
    EXPECT_EQ(linkOf(u"Alpha", 700), "");
    EXPECT_EQ(linkOf(u"Alpha", 300, true), "");
    EXPECT_THAT(eudcFiles(), ElementsAre("own/a.tte"));
    EXPECT_EQ(found(u"Alpha-RegularOwnSigns-Regular"), "own/a.tte") << "under a name made of both";
    EXPECT_EQ(found(u"OwnSigns-Regular"), "");
}

TEST_F(EudcFonts, ALighterItalicFaceGoesBeforeTheUprightOneOfNormalWeight) {
    loadBase({{"italic.ttf", namedFont(u"Alpha", 300, true)}, {"a.ttf", namedFont(u"Alpha")}});
    write("own/a.tte", privateFont(u"Own Signs", {0xE000}));
    service().eudcMap.emplace(u"Alpha", uriOf("own/a.tte"));
    linkEudcMap(service());
    EXPECT_EQ(linkOf(u"Alpha", 300, true), "own/a.tte");
    EXPECT_EQ(linkOf(u"Alpha", 400), "");
}

TEST_F(EudcFonts, TheFamilyIsAskedForItsNormalStyleBeforeWhichFillsItsGaps) {
    loadBase({{"italic.ttf", namedFont(u"Alpha", 300, true)}, {"b.ttf", namedFont(u"Alpha", 700)}});
    write("own/a.tte", privateFont(u"Own Signs", {0xE000}));
    service().eudcMap.emplace(u"Alpha", uriOf("own/a.tte"));
    linkEudcMap(service());
    EXPECT_EQ(linkOf(u"Alpha", 700), "own/a.tte") << "as the upright face of weight 100";
}

TEST_F(EudcFonts, AFaceOfACollectionIsLinkedByItself) {
    files().write("base/two.ttc", collectionOf({namedFont(u"Zeta"), namedFont(u"Alpha")}).build());
    loadBase({});
    FS_BaseFont& base = *service().fontPool.fonts.at(0);
    FS_FontPool::addName(service().aliasPool.byName, normaliseFontName(u"Nickname"), {&base, 1},
                         FS_FontKey());
    write("own/a.tte", privateFont(u"Own Signs", {0xE000}));
    service().eudcMap.emplace(u"Nickname", uriOf("own/a.tte"));
    linkEudcMap(service());
    EXPECT_FALSE(base.getEudcFont(0));
    ASSERT_TRUE(base.getEudcFont(1));
    EXPECT_EQ(utf8(base.getEudcFont(1).font->getPostScriptName(0, 0)),
              "Alpha-RegularOwnSigns-Regular");
}

TEST_F(EudcFonts, ALinkedFontIsNotOpenedBeforeItIsNeeded) {
    loadBase({{"a.ttf", namedFont(u"Alpha")}});
    TestFont font = privateFont(u"Own Signs", {0xE000});
    font.without("cmap");
    write("own/a.tte", font);
    service().eudcMap.emplace(u"Alpha", uriOf("own/a.tte"));
    linkEudcMap(service());
    EXPECT_EQ(linkOf(u"Alpha"), "own/a.tte");
    EXPECT_TRUE(service().errors.empty());
}

TEST_F(EudcFonts, AnAliasStandsForTheFamilyOfItsFont) {
    loadBase({{"bold.ttf", namedFont(u"Alpha", 700)}, {"regular.ttf", namedFont(u"Alpha")}});
    FS_BaseFont* const bold = [this] {
        bool isAlias = false;
        return service()
            .findFont(u"Alpha", FS_FontKey::ofRequest(700, false, 5), isAlias, false)
            .font;
    }();
    FS_FontPool::addName(service().aliasPool.byName, normaliseFontName(u"Nickname"), {bold, 0},
                         FS_FontKey());
    write("own/a.tte", privateFont(u"Own Signs", {0xE000}));
    service().eudcMap.emplace(u"Nickname", uriOf("own/a.tte"));
    linkEudcMap(service());
    EXPECT_EQ(linkOf(u"Alpha", 400), "own/a.tte");
    EXPECT_EQ(linkOf(u"Alpha", 700), "");
}

TEST_F(EudcFonts, AFamilyThatIsNotThereLeavesItsFontLoadedWithoutANameAndGoesOn) {
    loadBase({{"a.ttf", namedFont(u"Beta")}});
    write("own/a.tte", privateFont(u"Own Signs", {0xE000}));
    service().eudcMap.emplace(u"Alpha", uriOf("own/a.tte"));
    service().eudcMap.emplace(u"Beta", uriOf("own/a.tte"));
    linkEudcMap(service());
    EXPECT_THAT(eudcFiles(), ElementsAre("own/a.tte", "own/a.tte"));
    EXPECT_EQ(linkOf(u"Beta"), "own/a.tte");
    EXPECT_EQ(found(u"OwnSigns-Regular"), "");
}

TEST_F(EudcFonts, FilesThatAreMissingExcludedOrOfAnotherTypeLinkNothing) {
    loadBase({{"a.ttf", namedFont(u"Alpha")}});
    write("own/excluded.tte", privateFont(u"Own Signs", {0xE000}));
    files().write("own/c.ttc", collectionOf({privateFont(u"Own Signs", {0xE000})}).build());
    files().write("own/d.tte", "no font");
    addFolder("own", false).optionsOf(u"excluded.tte").fontExclude = true;
    for (const char* const name : {"own/gone.tte", "own/excluded.tte", "own/c.ttc", "own/d.tte"}) {
        service().eudcMap.clear();
        service().eudcMap.emplace(u"Alpha", uriOf(name));
        linkEudcMap(service());
        EXPECT_EQ(linkOf(u"Alpha"), "") << name;
    }
    service().eudcMap.clear();
    service().eudcMap.emplace(u"Alpha", KWUri());
    service().eudcMap.emplace(u"Alpha2", KWUri(u"relative.tte"));
    linkEudcMap(service());
    EXPECT_THAT(eudcFiles(), IsEmpty());
}

TEST_F(EudcFonts, FontsThatAreLinkedInACircleAreAskedOnce) {
    loadBase({{"a.ttf", privateFont(u"Alpha", {0xE000})}});
    // The second entry names the font that the first one brought.
    service().eudcMap.emplace(u"Alpha", uriOf("base/a.ttf"));
    service().eudcMap.emplace(u"Alpha-RegularAlpha-Regular", uriOf("base/a.ttf"));
    linkEudcMap(service());
    bool isAlias = false;
    const FS_FontRef alpha = service().findFont(u"Alpha", FS_FontKey(), isAlias, false);
    const FS_FontRef first = alpha.font->getEudcFont(0);
    ASSERT_TRUE(first);
    const FS_FontRef second = first.font->getEudcFont(0);
    ASSERT_TRUE(second);
    EXPECT_NE(first.font, alpha.font);
    EXPECT_FALSE(second.font->getEudcFont(0));
}

} // namespace
