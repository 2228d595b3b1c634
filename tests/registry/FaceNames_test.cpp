#include "registry/FaceNames.h"

#include "fonts/FS_TrueType.h"
#include "registry/FS_FontService.h"
#include "support/FontBuilder.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using namespace KWFontService_NS;
using namespace KWTest;

/// Sets `usePreferredFamily` of the service for the length of a scope.
class PreferredFamily {
public:
    explicit PreferredFamily(bool use)
        : service_(*getFontService(nullptr, nullptr, nullptr)),
          previous_(service_.usePreferredFamily) {
        service_.usePreferredFamily = use;
    }
    ~PreferredFamily() { service_.usePreferredFamily = previous_; }

private:
    FS_FontService& service_;
    bool previous_;
};

KWPtr<FS_TrueType> scanned(const TestFont& source, const UnicodeString& file = u"/a/Test.ttf") {
    KWPtr<FS_TrueType> font(new FS_TrueType(KWUri(file)));
    std::istringstream stream(source.build().str());
    KWError error;
    EXPECT_TRUE(font->scanFont(error, stream)) << error.getCode();
    return font;
}

TestFont fontWithNames(std::vector<NameRecord> records) {
    TestFont source = TestFont::latin();
    source.name.records = std::move(records);
    return source;
}

FS_FontRef faceOf(FS_FontPool& pool, const UnicodeString& name) {
    FS_FontFamilyMap* faces = nullptr;
    return pool.findName(name, faces) ? faces->begin()->second : FS_FontRef();
}

TEST(FaceNames, EntersFamilyFullAndPostScriptNameInEveryLanguage) {
    constexpr std::uint16_t kJapanese = 1041;
    const auto font = scanned(fontWithNames({
        windowsName(1, u"Mincho"),
        windowsName(4, u"Mincho Regular"),
        windowsName(6, u"Mincho-R"),
        windowsName(1, u"\u660E\u671D", kJapanese),
        windowsName(4, u"\u660E\u671D\u3000\u4E2D", kJapanese),
    }));
    FS_FontPool pool;
    pool.registerFont(font);
    for (const char16_t* name : {u"mincho", u"MINCHO-REGULAR", u"minchor", u"\u660E\u671D",
                                 u"\u660E\u671D\u4E2D", u"test", u"TEST.TTF"})
        EXPECT_EQ(faceOf(pool, name), (FS_FontRef{font.get(), 0}));
    EXPECT_EQ(pool.byName.size(), 5U);
}

TEST(FaceNames, LeavesOutSubfamilyAndUniqueId) {
    const auto font = scanned(fontWithNames({
        windowsName(1, u"Mincho"),
        windowsName(2, u"Sub"),
        windowsName(3, u"Unique"),
        windowsName(17, u"Typographic Sub"),
    }));
    FS_FontPool pool;
    pool.registerFont(font);
    EXPECT_EQ(pool.byName.size(), 1U);
}

TEST(FaceNames, TypographicFamilyCountsWhenThePreferredFamilyIsInUse) {
    const auto font = scanned(fontWithNames({
        windowsName(1, u"Test Light"),
        windowsName(16, u"Typographic"),
    }));
    for (const bool use : {true, false}) {
        const PreferredFamily setting(use);
        FS_FontPool pool;
        pool.registerFont(font);
        EXPECT_EQ(faceOf(pool, u"typographic").font, use ? font.get() : nullptr);
        EXPECT_EQ(faceOf(pool, u"testlight").font, font.get());
    }
}

TEST(FaceNames, MacintoshEnglishIsALanguageOfItsOwn) {
    const auto font = scanned(fontWithNames({
        macName(1, "Old Family"),
        windowsName(1, u"New Family"),
    }));
    FS_FontPool pool;
    pool.registerFont(font);
    EXPECT_EQ(faceOf(pool, u"oldfamily").font, font.get());
    EXPECT_EQ(faceOf(pool, u"newfamily").font, font.get());
}

TEST(FaceNames, AReplacedPostScriptNameIsNoNameOfTheFont) {
    const auto font = scanned(fontWithNames({
        macName(1, "Family"),
        windowsName(1, u"Family"),
        windowsName(6, u"Own-PS"),
    }));
    font->setPostScriptName(u"Given", 0);
    FS_FontPool pool;
    pool.registerFont(font);
    EXPECT_EQ(faceOf(pool, u"ownps").font, font.get());
    EXPECT_EQ(faceOf(pool, u"given").font, nullptr);
}

TEST(FaceNames, ANameThatIsOnlyAHyphenIsSkipped) {
    const auto font = scanned(fontWithNames({windowsName(1, u"Family"), windowsName(4, u"-")}));
    FS_FontPool pool;
    pool.registerFont(font);
    EXPECT_EQ(pool.byName.size(), 1U);
}

TEST(FaceNames, AliasesOfTheFontAreEnteredAsWell) {
    const auto font = scanned(fontWithNames({windowsName(1, u"Family")}));
    font->addFontAlias(u"Given Name");
    FS_FontPool pool;
    pool.registerFont(font);
    EXPECT_EQ(faceOf(pool, u"given-name").font, font.get());
}

TEST(FaceNames, TheKeyIsTheStyleOfTheFace) {
    TestFont source = fontWithNames({windowsName(1, u"Family")});
    source.os2.usWeightClass = 700;
    source.os2.usWidthClass = 3;
    source.os2.fsSelection = 1; // italic
    const auto font = scanned(source);
    FS_FontPool pool;
    pool.registerFont(font);
    for (const char16_t* name : {u"family", u"test", u"test.ttf"}) {
        FS_FontFamilyMap* faces = nullptr;
        ASSERT_TRUE(pool.findName(name, faces));
        ASSERT_EQ(faces->size(), 1U);
        EXPECT_EQ(faces->begin()->first, (FS_FontKey{700, true, 3}));
    }
}

TEST(FaceNames, AFaceOfACollectionIsEnteredUnderItsIndex) {
    const auto font = scanned(fontWithNames({windowsName(1, u"Family")}));
    FS_FontPool pool;
    registerFaceNames(pool, *font, 2, font->face(2)->names());
    EXPECT_EQ(faceOf(pool, u"family"), (FS_FontRef{font.get(), 2}));
}

} // namespace
