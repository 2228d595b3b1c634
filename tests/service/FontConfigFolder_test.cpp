#include "service/ConfigFolderReader.h"

#include "service/FakeFolders.h"
#include "service/FontConfigFixture.h"

namespace {

using namespace KWFontService_NS;
using KWPlatform::KnownFolder;
using KWTest::ConfigRead;
using KWTest::FakeFolders;
using KWTest::utf8;
using testing::ElementsAre;
using testing::IsEmpty;

class FontConfigFolder : public KWTest::FontConfigTest {
protected:
    ConfigRead readPathAttribute(const std::string& path, const char* home = nullptr) {
        return read("<font-config><font-folder path='" + path + "'/></font-config>", home);
    }
};

// path

TEST_F(FontConfigFolder, StandInTheirOrderInDirectoryForm) {
    const ConfigRead config =
        readRoot("<font-folder path='/b'/><font-folder path='/a/'/><font-folder path='/C/d'/>");
    EXPECT_THAT(config.folderPaths(), ElementsAre("/b/", "/a/", "/C/d/"));
    UnicodeString uri = config.service->folders[2]->getString();
    EXPECT_TRUE(uri.endsWith(UnicodeString(u"/C/d/")));
    ASSERT_EQ(config.service->folderByPath.size(), 3U);
    EXPECT_EQ(config.service->findFolder(FS_FontFolder(KWUri(uri.toLower()), false).pathKey()),
              config.service->folders[2].get());
}

TEST_F(FontConfigFolder, PathIsTrimmed) {
    EXPECT_THAT(readPathAttribute(" \t/my fonts&#10;").folderPaths(), ElementsAre("/my fonts/"));
}

TEST_F(FontConfigFolder, AFolderMayBeGivenAsAUri) {
    EXPECT_THAT(readPathAttribute("file:///a%20b/c").folderPaths(), ElementsAre("/a b/c/"));
}

TEST_F(FontConfigFolder, APathKeepsTheCharactersThatAUriWouldReadOtherwise) {
    EXPECT_THAT(readPathAttribute("/a%20b#c?d").folderPaths(), ElementsAre("/a%20b#c?d/"));
}

TEST_F(FontConfigFolder, AFolderWhoseNameIsNotUtf8IsGivenAsAUri) {
    const ConfigRead config = readPathAttribute("file:///na%EFve");
    ASSERT_EQ(config.service->folders.size(), 1U);
    EXPECT_TRUE(config.service->folders[0]->getString().endsWith(UnicodeString(u"/na%EFve/")));
    EXPECT_NE(config.service->folders[0]->getLocalPath().indexOf(u"na\xDCEFve"), -1);
}

TEST_F(FontConfigFolder, AMissingOrEmptyPathEndsTheRead) {
    for (const char* const attribute : {"", "path=''", "path=' &#9; '", "recursive='yes'"}) {
        const ConfigRead config =
            readRoot(std::string("<otf-metrics-mode mode='windows'/><font-folder x='' ")
                         .append(attribute)
                         .append("/><font-folder path='/f'/>"));
        EXPECT_EQ(config.thrown, "1937 Empty value: <font-folder path> in FILE");
        EXPECT_THAT(config.complaints, IsEmpty());
        EXPECT_THAT(config.folderPaths(), IsEmpty());
        EXPECT_TRUE(config.service->otfMetricsWindows) << "what was read before stands";
    }
}

TEST_F(FontConfigFolder, APathThatIsNoFileEndsTheRead) {
    for (const std::string path : {"http://example.org/fonts", "data:,x", "ftp:fonts"}) {
        const ConfigRead config =
            readRoot("<font-folder path='/f'/><font-folder path=' " + path + "' y=''/>");
        EXPECT_EQ(config.thrown,
                  "1938 No-file path is not allowed: <font-folder path=\"" + path + "\"> in FILE");
        EXPECT_THAT(config.complaints, IsEmpty());
        EXPECT_THAT(config.folderPaths(), ElementsAre("/f/"));
    }
}

TEST_F(FontConfigFolder, ARelativePathEndsTheReadThoughTheFileHasAFolder) {
    for (const std::string path : {"fonts", "./fonts", "../fonts", "@@WINFONTS/x"}) {
        const ConfigRead config =
            readRoot("<font-folder path='/f'/><font-folder path='" + path + "'/>");
        EXPECT_EQ(config.thrown,
                  "1939 Relative path is not allowed: <font-folder path=\"" + path + "\"> in FILE");
        EXPECT_THAT(config.folderPaths(), ElementsAre("/f/"));
    }
}

TEST_F(FontConfigFolder, AKnownPathEndsTheRead) {
    for (const std::string path :
         {"/Fonts", "/fonts", "/FONTS/", "/x/../fonts", "/fonts/.", "file:///fonts"}) {
        if (path.starts_with("file:") && KWPlatform::preferredSeparator() != u'/')
            continue; // a URI has its drive or none; a path is on the drive of the file
        const ConfigRead config = readRoot("<font-folder path='/Fonts'/><font-folder path='" +
                                           path + "' recursive='yes'/>");
        EXPECT_EQ(config.thrown,
                  "1940 Already registered value: <font-folder path=\"" + path + "\"> in FILE");
        ASSERT_EQ(config.service->folders.size(), 1U);
        EXPECT_FALSE(config.service->folders[0]->recursive);
    }
}

TEST_F(FontConfigFolder, ComplaintsQuoteThePathTrimmedAndExpanded) {
    EXPECT_EQ(readPathAttribute(" @@HOME@@/f ", "home").thrown,
              "1939 Relative path is not allowed: <font-folder path=\"home/f\"> in FILE");
}

// Macro words

TEST_F(FontConfigFolder, ExpandsTheMacroWordsOfItsPath) {
    FakeFolders system;
    system.folders = {{KnownFolder::fonts, u"/all"},
                      {KnownFolder::appData, u"/settings"},
                      {KnownFolder::localAppData, u"/data"}};
    const ConfigRead config = read("<font-config><font-folder path='@@WINFONTS@@'/>"
                                   "<font-folder path='@@USERWINFONTS@@'/>"
                                   "<font-folder path='@@APPDATA@@/a'/>"
                                   "<font-folder path='@@LOCALAPPDATA@@/b'/>"
                                   "<font-folder path='@@HOME@@/c'/></font-config>",
                                   "/home/me");
    EXPECT_EQ(config.thrown, "");
    EXPECT_THAT(config.folderPaths(), ElementsAre("/all/", "/data" + KWTest::userFontsBelowData(),
                                                  "/settings/a/", "/data/b/", "/home/me/c/"));
}

TEST_F(FontConfigFolder, AWordWithoutAFolderIsARelativePath) {
    FakeFolders system;
    for (const std::string word : {"@@WINFONTS@@", "@@APPDATA@@", "@@LOCALAPPDATA@@", "@@HOME@@"})
        EXPECT_EQ(readPathAttribute(word).thrown,
                  "1939 Relative path is not allowed: <font-folder path=\"" + word + "\"> in FILE");
    EXPECT_EQ(readPathAttribute("@@HOME@@/x", "").thrown,
              "1939 Relative path is not allowed: <font-folder path=\"@@HOME@@/x\"> in FILE");
}

TEST_F(FontConfigFolder, AHomeFolderMayHaveANameThatIsNotUtf8) {
    const ConfigRead config = readPathAttribute("@@HOME@@/f", "/na\xEFve");
    ASSERT_EQ(config.service->folders.size(), 1U);
    EXPECT_TRUE(config.service->folders[0]->getString().endsWith(UnicodeString(u"/na%EFve/f/")));
    EXPECT_NE(config.service->folders[0]->getLocalPath().indexOf(u"na\xDCEFve"), -1);
}

TEST_F(FontConfigFolder, OnlyThePathOfAFolderIsExpanded) {
    FakeFolders system;
    system.folders = {{KnownFolder::fonts, u"/all"}};
    const ConfigRead config = readRoot(
        "<font-folder path='/f'><glyph-list file='@@WINFONTS@@/g.txt' afm='a.afm'/>"
        "<font-exclude file='@@WINFONTS@@'/></font-folder>"
        "<eudc-processing><eudc-map family-name='@@WINFONTS@@' file-path='@@WINFONTS@@/e.tte'/>"
        "<eudc-system-default file-path='@@WINFONTS@@/d.tte'/></eudc-processing>");
    EXPECT_EQ(KWTest::posixPath(config.options(u"a.afm").glyphList), "/f/@@WINFONTS@@/g.txt");
    EXPECT_TRUE(config.options(u"@@winfonts@@").fontExclude);
    EXPECT_EQ(config.service->eudcMap.at(u"@@WINFONTS@@"), files().uri("@@WINFONTS@@/e.tte"));
    EXPECT_EQ(config.service->eudcSystemDefault, files().uri("@@WINFONTS@@/d.tte"));
}

// recursive

TEST_F(FontConfigFolder, RecursiveIsOnForTheAffirmativeNamesAlone) {
    for (const auto& [value, recursive] : {std::pair("yes", true),
                                           {"true", true},
                                           {" yes ", true},
                                           {"YES", true},
                                           {"no", false},
                                           {"false", false},
                                           {"1", false},
                                           {"enable", false},
                                           {"", false},
                                           {"yes yes", false},
                                           {"\"yes\"", false}}) {
        const ConfigRead config =
            readRoot(std::string("<font-folder path='/f' recursive='").append(value).append("'/>"));
        ASSERT_EQ(config.service->folders.size(), 1U);
        EXPECT_EQ(config.service->folders[0]->recursive, recursive) << value;
        EXPECT_THAT(config.complaints, IsEmpty()) << value;
    }
    EXPECT_FALSE(readFolder("").service->folders[0]->recursive);
}

TEST_F(FontConfigFolder, UnknownAttributesAndChildrenAreReported) {
    const ConfigRead config =
        readRoot("<font-folder file='x' path='/f'><font-config/></font-folder>");
    EXPECT_THAT(config.complaints, ElementsAre("1935 Unknown attribute: <font-folder file> in FILE",
                                               "1028 Unexpected start tag: <font-config> in FILE",
                                               "1029 Unexpected end tag: </font-config> in FILE",
                                               "1029 Unexpected end tag: </font-folder> in FILE"));
}

TEST_F(FontConfigFolder, PathIsTrimmedBeforeItsWordsAreReplaced) {
    const ConfigRead config =
        read("<font-config><font-folder path=' @@HOME@@ '/></font-config>", "/my folder ");
    EXPECT_THAT(config.folderPaths(), ElementsAre("/my folder /"));
}

} // namespace
