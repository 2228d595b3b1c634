#include "platform/Platform.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <set>

namespace fs = std::filesystem;

using KWPlatform::DirectoryEntry;
using KWPlatform::KnownFolder;
using KWPlatform::RegisteredFontFiles;
using KWPlatform::RegistryHive;
using KWPlatform::System;
using KWTest::TempDir;

namespace {

System& native() {
    return KWPlatform::nativeSystem();
}

const DirectoryEntry* find(const std::vector<DirectoryEntry>& entries, std::u16string_view name) {
    const auto found = std::ranges::find(entries, name, &DirectoryEntry::name);
    return found == entries.end() ? nullptr : &*found;
}

// An environment variable for the length of a scope.
class Variable {
public:
    Variable(const char* name, const char* value) : name_(name) {
        if (const char* old = std::getenv(name))
            old_ = old;
        set(value);
    }
    ~Variable() { set(old_ ? old_->c_str() : nullptr); }

private:
    void set(const char* value) {
        if (value != nullptr)
            ::setenv(name_, value, 1);
        else
            ::unsetenv(name_);
    }
    const char* name_;
    std::optional<std::string> old_;
};

// Another user than root, for the length of a scope; root may read everything.
class OrdinaryUser {
public:
    OrdinaryUser() { active_ = ::geteuid() != 0 || ::seteuid(65534) == 0; }
    ~OrdinaryUser() {
        if (::getuid() == 0 && ::seteuid(0) != 0)
            std::abort();
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    bool isActive() const { return active_; }

private:
    bool active_;
};

std::string readAll(KWPlatform::FileReader& file) {
    std::string bytes(file.size(), '\0');
    bytes.resize(file.readAt(0, bytes.data(), bytes.size()));
    return bytes;
}

} // namespace

TEST(DirectoryListing, TellsFilesFoldersHiddenAndSystemEntriesApart) {
    const TempDir dir;
    dir.write("plain.ttf", "x");
    dir.write(".hidden.ttf", "x");
    dir.makeFolder("folder");
    dir.makeFolder(".hiddenFolder");
    ASSERT_EQ(::mkfifo(dir.path("pipe").c_str(), 0600), 0);
    const auto entries = native().listDirectory(dir.path().u16string());
    ASSERT_TRUE(entries);
    EXPECT_EQ(entries->size(), 5U); // neither "." nor ".."
    struct Row {
        const char16_t* name;
        bool directory, hidden, system;
    };
    for (const Row& row :
         {Row{u"plain.ttf", false, false, false}, Row{u".hidden.ttf", false, true, false},
          Row{u"folder", true, false, false}, Row{u".hiddenFolder", true, true, false},
          Row{u"pipe", false, false, true}}) {
        const DirectoryEntry* entry = find(*entries, row.name);
        ASSERT_NE(entry, nullptr);
        EXPECT_EQ(entry->directory, row.directory);
        EXPECT_EQ(entry->hidden, row.hidden);
        EXPECT_EQ(entry->system, row.system);
    }
}

TEST(DirectoryListing, JudgesALinkByWhatItLeadsTo) {
    const TempDir dir;
    dir.makeFolder("folder");
    dir.write("file", "x");
    fs::create_symlink("folder", dir.path("toFolder"));
    fs::create_symlink("file", dir.path("toFile"));
    fs::create_symlink("nowhere", dir.path("toNothing"));
    fs::create_symlink("/dev/null", dir.path("toDevice"));
    fs::create_symlink("loop", dir.path("loop"));
    const auto entries = native().listDirectory(dir.path().u16string());
    ASSERT_TRUE(entries);
    EXPECT_TRUE(find(*entries, u"toFolder")->directory);
    EXPECT_FALSE(find(*entries, u"toFolder")->system);
    EXPECT_FALSE(find(*entries, u"toFile")->directory);
    EXPECT_FALSE(find(*entries, u"toFile")->system);
    for (const char16_t* name : {u"toNothing", u"toDevice", u"loop"}) {
        EXPECT_TRUE(find(*entries, name)->system);
        EXPECT_FALSE(find(*entries, name)->directory);
    }
}

TEST(DirectoryListing, NamesThatAreNotUtf8ComeThroughAndOpenAgain) {
    const TempDir dir;
    const std::string name = "f\xFF\xC3\xA9\xC3.ttf";
    std::ofstream(dir.path() / name) << "bytes";
    const auto entries = native().listDirectory(dir.path().u16string());
    ASSERT_TRUE(entries);
    ASSERT_EQ(entries->size(), 1U);
    const std::u16string expected = {
        u'f', char16_t(0xDCFF), u'\u00E9', char16_t(0xDCC3), u'.', u't', u't', u'f'};
    EXPECT_EQ(entries->front().name, expected);
    const std::u16string path = dir.path().u16string() + u"/" + entries->front().name;
    EXPECT_TRUE(native().isRegularFile(path));
    std::string reason;
    const auto file = native().openFile(path, reason);
    ASSERT_NE(file, nullptr) << reason;
    EXPECT_EQ(readAll(*file), "bytes");
}

TEST(DirectoryListing, AnswersNothingForWhatIsNoFolder) {
    const TempDir dir;
    dir.write("file", "x");
    EXPECT_FALSE(native().listDirectory(dir.path("file").u16string()));
    EXPECT_FALSE(native().listDirectory(dir.path("missing").u16string()));
    EXPECT_FALSE(native().listDirectory(u""));
    EXPECT_FALSE(native().listDirectory(std::u16string(u"/tmp\0/x", 7)));
    EXPECT_FALSE(native().listDirectory(std::u16string(1, char16_t(0xD800))));
}

TEST(DirectoryListing, AnswersNothingForWhatMayNotBeRead) {
    const TempDir dir;
    dir.write("folder/a.ttf", "x");
    dir.write("file", "x");
    fs::permissions(dir.path(), fs::perms::all);
    fs::permissions(dir.path("folder"), fs::perms::none);
    fs::permissions(dir.path("file"), fs::perms::none);
    std::string reason;
    {
        const OrdinaryUser user;
        if (!user.isActive() || !native().directoryIdentity(dir.path().u16string()))
            GTEST_SKIP() << "no other user, or none that may enter the scratch folder";
        EXPECT_FALSE(native().listDirectory(dir.path("folder").u16string()));
        EXPECT_TRUE(native().directoryIdentity(dir.path("folder").u16string()));
        EXPECT_FALSE(native().isRegularFile(dir.path("folder/a.ttf").u16string()));
        EXPECT_TRUE(native().isRegularFile(dir.path("file").u16string()));
        EXPECT_EQ(native().openFile(dir.path("file").u16string(), reason), nullptr);
    }
    EXPECT_EQ(reason, "Permission denied");
    fs::permissions(dir.path("folder"), fs::perms::all);
}

TEST(DirectoryIdentity, IsTheSameThroughALinkAndDiffersBetweenFolders) {
    const TempDir dir;
    dir.makeFolder("one/two");
    fs::create_directory_symlink(dir.path("one"), dir.path("one/two/back"));
    const auto one = native().directoryIdentity(dir.path("one").u16string());
    ASSERT_TRUE(one);
    EXPECT_EQ(one, native().directoryIdentity(dir.path("one/two/back").u16string()));
    EXPECT_NE(one, native().directoryIdentity(dir.path("one/two").u16string()));
    dir.write("file", "x");
    EXPECT_FALSE(native().directoryIdentity(dir.path("file").u16string()));
    EXPECT_FALSE(native().directoryIdentity(dir.path("missing").u16string()));
}

TEST(RegularFile, IsNeitherFolderNorPipeNorMissing) {
    const TempDir dir;
    dir.write("file", "x");
    fs::create_symlink("file", dir.path("link"));
    ASSERT_EQ(::mkfifo(dir.path("pipe").c_str(), 0600), 0);
    EXPECT_TRUE(native().isRegularFile(dir.path("file").u16string()));
    EXPECT_TRUE(native().isRegularFile(dir.path("link").u16string()));
    EXPECT_FALSE(native().isRegularFile(dir.path("pipe").u16string()));
    EXPECT_FALSE(native().isRegularFile(dir.path().u16string()));
    EXPECT_FALSE(native().isRegularFile(dir.path("missing").u16string()));
    EXPECT_FALSE(native().isRegularFile(u""));
}

TEST(FileReader, RefusesWhatIsNoRegularFileWithoutWaiting) {
    const TempDir dir;
    ASSERT_EQ(::mkfifo(dir.path("pipe").c_str(), 0600), 0);
    for (const std::u16string& path :
         {dir.path("pipe").u16string(), dir.path().u16string(), std::u16string(u"/dev/zero"),
          dir.path("missing").u16string(), std::u16string(), std::u16string(u"/\0", 2)}) {
        std::string reason;
        EXPECT_EQ(native().openFile(path, reason), nullptr);
        EXPECT_FALSE(reason.empty());
    }
}

TEST(FileReader, DoesNotEvenOpenWhatIsNoRegularFile) {
    const TempDir dir;
    ASSERT_EQ(::mkfifo(dir.path("pipe").c_str(), 0600), 0);
    dir.write("file", "x");
    const int watch = ::inotify_init1(IN_NONBLOCK);
    ASSERT_GE(watch, 0);
    ::inotify_add_watch(watch, dir.path("pipe").c_str(), IN_OPEN);
    ::inotify_add_watch(watch, dir.path("file").c_str(), IN_OPEN);
    std::array<char, 4096> events{};
    std::string reason;
    EXPECT_EQ(native().openFile(dir.path("pipe").u16string(), reason), nullptr);
    EXPECT_EQ(reason, "Not a regular file");
    EXPECT_LT(::read(watch, events.data(), events.size()), 0);
    EXPECT_NE(native().openFile(dir.path("file").u16string(), reason), nullptr);
    EXPECT_GT(::read(watch, events.data(), events.size()), 0); // the watch does see opening
    ::close(watch);
}

TEST(KnownFolders, FollowTheBaseDirectoryVariables) {
    const Variable home("HOME", "/home/somebody");
    {
        const Variable data("XDG_DATA_HOME", "/data/");
        const Variable config("XDG_CONFIG_HOME", "/config");
        EXPECT_EQ(native().knownFolder(KnownFolder::localAppData), u"/data");
        EXPECT_EQ(native().knownFolder(KnownFolder::userFonts), u"/data/fonts");
        EXPECT_EQ(native().knownFolder(KnownFolder::appData), u"/config");
    }
    for (const char* value : {static_cast<const char*>(nullptr), "", "relative"}) {
        const Variable data("XDG_DATA_HOME", value);
        const Variable config("XDG_CONFIG_HOME", value);
        EXPECT_EQ(native().knownFolder(KnownFolder::localAppData), u"/home/somebody/.local/share");
        EXPECT_EQ(native().knownFolder(KnownFolder::userFonts),
                  u"/home/somebody/.local/share/fonts");
        EXPECT_EQ(native().knownFolder(KnownFolder::appData), u"/home/somebody/.config");
    }
    EXPECT_EQ(native().knownFolder(KnownFolder::fonts), u"/usr/share/fonts");
}

TEST(KnownFolders, WithoutHomeTheUserRecordIsAsked) {
    const Variable home("HOME", nullptr);
    const Variable data("XDG_DATA_HOME", nullptr);
    const std::u16string folder = native().knownFolder(KnownFolder::localAppData);
    EXPECT_TRUE(folder.empty() || folder.ends_with(u"/.local/share"));
}

#ifdef KW_WITH_FONTCONFIG
// A metrics file counts where its font would find the printer font again.
TEST(RegisteredFonts, AreTheFilesOfAFontconfigConfiguration) {
    const TempDir dir;
    const fs::path source = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
    const fs::path printer = "/usr/share/fonts/type1/urw-base35";
    if (!fs::exists(source) || !fs::exists(printer / "C059-Bold.t1"))
        GTEST_SKIP() << "fonts-dejavu-core and fonts-urw-base35 are not installed";
    dir.makeFolder("fonts");
    dir.makeFolder("cache");
    fs::copy(source, dir.path("fonts/sans.ttf"));
    for (const char* name :
         {"bold.pfb", "both.pfb", "both.pfa", "windows.pfa", "OLD.PFB", "OLDER.PFA", "alone.pfb",
          "lower.PFB", "UPPER.pfb", "odd.Pfb", "outline.t1"})
        fs::copy(printer / "C059-Bold.t1", dir.path("fonts") / name);
    for (const char* name :
         {"bold.afm", "bold.pfm", "both.afm", "windows.pfm", "OLD.AFM", "OLDER.PFM", "lower.afm",
          "UPPER.AFM", "odd.afm", "outline.afm", "unprinted.afm"})
        dir.write("fonts/" + std::string(name), "x");
    dir.write("fonts.conf", "<?xml version='1.0'?><fontconfig><dir>" + dir.path("fonts").string() +
                                "</dir><cachedir>" + dir.path("cache").string() +
                                "</cachedir></fontconfig>");
    const Variable config("FONTCONFIG_FILE", dir.path("fonts.conf").c_str());
    const RegisteredFontFiles files = native().registeredFontFiles();
    EXPECT_EQ(files.fonts, std::vector{dir.path("fonts/sans.ttf").u16string()});
    std::set<std::u16string> expected;
    for (const char* name : {"bold.afm", "both.afm", "windows.pfm", "OLD.AFM", "OLDER.PFM"})
        expected.insert((dir.path("fonts") / name).u16string());
    EXPECT_EQ(std::set(files.type1.begin(), files.type1.end()), expected);
    EXPECT_EQ(files.type1.size(), expected.size()) << "each once";
}
#endif

TEST(RegisteredFonts, NamesEachFileOnce) {
    const RegisteredFontFiles files = native().registeredFontFiles();
    for (const auto& list : {files.fonts, files.type1})
        EXPECT_EQ(std::set(list.begin(), list.end()).size(), list.size());
}

TEST(Registry, IsEmptyHere) {
    EXPECT_FALSE(
        native().registryText(RegistryHive::currentUser, u"EUDC\\932", u"SystemDefaultEUDCFont"));
    EXPECT_TRUE(native().registryTexts(RegistryHive::localMachine, u"software").empty());
}

TEST(ModuleFolder, FindsALoadedSharedLibraryWhereItReallyLies) {
    // The C++ library is loaded in every form of the tests and is a link to its real version.
    const std::u16string folder = native().moduleFolder(u"stdc++.dll");
    ASSERT_FALSE(folder.empty());
    EXPECT_EQ(folder.front(), u'/');
    EXPECT_NE(folder.back(), u'/');
    EXPECT_TRUE(fs::exists(fs::path(folder) / "libstdc++.so.6"));
    EXPECT_EQ(fs::path(folder), fs::canonical(fs::path(folder)));
}

TEST(ModuleFolder, IsThatOfTheProgramForAModuleThatIsNotLoaded) {
    const std::u16string program = fs::canonical("/proc/self/exe").parent_path().u16string();
    EXPECT_EQ(native().moduleFolder(u"KWFontService17.dll"), program); // linked in statically
    EXPECT_EQ(native().moduleFolder(u"NoSuchModule.dll"), program);
    EXPECT_EQ(native().moduleFolder(u"stdc.dll"), program); // "libstdc.so" is not "libstdc++.so"
    EXPECT_EQ(native().moduleFolder(u""), program);
}

TEST(NarrowPath, IsNothingForAPathThatBytesCannotExpress) {
    EXPECT_EQ(KWPlatform::narrowPath(u"/a/\u00E9"), "/a/\xC3\xA9");
    EXPECT_EQ(KWPlatform::narrowPath(std::u16string{u'/', char16_t(0xDCFF)}), "/\xFF");
    EXPECT_FALSE(KWPlatform::narrowPath(std::u16string_view(u"/a\0b", 4)));
    EXPECT_FALSE(KWPlatform::narrowPath(std::u16string{char16_t(0xD801)}));
    EXPECT_EQ(KWPlatform::preferredSeparator(), u'/');
}

TEST(SystemOverride, PutsADoubleInPlaceForItsLifetime) {
    class Empty : public System {
        std::optional<std::vector<DirectoryEntry>> listDirectory(const std::u16string&) override {
            return std::nullopt;
        }
        std::optional<KWPlatform::DirectoryIdentity>
        directoryIdentity(const std::u16string&) override {
            return std::nullopt;
        }
        bool isRegularFile(const std::u16string&) override { return true; }
        std::unique_ptr<KWPlatform::FileReader> openFile(const std::u16string&,
                                                         std::string&) override {
            return nullptr;
        }
        std::u16string knownFolder(KnownFolder) override { return u"known"; }
        RegisteredFontFiles registeredFontFiles() override { return {}; }
        std::optional<KWPlatform::RegistryText> registryText(RegistryHive, const std::u16string&,
                                                             const std::u16string&) override {
            return std::nullopt;
        }
        std::vector<KWPlatform::RegistryText> registryTexts(RegistryHive,
                                                            const std::u16string&) override {
            return {};
        }
        std::u16string moduleFolder(const std::u16string&) override { return {}; }
        char16_t preferredSeparator() override { return u'\\'; }
    } replacement;
    {
        const KWPlatform::SystemOverride replaced(replacement);
        EXPECT_EQ(&KWPlatform::system(), &replacement);
        EXPECT_EQ(KWPlatform::system().knownFolder(KnownFolder::fonts), u"known");
        EXPECT_EQ(KWPlatform::preferredSeparator(), u'\\');
    }
    EXPECT_EQ(&KWPlatform::system(), &native());
}
