// Windows only: what a configuration means where there are drives and backslashes.

#include "service/FakeFolders.h"
#include "service/FontConfigFixture.h"

using KWPlatform::KnownFolder;
using KWTest::ConfigRead;
using testing::ElementsAre;

namespace {

class WindowsFontConfig : public KWTest::FontConfigTest {
protected:
    static std::vector<std::string> localPaths(const ConfigRead& config) {
        std::vector<std::string> paths;
        for (const auto& folder : config.service->folders)
            paths.push_back(KWTest::utf8(folder->getLocalPath()));
        return paths;
    }
};

TEST_F(WindowsFontConfig, APathWithoutADriveIsOnThatOfTheFile) {
    const std::string drive = files().path().root_name().string();
    const ConfigRead config = readRoot("<font-folder path='/a/b'/><font-folder path='\\c'/>"
                                       "<font-folder path='q:\\d\\e\\'/>"
                                       "<font-folder path='\\\\server\\share\\f'/>");
    EXPECT_THAT(localPaths(config), ElementsAre(drive + "\\a\\b\\", drive + "\\c\\", "Q:\\d\\e\\",
                                                "\\\\server\\share\\f\\"));
    EXPECT_EQ(config.thrown, "");
}

TEST_F(WindowsFontConfig, TheUsersFontsLieInTheirLocalDataAndTheWordsAreReplaced) {
    KWTest::FakeFolders system;
    system.folders = {{KnownFolder::fonts, u"C:\\windows\\Fonts"},
                      {KnownFolder::localAppData, u"D:\\me\\Local"}};
    const KWPlatform::SystemOverride replaced(system);
    const ConfigRead config = readRoot("<font-folder path='@@WINFONTS@@\\sub'/>"
                                       "<font-folder path='@@USERWINFONTS@@'/>");
    EXPECT_THAT(localPaths(config), ElementsAre("C:\\windows\\Fonts\\sub\\",
                                                "D:\\me\\Local\\Microsoft\\Windows\\Fonts\\"));
}

TEST_F(WindowsFontConfig, PathsThatDifferInSlashesOrCaseAreOneFolder) {
    const ConfigRead config = readRoot("<font-folder path='C:\\Fonts'/>"
                                       "<font-folder path='c:/fonts/'/>");
    EXPECT_EQ(config.thrown,
              "1940 Already registered value: <font-folder path=\"c:/fonts/\"> in FILE");
}

} // namespace
