#include "service/FontConfigPath.h"

#include "platform/Platform.h"

#include <KWFontService17/FS_Functions.h>

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace {

using namespace KWFontService_NS;
using KWPlatform::KnownFolder;

/// A system that knows the folders it is given, and is otherwise the real one.
class FakeFolders : public KWPlatform::System {
public:
    std::map<KnownFolder, std::u16string> folders;

    std::u16string knownFolder(KnownFolder folder) override {
        const auto found = folders.find(folder);
        return found != folders.end() ? found->second : std::u16string();
    }

    std::optional<std::vector<KWPlatform::DirectoryEntry>>
    listDirectory(const std::u16string& path) override {
        return native_.listDirectory(path);
    }
    std::optional<KWPlatform::DirectoryIdentity>
    directoryIdentity(const std::u16string& path) override {
        return native_.directoryIdentity(path);
    }
    bool isRegularFile(const std::u16string& path) override { return native_.isRegularFile(path); }
    std::unique_ptr<KWPlatform::FileReader> openFile(const std::u16string& path,
                                                     std::string& reason) override {
        return native_.openFile(path, reason);
    }
    std::vector<std::u16string> registeredFontFiles(KWPlatform::RegisteredFonts list) override {
        return native_.registeredFontFiles(list);
    }
    std::optional<KWPlatform::RegistryText> registryText(KWPlatform::RegistryHive hive,
                                                         const std::u16string& key,
                                                         const std::u16string& name) override {
        return native_.registryText(hive, key, name);
    }
    std::vector<KWPlatform::RegistryText> registryTexts(KWPlatform::RegistryHive hive,
                                                        const std::u16string& key) override {
        return native_.registryTexts(hive, key);
    }
    std::u16string moduleFolder(const std::u16string& moduleName) override {
        return native_.moduleFolder(moduleName);
    }

private:
    KWPlatform::System& native_ = KWPlatform::nativeSystem();
};

TEST(ExpandFontPath, ReplacesEveryWordEverywhere) {
    FakeFolders system;
    system.folders = {{KnownFolder::fonts, u"/fonts"}, {KnownFolder::localAppData, u"/home/data"}};
    const KWPlatform::SystemOverride replaced(system);
    EXPECT_EQ(expandFontPath(u"@@WINFONTS@@/a:@@WINFONTS@@/b"),
              UnicodeString(u"/fonts/a:/fonts/b"));
    EXPECT_EQ(expandFontPath(u"@@LOCALAPPDATA@@/x"), UnicodeString(u"/home/data/x"));
    EXPECT_EQ(expandFontPath(u"@@winfonts@@ @WINFONTS@"),
              UnicodeString(u"@@winfonts@@ @WINFONTS@"));
}

TEST(ExpandFontPath, TheUsersFontsLieInTheirLocalData) {
    FakeFolders system;
    system.folders = {{KnownFolder::localAppData, u"/home/data"}};
    const KWPlatform::SystemOverride replaced(system);
    const UnicodeString expected = KWPlatform::preferredSeparator() == u'\\'
                                       ? UnicodeString(u"/home/data\\Microsoft\\Windows\\Fonts")
                                       : UnicodeString(u"/home/data/fonts");
    EXPECT_EQ(expandFontPath(u"@@USERWINFONTS@@"), expected);
}

TEST(ExpandFontPath, AWordWhoseFolderIsNotKnownStays) {
    FakeFolders system;
    const KWPlatform::SystemOverride replaced(system);
    EXPECT_EQ(expandFontPath(u"@@WINFONTS@@/a"), UnicodeString(u"@@WINFONTS@@/a"));
    EXPECT_TRUE(expandFontPath(u"@@USERWINFONTS@@").startsWith(u"@@LOCALAPPDATA@@", 16));
}

TEST(FontFolders, AreTheExpansionsOfTheBareWords) {
    FakeFolders system;
    system.folders = {{KnownFolder::fonts, u"/fonts"}, {KnownFolder::localAppData, u"/home/data"}};
    const KWPlatform::SystemOverride replaced(system);
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
