#include "registry/FS_FontPool.h"

#include "registry/FakeFont.h"
#include "support/DefaultLocale.h"

#include <gtest/gtest.h>

#include <set>

namespace {

using namespace KWFontService_NS;
using KWTest::DefaultLocale;
using KWTest::FakeFont;

KWPtr<FakeFont> fakeFont(const UnicodeString& file, const UnicodeString& family) {
    KWPtr<FakeFont> font(new FakeFont(file));
    font->family = family;
    return font;
}

/// The first face of a name; null when the pool does not know it.
FS_BaseFont* fontOf(FS_FontPool& pool, const UnicodeString& name) {
    FS_FontFamilyMap* faces = nullptr;
    return pool.findName(name, faces) ? faces->begin()->second.font : nullptr;
}

// --- names ------------------------------------------------------------------------------------

// --- style keys -------------------------------------------------------------------------------

TEST(FontKey, ComparesWeightThenItalicThenStretch) {
    const FS_FontKey keys[] = {{300, true, 9}, {400, false, 1}, {400, false, 5},
                               {400, true, 1}, {400, true, 5},  {700, false, 1}};
    for (std::size_t i = 0; i + 1 < std::size(keys); ++i)
        EXPECT_LT(keys[i], keys[i + 1]) << i;
}

TEST(FontKey, ReplacesAMissingWeightBy400AndAMissingWidthBy5) {
    const KWPtr<FakeFont> font(new FakeFont);
    EXPECT_EQ(FS_FontKey::ofFace(*font, 0), (FS_FontKey{400, false, 5}));
    font->weight = 250;
    font->italic = true;
    font->width = 3;
    EXPECT_EQ(FS_FontKey::ofFace(*font, 0), (FS_FontKey{250, true, 3}));
}

// --- the maps ---------------------------------------------------------------------------------

TEST(FontPool, MapsStartWithEightBucketsAtLeastAndALoadFactorOfOne) {
    const FS_FontPool pool;
    EXPECT_GE(pool.byName.bucket_count(), 8U);
    EXPECT_GE(pool.byFileName.bucket_count(), 8U);
    EXPECT_GE(pool.byUri.bucket_count(), 8U);
    EXPECT_EQ(pool.byName.max_load_factor(), 1.0F);
}

TEST(FontPool, AddNameSkipsAnEmptyName) {
    FS_FontPool pool;
    FS_FontPool::addName(pool.byName, UnicodeString(), {}, {});
    EXPECT_TRUE(pool.byName.empty());
}

TEST(FontPool, FirstRegistrationOfANameAndStyleWins) {
    FS_FontPool pool;
    const auto first = fakeFont(u"/a/first.ttf", u"Same");
    const auto second = fakeFont(u"/b/second.ttf", u"SAME");
    for (const auto& font : {first, second}) {
        pool.fonts.push_back(font);
        pool.registerFont(font);
    }
    EXPECT_EQ(pool.fonts.size(), 2U);
    EXPECT_EQ(fontOf(pool, u"Same"), first.get());
    EXPECT_EQ(fontOf(pool, u"second"), second.get()) << "the file name still tells them apart";
}

TEST(FontPool, FontsOfOneNameAndDifferentStylesStandSideBySide) {
    FS_FontPool pool;
    const auto regular = fakeFont(u"/a/r.ttf", u"Same");
    const auto bold = fakeFont(u"/a/b.ttf", u"Same");
    bold->weight = 700;
    pool.registerFont(bold);
    pool.registerFont(regular);
    FS_FontFamilyMap* faces = nullptr;
    ASSERT_TRUE(pool.findName(u"same", faces));
    ASSERT_EQ(faces->size(), 2U);
    EXPECT_EQ(faces->begin()->second.font, regular.get());
    EXPECT_EQ(faces->rbegin()->second.font, bold.get());
}

TEST(FontPool, NamesThatDifferInBlanksHyphensIdeographicSpacesOrCaseAreOneKey) {
    FS_FontPool pool;
    const auto font = fakeFont(u"/a/x.ttf", u"Noto Sans-Serif");
    pool.registerFont(font);
    for (const char16_t* name :
         {u"notosansserif", u"NOTO-SANS-SERIF", u"Noto\u3000Sans Serif", u" N oto SansSerif"})
        EXPECT_EQ(fontOf(pool, name), font.get());
    EXPECT_EQ(fontOf(pool, u"Noto_Sans_Serif"), nullptr);
}

TEST(FontPool, FindsAFileWithAndWithoutItsExtensionInAnyCase) {
    FS_FontPool pool;
    const auto font = fakeFont(u"/a/ABC x.Ttf", u"Family");
    pool.registerFont(font);
    for (const char16_t* name : {u"abc x.ttf", u"ABC X.TTF", u"abc x", u"Abc X"})
        EXPECT_EQ(fontOf(pool, name), font.get());
    EXPECT_EQ(fontOf(pool, u"abcx"), nullptr) << "file names keep their blanks";
    EXPECT_EQ(pool.byFileName.size(), 2U);
}

TEST(FontPool, FileNamesFollowNoLocale) {
    const DefaultLocale turkish("tr_TR");
    FS_FontPool pool;
    const auto font = fakeFont(u"/a/ARIAL.TTF", u"Family");
    pool.registerFont(font);
    EXPECT_EQ(fontOf(pool, u"arial.ttf"), font.get());
}

TEST(FontPool, FontNamesGoBeforeFileNames) {
    FS_FontPool pool;
    const auto byFile = fakeFont(u"/a/name.ttf", u"Other");
    const auto byName = fakeFont(u"/a/other.ttf", u"Name");
    pool.registerFont(byFile);
    pool.registerFont(byName);
    EXPECT_EQ(fontOf(pool, u"name"), byName.get());
    EXPECT_EQ(fontOf(pool, u"name.ttf"), byFile.get());
}

TEST(FontPool, FindNameLeavesItsResultWhenTheNameIsUnknown) {
    FS_FontPool pool;
    FS_FontFamilyMap untouched;
    FS_FontFamilyMap* faces = &untouched;
    EXPECT_FALSE(pool.findName(u"nobody", faces));
    EXPECT_FALSE(pool.findName(UnicodeString(), faces));
    EXPECT_EQ(faces, &untouched);
}

TEST(FontPool, DataAndEmptyUrisGiveNoFileName) {
    FS_FontPool pool;
    pool.addFileName(KWUri(), {}, {});
    pool.addFileName(KWUri(u"data:font/ttf;base64,AAEAAA=="), {}, {});
    EXPECT_TRUE(pool.byFileName.empty());
}

TEST(FontPool, ExtraFamiliesAreNormalisedAndEmptyOnesSkipped) {
    FS_FontPool pool;
    const auto font = fakeFont(u"/a/x.ttf", u"Own");
    pool.addExtraFamilies({u"-", u"My Family", UnicodeString()}, {font.get(), 3}, {700, true, 5});
    ASSERT_EQ(pool.byName.size(), 1U);
    const auto& [name, faces] = *pool.byName.begin();
    EXPECT_EQ(name, UnicodeString(u"MYFAMILY"));
    EXPECT_EQ(faces.begin()->first, (FS_FontKey{700, true, 5}));
    EXPECT_EQ(faces.begin()->second, (FS_FontRef{font.get(), 3}));
}

// --- references -------------------------------------------------------------------------------

TEST(FontPool, RegisterFontGivesItsReferenceBack) {
    FS_FontPool pool;
    const auto font = fakeFont(u"/a/x.ttf", u"Own");
    pool.registerFont(font);
    EXPECT_EQ(font->getRefCount(), 1);
}

TEST(FontPool, HoldsItsFontsUntilItIsDestroyed) {
    bool destroyed = false;
    {
        FS_FontPool pool;
        pool.fonts.emplace_back(new FakeFont);
        static_cast<FakeFont*>(pool.fonts.front().get())->onDestroy = [&] { destroyed = true; };
        pool.registerFont(pool.fonts.front());
        EXPECT_FALSE(destroyed);
    }
    EXPECT_TRUE(destroyed);
}

// --- fresh names ------------------------------------------------------------------------------

TEST(RegisterNamedFont, CountsFromZeroOverTheNameAsItCame) {
    FS_FontPool pool;
    const KWPtr<FakeFont> fonts[] = {KWPtr(new FakeFont), KWPtr(new FakeFont), KWPtr(new FakeFont)};
    for (const auto& font : fonts)
        pool.registerNamedFont(*font, UnicodeString());
    EXPECT_EQ(fonts[0]->postScript, UnicodeString(u"Fake-PS"));
    EXPECT_EQ(fonts[1]->postScript, UnicodeString(u"Fake-PS0"));
    EXPECT_EQ(fonts[2]->postScript, UnicodeString(u"Fake-PS1"));
    EXPECT_EQ(fontOf(pool, u"fakeps"), fonts[0].get());
    EXPECT_EQ(fontOf(pool, u"fakeps0"), fonts[1].get());
    EXPECT_EQ(fontOf(pool, u"fakeps1"), fonts[2].get());
}

TEST(RegisterNamedFont, GoesOnWithTwoDigits) {
    FS_FontPool pool;
    KWPtr<FakeFont> last;
    for (int i = 0; i < 12; ++i) {
        last = new FakeFont;
        pool.fonts.push_back(last);
        pool.registerNamedFont(*last, UnicodeString());
    }
    EXPECT_EQ(last->postScript, UnicodeString(u"Fake-PS10"));
}

TEST(RegisterNamedFont, PutsThePrefixInFront) {
    FS_FontPool pool;
    const KWPtr<FakeFont> font(new FakeFont);
    pool.registerNamedFont(*font, u"EUDC-");
    EXPECT_EQ(font->postScript, UnicodeString(u"EUDC-Fake-PS"));
    EXPECT_EQ(fontOf(pool, u"EUDCFakePS"), font.get());
}

TEST(RegisterNamedFont, TakesTheFamilyWhenThePostScriptNameIs00) {
    FS_FontPool pool;
    const KWPtr<FakeFont> font(new FakeFont);
    font->postScript = u"00";
    pool.registerNamedFont(*font, UnicodeString());
    EXPECT_EQ(font->postScript, UnicodeString(u"Fake Family"));
}

TEST(RegisterNamedFont, PassesByNamesThatAreFilesToo) {
    FS_FontPool pool;
    const auto file = fakeFont(u"/a/fake-ps.ttf", u"Other");
    pool.registerFont(file);
    const KWPtr<FakeFont> font(new FakeFont);
    pool.registerNamedFont(*font, UnicodeString());
    EXPECT_EQ(font->postScript, UnicodeString(u"Fake-PS0"));
}

TEST(RegisterNamedFont, EntersTheStyleOfTheFont) {
    FS_FontPool pool;
    const KWPtr<FakeFont> font(new FakeFont);
    font->weight = 700;
    font->italic = true;
    pool.registerNamedFont(*font, UnicodeString());
    FS_FontFamilyMap* faces = nullptr;
    ASSERT_TRUE(pool.findName(u"Fake-PS", faces));
    EXPECT_EQ(faces->begin()->first, (FS_FontKey{700, true, 5}));
}

TEST(RegisterNamedFont, TellsTheFontAHyphenButEntersNothing) {
    FS_FontPool pool;
    const KWPtr<FakeFont> font(new FakeFont);
    font->postScript = u"";
    pool.registerNamedFont(*font, u"-");
    EXPECT_EQ(font->postScript, UnicodeString(u"-"));
    EXPECT_TRUE(pool.byName.empty());
}

TEST(RegisterNamedFont, KeepsNoReference) {
    FS_FontPool pool;
    const KWPtr<FakeFont> font(new FakeFont);
    pool.registerNamedFont(*font, UnicodeString());
    EXPECT_EQ(font->getRefCount(), 1);
    EXPECT_TRUE(pool.fonts.empty());
}

} // namespace
