#include "service/FontConfigPath.h"

#include "service/FakeFolders.h"

#include <KWFontService17/FS_Functions.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace KWFontService_NS;
using KWPlatform::KnownFolder;
using KWTest::FakeFolders;

TEST(ExpandFontPath, ReplacesEveryWordEverywhere) {
    FakeFolders system;
    system.folders = {{KnownFolder::fonts, u"/fonts"}, {KnownFolder::localAppData, u"/home/data"}};
    EXPECT_EQ(expandFontPath(u"@@WINFONTS@@/a:@@WINFONTS@@/b"),
              UnicodeString(u"/fonts/a:/fonts/b"));
    EXPECT_EQ(expandFontPath(u"@@LOCALAPPDATA@@/x"), UnicodeString(u"/home/data/x"));
    EXPECT_EQ(expandFontPath(u"@@winfonts@@ @WINFONTS@"),
              UnicodeString(u"@@winfonts@@ @WINFONTS@"));
}

TEST(ExpandFontPath, AWordCountsWhereverItStands) {
    EXPECT_EQ(expandFontPath(u"/srv@@HOME@@/x/@@HOME@@", "/me"), UnicodeString(u"/srv/me/x//me"));
}

TEST(ExpandFontPath, TheUsersFontsLieInTheirLocalData) {
    FakeFolders system;
    system.folders = {{KnownFolder::localAppData, u"/home/data"}};
    const UnicodeString expected = KWPlatform::preferredSeparator() == u'\\'
                                       ? UnicodeString(u"/home/data\\Microsoft\\Windows\\Fonts")
                                       : UnicodeString(u"/home/data/fonts");
    EXPECT_EQ(expandFontPath(u"@@USERWINFONTS@@"), expected);
}

TEST(ExpandFontPath, AWordWhoseFolderIsNotKnownStays) {
    FakeFolders system;
    EXPECT_EQ(expandFontPath(u"@@WINFONTS@@/a"), UnicodeString(u"@@WINFONTS@@/a"));
    EXPECT_EQ(expandFontPath(u"@@APPDATA@@/a"), UnicodeString(u"@@APPDATA@@/a"));
    EXPECT_EQ(expandFontPath(u"@@LOCALAPPDATA@@/a"), UnicodeString(u"@@LOCALAPPDATA@@/a"));
    EXPECT_TRUE(expandFontPath(u"@@USERWINFONTS@@").startsWith(u"@@LOCALAPPDATA@@", 16));
}

TEST(ExpandFontPath, KnowsTheFoldersOfSettingsAndOfLocalData) {
    FakeFolders system;
    system.folders = {{KnownFolder::appData, u"/settings"}, {KnownFolder::localAppData, u"/data"}};
    EXPECT_EQ(expandFontPath(u"@@APPDATA@@/f"), UnicodeString(u"/settings/f"));
    EXPECT_EQ(expandFontPath(u"@@LOCALAPPDATA@@/f"), UnicodeString(u"/data/f"));
}

TEST(ExpandFontPath, HomeStandsForWhatTheHostGave) {
    EXPECT_EQ(expandFontPath(u"@@HOME@@/a:@@HOME@@", "/srv/app"),
              UnicodeString(u"/srv/app/a:/srv/app"));
    EXPECT_EQ(expandFontPath(u"@@HOME@@/a"), UnicodeString(u"@@HOME@@/a"));
    EXPECT_EQ(expandFontPath(u"@@HOME@@/a", nullptr), UnicodeString(u"@@HOME@@/a"));
    EXPECT_EQ(expandFontPath(u"@@HOME@@/a", ""), UnicodeString(u"@@HOME@@/a"));
    EXPECT_EQ(expandFontPath(u"@@HOME@@", "/\xFF"), UnicodeString(u"/\xDCFF")) << "a path is bytes";
}

TEST(ExpandFontPath, ReplacesLaterWordsInWhatStandsForEarlierOnes) {
    FakeFolders system;
    system.folders = {{KnownFolder::fonts, u"@@APPDATA@@"},
                      {KnownFolder::appData, u"@@LOCALAPPDATA@@"},
                      {KnownFolder::localAppData, u"@@HOME@@"}};
    EXPECT_EQ(expandFontPath(u"@@WINFONTS@@", "/h"), UnicodeString(u"/h"));
}

TEST(ExpandFontPath, LeavesEarlierWordsInWhatStandsForLaterOnes) {
    FakeFolders system;
    system.folders = {{KnownFolder::fonts, u"/fonts"},
                      {KnownFolder::appData, u"@@WINFONTS@@"},
                      {KnownFolder::localAppData, u"@@USERWINFONTS@@@@APPDATA@@"}};
    EXPECT_EQ(expandFontPath(u"@@APPDATA@@"), UnicodeString(u"@@WINFONTS@@"));
    EXPECT_EQ(expandFontPath(u"@@LOCALAPPDATA@@"), UnicodeString(u"@@USERWINFONTS@@@@APPDATA@@"));
    EXPECT_EQ(expandFontPath(u"@@HOME@@", "@@LOCALAPPDATA@@@@HOME@@"),
              UnicodeString(u"@@LOCALAPPDATA@@@@HOME@@"));
}

TEST(ExpandFontPath, TakesTimeInProportionToTheText) {
    UnicodeString text;
    for (int i = 0; i < 200000; ++i)
        text.append(u"@@HOME@@");
    EXPECT_EQ(expandFontPath(text, "/a/longer/home/folder").length(), 200000 * 21);
}

TEST(FontFolders, AreTheExpansionsOfTheBareWords) {
    FakeFolders system;
    system.folders = {{KnownFolder::fonts, u"/fonts"}, {KnownFolder::localAppData, u"/home/data"}};
    EXPECT_EQ(getWinFontsPath(), UnicodeString(u"/fonts"));
    EXPECT_EQ(getUserWinFontsPath(), expandFontPath(u"@@USERWINFONTS@@"));
}

TEST(FontFolders, OfTheRealSystemAreThoseOfThePlatform) {
    KWPlatform::System& native = KWPlatform::nativeSystem();
    EXPECT_EQ(getWinFontsPath(), UnicodeString(native.knownFolder(KnownFolder::fonts).c_str()));
    EXPECT_EQ(getUserWinFontsPath(),
              UnicodeString(native.knownFolder(KnownFolder::userFonts).c_str()));
}

} // namespace
