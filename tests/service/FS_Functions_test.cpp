#include <KWFontService17/FS_Functions.h>

#include "registry/FS_FontService.h"
#include "registry/RegistryFixture.h"
#include "support/OwnProcess.h"
#include "support/SystemDouble.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <map>

namespace {

using namespace KWFontService_NS;
using KWTest::TempDir;

/// The local path of a file named from the folder of the library.
UnicodeString besideTheLibrary(const UnicodeString& name) {
    return KWUri::getModuleUri(u"KWFontService17.dll", name).getLocalPath();
}

TEST(ToTag, PacksFourCharactersBigEndian) {
    EXPECT_EQ(toTAG(u"GSUB"), 0x47535542U);
    EXPECT_EQ(toTAG(u"~~~~"), 0x7E7E7E7EU);
}

TEST(ToTag, PadsAShortTextWithBlanks) {
    EXPECT_EQ(toTAG(u"ab"), 0x61622020U);
    EXPECT_EQ(toTAG(UnicodeString()), 0x20202020U);
}

TEST(ToTag, ALongTextIs0) {
    EXPECT_EQ(toTAG(u"abcde"), 0U);
}

TEST(ToTag, AnyCharacterOutsidePrintableAsciiGives0) {
    EXPECT_EQ(toTAG(u"ab\u00E9d"), 0U);
    EXPECT_EQ(toTAG(u"ab\u001Fd"), 0U);
    EXPECT_EQ(toTAG(u"abc\u007F"), 0U);
    EXPECT_EQ(toTAG(u"\u0147SUB"), 0U) << "the low byte alone is a G";
    EXPECT_EQ(toTAG(u"\U00010000a"), 0U);
}

/// Whether the service is open with the folders of the system.
bool isOpenWithTheDefaults() {
    const FS_FontService* const service = g_fontService.load();
    return service != nullptr && service->configUri.isEmpty() && service->folders.size() == 2;
}

TEST(FontServiceOpen, OpensWithTheDefaultsForANullPath) {
    KW_IN_OWN_PROCESS(EXPECT_EQ(FontServiceOpen(nullptr, nullptr), FS_ERROR_NONE);
                      EXPECT_TRUE(isOpenWithTheDefaults()));
}

TEST(FontServiceOpen, OpensWithTheDefaultsForAnEmptyPath) {
    KW_IN_OWN_PROCESS(EXPECT_EQ(FontServiceOpen("", "", nullptr), FS_ERROR_NONE);
                      EXPECT_TRUE(isOpenWithTheDefaults()));
}

TEST(GetFontError, AServiceWithoutProblemsHasNone) {
    KW_IN_OWN_PROCESS(EXPECT_EQ(FS_GetFontError(nullptr, 0), 0); KWCommonNS::KWError error;
                      EXPECT_EQ(FS_GetFontError(&error, 0), -1); EXPECT_FALSE(error.isError()));
}

TEST(GetFontConfigPath, TakesARelativePathAgainstTheFolderOfTheLibrary) {
    const UnicodeString path = FS_GetFontConfigPath("sub/other.xml", true);
    EXPECT_EQ(path, besideTheLibrary(u"sub/other.xml"));
    EXPECT_TRUE(KWUri(path).isAbsolute());
}

TEST(GetFontConfigPath, NullAndEmptyMeanFontConfigXmlBesideTheLibrary) {
    const UnicodeString path = FS_GetFontConfigPath(nullptr, true);
    EXPECT_EQ(path, besideTheLibrary(u"font-config.xml"));
    EXPECT_EQ(FS_GetFontConfigPath("", true), path);
    EXPECT_EQ(FS_GetFontConfigPath("font-config.xml", true), path);
}

TEST(GetFontConfigPath, KeepsAnAbsolutePath) {
    const TempDir folder; // gives a full path of this system
    const std::string path = folder.path("no/such/config.xml").make_preferred().string();
    EXPECT_EQ(FS_GetFontConfigPath(path.c_str(), true), UnicodeString::fromUTF8(path));
}

TEST(GetFontConfigPath, AMissingFileIsEmptyUnlessItMayBeMissing) {
    const TempDir folder;
    const std::string present = folder.write("a b.xml", "<font-config/>").string();
    EXPECT_EQ(FS_GetFontConfigPath(present.c_str(), false), folder.text("a b.xml"));
    const std::string missing = folder.path("c.xml").string();
    EXPECT_TRUE(FS_GetFontConfigPath(missing.c_str(), false).isEmpty());
    EXPECT_EQ(FS_GetFontConfigPath(missing.c_str(), true), folder.text("c.xml"));
}

TEST(AddFontFolderPath, AnswersTheNumberOfFontsAndOpensTheServiceOnNeed) {
    const TempDir files;
    files.write("a.ttf", KWTest::namedFont(u"Added Face").build());
    EXPECT_EQ(FS_AddFontFolderPath(KWTest::fileUri(files.path())), 1);
    EXPECT_EQ(FS_AddFontFolderPath(KWTest::fileUri(files.path())), 0) << "known now";
    bool inAlias = false;
    EXPECT_TRUE(
        getFontService(nullptr, nullptr, nullptr)->findFont(u"addedface", {}, inAlias, false));
}

TEST(AddFontFolderPath, SwallowsAnErrorAndAnswers0) {
    FontServiceOpen(nullptr, nullptr);
    class Broken : public KWTest::SystemDouble {
        std::optional<std::vector<KWPlatform::DirectoryEntry>>
        listDirectory(const std::u16string&) override {
            throw KWError(FS_ERROR_FONT_READ, u"broken");
        }
    } system;
    EXPECT_EQ(FS_AddFontFolderPath(KWUri(u"/somewhere")), 0);
}

/// A configuration in a scratch folder.
class FontFoldPathVector : public testing::Test {
protected:
    bool read(const std::string& config) {
        files.write("config.xml", config);
        return FS_GetFontFoldPathVector(files.path("config.xml").string().c_str(), paths);
    }

    std::vector<std::string> posixPaths() const {
        std::vector<std::string> result;
        for (const UnicodeString& path : paths)
            result.push_back(KWTest::posixPath(KWUri(path)));
        return result;
    }

    TempDir files;
    std::vector<UnicodeString> paths{u"from before"};
};

TEST_F(FontFoldPathVector, ListsTheFoldersAndAnswersFalseWithoutAnAlias) {
    EXPECT_FALSE(read("<font-config><font-folder path='/no/such/b'/><font-folder path='/no/such/a'>"
                      "<font-exclude file='x.ttf'/></font-folder></font-config>"));
    EXPECT_EQ(posixPaths(), (std::vector<std::string>{"/no/such/b/", "/no/such/a/"}));
}

TEST_F(FontFoldPathVector, AnswersTrueForAFontAliasAloneHoweverOddThatLooks) {
    EXPECT_TRUE(read("<font-config><font-folder path='/no/such/b'/><font-folder path='/no/such/a'>"
                     "<font-alias file='x.ttf'/></font-folder></font-config>"));
    EXPECT_EQ(paths.size(), 2U);
}

TEST_F(FontFoldPathVector, AFailingConfigurationAnswersFalseWithoutPaths) {
    EXPECT_FALSE(read("<font-config><font-folder path='/no/such/a'>"
                      "<font-alias file='x.ttf'/></font-folder><font-folder path=''/>"));
    EXPECT_TRUE(paths.empty());
    EXPECT_FALSE(read("no XML"));
    EXPECT_TRUE(paths.empty());
}

TEST_F(FontFoldPathVector, TakesTheHomeFolder) {
    files.write("config.xml", "<font-config><font-folder path='@@HOME@@/fonts'/></font-config>");
    FS_GetFontFoldPathVector(files.path("config.xml").string().c_str(), "/home/me", paths);
    EXPECT_EQ(posixPaths(), (std::vector<std::string>{"/home/me/fonts/"}));
}

TEST_F(FontFoldPathVector, ReadsNoFontsAndOpensNoService) {
    KW_IN_OWN_PROCESS(read("<font-config><font-folder path='/no/such/a'/></font-config>");
                      EXPECT_EQ(paths.size(), 1U); EXPECT_EQ(g_fontService.load(), nullptr));
}

TEST_F(FontFoldPathVector, LeavesAnOpenServiceAsItIsButForItsNotes) {
    const FS_FontService& service = *getFontService(nullptr, nullptr, nullptr);
    const std::size_t folders = service.folders.size();
    const std::size_t notes = service.errors.size();
    read("<font-config wrong='1'><font-folder path='/no/such/a'/></font-config>");
    EXPECT_EQ(service.folders.size(), folders);
    ASSERT_EQ(service.errors.size(), notes + 1);
    EXPECT_EQ(service.errors.get(notes)->getCode(), FS_ERROR_UNKNOWN_ATTRIBUTE);
    EXPECT_EQ(paths.size(), 1U);
}

} // namespace
