#include "fonts/FS_ServiceContext.h"
#include "registry/FS_ExtraFontPool.h"
#include "registry/FakeFont.h"
#include "registry/RegistryFixture.h"

#include <KWFontService17/FS_FontInfo.h>
#include <KWFontService17/FS_Functions.h>
#include <KWFontService17/FS_NewTextMetricEx.h>

#include <gtest/gtest.h>

namespace {

using namespace KWFontService_NS;
using namespace KWTest;

constexpr KWLang::LanguageID kEnglish = 1033;
constexpr KWLang::LanguageID kJapanese = 1041;

/// The one service, with the fonts that a test puts into a folder.
class Lookup : public testing::Test {
protected:
    Lookup() {
        // The fonts of another test are still there; nothing finds them.
        for (FS_FontPool* const pool : {&service().fontPool, &service().aliasPool}) {
            pool->byName.clear();
            pool->byFileName.clear();
        }
    }

    void write(std::string_view name, const TestFont& font) { files.write(name, font.build()); }
    int addAll() { return FS_AddFontFolderPath(fileUri(files.path())); }
    static FS_FontService& service() { return *getFontService(nullptr, nullptr, nullptr); }
    std::string fileOf(const FS_FontInfo& font) {
        std::string path;
        font.getFontFileName().getLocalPath().toUTF8String(path);
        return std::filesystem::path(path).filename().string();
    }
    std::string found(const UnicodeString& family, int weight, bool italic, int stretch = 0) {
        FS_FontInfo font;
        return font.createFont(family, weight, italic, stretch, nullptr, false) ? fileOf(font)
                                                                                : std::string();
    }

    TempDir files;
};

TEST_F(Lookup, BindsTheFaceOfAFamilyWithAStyle) {
    write("regular.ttf", namedFont(u"Test Sans"));
    write("bold.ttf", namedFont(u"Test Sans", 700));
    write("slanted.ttf", namedFont(u"Test Sans", 700, true));
    write("narrow.ttf", namedFont(u"Test Sans", 700, true, 3));
    ASSERT_EQ(addAll(), 4);
    EXPECT_EQ(found(u"Test Sans", 400, false), "regular.ttf");
    EXPECT_EQ(found(u"test-sans", 700, false), "bold.ttf");
    EXPECT_EQ(found(u"TESTSANS", 700, true), "slanted.ttf");
    EXPECT_EQ(found(u"Test\u3000Sans", 700, true, 3), "narrow.ttf");
    EXPECT_EQ(found(u"narrow", 0, false), "narrow.ttf") << "by its file";
    EXPECT_EQ(found(u"Bold.TTF", 0, false), "bold.ttf");
}

TEST_F(Lookup, WeightAndStretch0AreNormal) {
    write("regular.ttf", namedFont(u"Test Sans"));
    write("thin.ttf", namedFont(u"Test Sans", 100));
    write("narrow.ttf", namedFont(u"Test Sans", 400, false, 1));
    ASSERT_EQ(addAll(), 3);
    EXPECT_EQ(found(u"Test Sans", 0, false, 0), "regular.ttf");
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(u"Test Sans", 0, false, nullptr, false));
    EXPECT_EQ(fileOf(font), "regular.ttf") << "the form without a stretch";
}

TEST_F(Lookup, AFontThatIsNotThereIsNoErrorAndLeavesTheObjectAsItWas) {
    write("a.ttf", namedFont(u"Alpha"));
    ASSERT_EQ(addAll(), 1);
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(u"Alpha", 0, false, nullptr, false));
    EXPECT_FALSE(font.createFont(u"Nobody", 0, false, nullptr, false));
    EXPECT_FALSE(font.getError().isError());
    EXPECT_EQ(fileOf(font), "a.ttf");
}

TEST_F(Lookup, AFontThatDoesNotOpenAnswersItsErrorEveryTime) {
    write("a.ttf", namedFont(u"Alpha"));
    write("bad.ttf", namedFont(u"Bad").without("hmtx"));
    ASSERT_EQ(addAll(), 2) << "the scan does not read hmtx";
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(u"Alpha", 0, false, nullptr, false));
    for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_FALSE(font.createFont(u"Bad", 0, false, nullptr, false));
        EXPECT_EQ(font.getError().getCode(), FS_ERROR_FONT_FILE) << attempt;
        EXPECT_EQ(fileOf(font), "a.ttf") << "it keeps its font";
    }
    EXPECT_FALSE(font.createFont(u"Nobody", 0, false, nullptr, false));
    EXPECT_FALSE(font.getError().isError()) << "the error of the call before is cleared";
}

TEST_F(Lookup, AFileThatVanishedAfterTheScanDoesNotOpen) {
    write("gone.ttf", namedFont(u"Gone"));
    ASSERT_EQ(addAll(), 1);
    std::filesystem::remove(files.path("gone.ttf"));
    FS_FontInfo font;
    EXPECT_FALSE(font.createFont(u"Gone", 0, false, nullptr, false));
    EXPECT_EQ(font.getError().getCode(), FS_ERROR_FONT_READ);
    EXPECT_FALSE(font.isCreatedFont());
}

TEST_F(Lookup, TakesNoReference) {
    write("a.ttf", namedFont(u"Alpha"));
    ASSERT_EQ(addAll(), 1);
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(u"Alpha", 0, false, nullptr, false));
    EXPECT_EQ(font.getFont()->getRefCount(), 1) << "that of the pool";
}

/// A font that is found under a name of one pool.
class PooledFont : public FakeFont {
public:
    using FakeFont::FakeFont;

    int loads = 0;
    int refusals = 0; ///< of the first loads
    bool opens = true;
    bool vertical = false;
    int madeVertical = 0;
    FS_FontRef link;

    bool loadFont(KWError& error, int, std::istream*) override {
        ++loads;
        return (opens && loads > refusals) || fontError(error, FS_ERROR_FONT_FILE, u"refused");
    }
    int getUnitsPerEm(int faceIndex) const override { return 1000 + faceIndex; }
    bool hasVerticalGlyph(int) const override { return vertical; }
    void setHasVerticalGlyph(int) override { ++madeVertical; }
    void setEudcFont(const FS_FontRef& ref, int) override { link = ref; }
    FS_FontRef getEudcFont(int) const override { return link; }
    UnicodeString getPreferredFamily(KWLang::LanguageID language, int) const override {
        return language == kJapanese ? UnicodeString(u"\u660E\u671D") : UnicodeString();
    }
};

template <class Pool>
KWPtr<PooledFont> pooled(Pool& pool, const UnicodeString& name, std::int16_t face = 0) {
    KWPtr<PooledFont> font(new PooledFont);
    font->family = name;
    pool.fonts.push_back(font);
    FS_FontPool::addName(pool.byName, normaliseFontName(name), {font.get(), face}, FS_FontKey());
    return font;
}

FS_BaseFont* bound(const UnicodeString& family, FS_ExtraFonts* extra, bool skipAliases) {
    FS_FontInfo font;
    return font.createFont(family, 0, false, 0, extra, skipAliases) ? font.getFont() : nullptr;
}

TEST_F(Lookup, SearchesExtraFontsThenAliasesThenAllFonts) {
    FS_ExtraFontPool extra;
    const auto ofDocument = pooled(extra, u"Name");
    const auto ofAlias = pooled(service().aliasPool, u"Name");
    const auto real = pooled(service().fontPool, u"Name");
    EXPECT_EQ(bound(u"Name", &extra, false), ofDocument.get());
    EXPECT_EQ(bound(u"Name", &extra, true), ofDocument.get());
    EXPECT_EQ(bound(u"Name", nullptr, false), ofAlias.get());
    EXPECT_EQ(bound(u"Name", nullptr, true), real.get());
    EXPECT_EQ(ofDocument->loads, 0) << "extra fonts were opened when they were appended";
    EXPECT_EQ(real->loads, 1);
}

TEST_F(Lookup, AnExtraFontPoolWithoutTheNameIsPassedBy) {
    FS_ExtraFontPool extra;
    pooled(extra, u"Other");
    const auto real = pooled(service().fontPool, u"Name");
    EXPECT_EQ(bound(u"Name", &extra, false), real.get());
}

TEST_F(Lookup, StoresTheFace) {
    pooled(service().fontPool, u"Name", 3);
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(u"Name", 0, false, nullptr, false));
    EXPECT_EQ(font.getUnitsPerEm(), 1003);
}

TEST_F(Lookup, ALinkedEudcFontIsOpenedToo) {
    const auto main = pooled(service().fontPool, u"Main");
    const auto link = pooled(service().fontPool, u"Link");
    main->link = {link.get(), 0};
    EXPECT_EQ(bound(u"Main", nullptr, false), main.get());
    EXPECT_EQ(link->loads, 1);
    EXPECT_EQ(link->madeVertical, 0);
}

TEST_F(Lookup, ALinkedEudcFontOfAVerticalFaceIsMadeVertical) {
    const auto main = pooled(service().fontPool, u"Main");
    const auto link = pooled(service().fontPool, u"Link");
    main->link = {link.get(), 0};
    main->vertical = true;
    EXPECT_EQ(bound(u"Main", nullptr, false), main.get());
    EXPECT_EQ(link->madeVertical, 1);
}

TEST_F(Lookup, ALinkThatDoesNotOpenIsTriedTwiceAndClearedAndTheFontIsThere) {
    const auto main = pooled(service().fontPool, u"Main");
    const auto link = pooled(service().fontPool, u"Link");
    main->link = {link.get(), 0};
    link->opens = false;
    FS_FontInfo font;
    EXPECT_TRUE(font.createFont(u"Main", 0, false, nullptr, false));
    EXPECT_FALSE(font.getError().isError());
    EXPECT_EQ(link->loads, 2);
    EXPECT_FALSE(main->link);
    EXPECT_EQ(link->madeVertical, 0);
}

TEST_F(Lookup, ALinkThatOpensTheSecondTimeServesButIsNoLongerLinked) {
    const auto main = pooled(service().fontPool, u"Main");
    const auto link = pooled(service().fontPool, u"Link");
    main->link = {link.get(), 0};
    main->vertical = true;
    link->refusals = 1;
    EXPECT_EQ(bound(u"Main", nullptr, false), main.get());
    EXPECT_EQ(link->loads, 2);
    EXPECT_FALSE(main->link);
    EXPECT_EQ(link->madeVertical, 1);
}

TEST_F(Lookup, TheLinkOfAnExtraFontIsOpenedThoughTheFontIsNot) {
    FS_ExtraFontPool extra;
    const auto main = pooled(extra, u"Main");
    const auto link = pooled(service().fontPool, u"Link");
    main->link = {link.get(), 0};
    EXPECT_EQ(bound(u"Main", &extra, false), main.get());
    EXPECT_EQ(main->loads, 0);
    EXPECT_EQ(link->loads, 1);
}

TEST_F(Lookup, QueriesByNameAskTheExtraFontsFirst) {
    FS_ExtraFontPool extra;
    pooled(extra, u"Name")->family = u"Of the document";
    const auto real = pooled(service().fontPool, u"Name");
    EXPECT_EQ(FS_FontInfo::getFamilyName(kEnglish, u"Name", &extra),
              UnicodeString(u"Of the document"));
    EXPECT_EQ(FS_FontInfo::getFamilyName(kEnglish, u"Name", nullptr), UnicodeString(u"Name"));
    extra.fonts.clear();
    extra.byName.clear();
    const KWPtr<PooledFont> brought(new PooledFont(u"/document/brought.ttf"));
    extra.fonts.push_back(brought);
    FS_FontPool::addName(extra.byName, u"NAME", {brought.get(), 0}, FS_FontKey());
    EXPECT_EQ(FS_FontInfo::getFontFolderPath(u"Name", 0, false, 0, &extra), brought->getUri());
    EXPECT_EQ(FS_FontInfo::getFontFolderPath(u"Name", 0, false, 0, nullptr), real->getUri());
}

TEST_F(Lookup, FontFolderPathIsDespiteItsNameTheUriOfTheFile) {
    write("a.ttf", namedFont(u"Alpha"));
    write("b.ttf", namedFont(u"Alpha", 700));
    ASSERT_EQ(addAll(), 2);
    const FS_FontInfo none;
    EXPECT_EQ(FS_FontInfo::getFontFolderPath(u"alpha", 700, false, 0, nullptr), files.uri("b.ttf"));
    EXPECT_TRUE(FS_FontInfo::getFontFolderPath(u"beta", 700, false, 0, nullptr).isEmpty());
}

TEST_F(Lookup, FontFolderPathOpensNothing) {
    const auto font = pooled(service().fontPool, u"Main");
    font->opens = false;
    EXPECT_EQ(FS_FontInfo::getFontFolderPath(u"Main", 0, false, 0, nullptr), font->getUri());
    EXPECT_EQ(font->loads, 0);
}

TEST_F(Lookup, FamilyNameIsThatOfTheNormalStyleInTheLanguage) {
    TestFont regular = namedFont(u"Alpha");
    regular.name.records.push_back(windowsName(1, u"\u30A2", kJapanese));
    write("a.ttf", regular);
    write("b.ttf", namedFont(u"Alpha", 700));
    ASSERT_EQ(addAll(), 2);
    EXPECT_EQ(FS_FontInfo::getFamilyName(kJapanese, u"ALPHA", nullptr), UnicodeString(u"\u30A2"));
    EXPECT_EQ(FS_FontInfo::getFamilyName(kEnglish, u"\u30A2", nullptr), UnicodeString(u"Alpha"));
    EXPECT_EQ(FS_FontInfo::getFamilyName(0, u"b.ttf", nullptr), UnicodeString(u"Alpha"));
    EXPECT_TRUE(FS_FontInfo::getFamilyName(0, u"Nobody", nullptr).isEmpty());
}

TEST_F(Lookup, FamilyNameIsTheTypographicOneWhereThatIsPreferredAndThere) {
    const auto font = pooled(service().fontPool, u"Main");
    EXPECT_EQ(FS_FontInfo::getFamilyName(kJapanese, u"Main", nullptr),
              UnicodeString(u"\u660E\u671D"));
    EXPECT_EQ(FS_FontInfo::getFamilyName(kEnglish, u"Main", nullptr), UnicodeString(u"Main"));
    service().usePreferredFamily = false;
    EXPECT_EQ(FS_FontInfo::getFamilyName(kJapanese, u"Main", nullptr), UnicodeString(u"Main"));
    service().usePreferredFamily = true;
}

TEST_F(Lookup, FamilyNameFollowsAliases) {
    pooled(service().aliasPool, u"Alias")->family = u"Real";
    EXPECT_EQ(FS_FontInfo::getFamilyName(kEnglish, u"Alias", nullptr), UnicodeString(u"Real"));
}

/// A font whose record of text metrics has one code page, that of its face.
class MeasuredFont : public PooledFont {
public:
    using PooledFont::PooledFont;
    bool getNewTextMetricEx(FS_NewTextMetricEx& metric, int faceIndex) const override {
        metric.setCodePageBits0(1U << faceIndex);
        return true;
    }
};

TEST_F(Lookup, TextMetricsAreThoseOfTheFaceOfAFamilyWithAStyle) {
    write("a.ttf", namedFont(u"Alpha"));
    TestFont narrow = namedFont(u"Alpha", 700, true, 3);
    narrow.os2.usWinAscent = 901;
    write("b.ttf", narrow);
    ASSERT_EQ(addAll(), 2);
    FS_NewTextMetricEx metric;
    ASSERT_TRUE(FS_FontInfo::getNewTextMetricEx(u"Alpha", 0, false, 0, metric, nullptr));
    EXPECT_EQ(metric.getAscent(), 800);
    ASSERT_TRUE(FS_FontInfo::getNewTextMetricEx(u"alpha", 700, true, 3, metric, nullptr));
    EXPECT_EQ(metric.getAscent(), 901);
    ASSERT_TRUE(FS_FontInfo::getNewTextMetricEx(u"Alpha", 400, false, metric, nullptr));
    EXPECT_EQ(metric.getAscent(), 800) << "the form without a stretch";
}

TEST_F(Lookup, TextMetricsOfAnUnknownNameOrAFontThatDoesNotOpenAreFalse) {
    write("bad.ttf", namedFont(u"Bad").without("hmtx"));
    ASSERT_EQ(addAll(), 1);
    FS_NewTextMetricEx metric;
    EXPECT_FALSE(FS_FontInfo::getNewTextMetricEx(u"Nobody", 0, false, metric, nullptr));
    EXPECT_FALSE(FS_FontInfo::getNewTextMetricEx(u"Bad", 0, false, metric, nullptr));
    EXPECT_FALSE(metric.hasValue());
}

TEST_F(Lookup, TextMetricsComeFromTheDocumentsFontsFirstThenAliases) {
    FS_ExtraFontPool extra;
    const auto of = [](FS_FontPool& pool, std::int16_t face) {
        const KWPtr<MeasuredFont> font(new MeasuredFont);
        pool.fonts.push_back(font);
        FS_FontPool::addName(pool.byName, u"NAME", {font.get(), face}, FS_FontKey());
        return font;
    };
    const auto ofDocument = of(extra, 3);
    of(service().aliasPool, 2);
    of(service().fontPool, 1);
    FS_NewTextMetricEx metric;
    ASSERT_TRUE(FS_FontInfo::getNewTextMetricEx(u"Name", 0, false, 0, metric, &extra));
    EXPECT_EQ(metric.getCodePageBits0(), 1U << 3);
    EXPECT_EQ(ofDocument->loads, 1) << "opened, too";
    metric = FS_NewTextMetricEx();
    ASSERT_TRUE(FS_FontInfo::getNewTextMetricEx(u"Name", 0, false, 0, metric, nullptr));
    EXPECT_EQ(metric.getCodePageBits0(), 1U << 2);
}

} // namespace
