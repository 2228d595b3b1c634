#include "platform/Platform.h"
#include "platform/windows/WindowsHeader.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

namespace fs = std::filesystem;

using KWPlatform::DirectoryEntry;
using KWPlatform::KnownFolder;
using KWPlatform::System;
using KWPlatform::toWide;
using KWTest::TempDir;

namespace {

System& native() {
    return KWPlatform::nativeSystem();
}

const DirectoryEntry* find(const std::vector<DirectoryEntry>& entries, std::u16string_view name) {
    const auto found = std::ranges::find(entries, name, &DirectoryEntry::name);
    return found == entries.end() ? nullptr : &*found;
}

std::u16string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::u16string() : fs::path(value).u16string();
}

void writeFile(const std::u16string& path, std::string_view bytes) {
    const HANDLE file = ::CreateFileW(toWide(path), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE) << ::GetLastError();
    DWORD written = 0;
    EXPECT_NE(::WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr),
              0);
    ::CloseHandle(file);
}

std::string readAll(const std::u16string& path) {
    std::string reason;
    const auto file = native().openFile(path, reason);
    if (file == nullptr)
        return "not opened: " + reason;
    std::string bytes(static_cast<std::size_t>(file->size()), '\0');
    bytes.resize(file->readAt(0, bytes.data(), bytes.size()));
    return bytes;
}

} // namespace

TEST(DirectoryListing, TellsFoldersHiddenAndSystemEntriesApart) {
    const TempDir dir;
    for (const char* name : {"plain.ttf", "hidden.ttf", "system.ttf"})
        dir.write(name, "x");
    dir.makeFolder("folder");
    dir.makeFolder("hiddenFolder");
    const auto mark = [&dir](const char* name, DWORD attributes) {
        EXPECT_NE(::SetFileAttributesW(dir.path(name).c_str(), attributes), 0);
    };
    mark("hidden.ttf", FILE_ATTRIBUTE_HIDDEN);
    mark("system.ttf", FILE_ATTRIBUTE_SYSTEM);
    mark("hiddenFolder", FILE_ATTRIBUTE_HIDDEN);
    const auto entries = native().listDirectory(dir.path().u16string());
    ASSERT_TRUE(entries);
    EXPECT_EQ(entries->size(), 5U); // neither "." nor ".."
    struct Row {
        const char16_t* name;
        bool directory, hidden, system;
    };
    for (const Row& row :
         {Row{u"plain.ttf", false, false, false}, Row{u"hidden.ttf", false, true, false},
          Row{u"system.ttf", false, false, true}, Row{u"folder", true, false, false},
          Row{u"hiddenFolder", true, true, false}}) {
        const DirectoryEntry* entry = find(*entries, row.name);
        ASSERT_NE(entry, nullptr);
        EXPECT_EQ(entry->directory, row.directory);
        EXPECT_EQ(entry->hidden, row.hidden);
        EXPECT_EQ(entry->system, row.system);
    }
}

TEST(DirectoryListing, AnEmptyFolderAndARootCanBeListed) {
    const TempDir dir;
    const auto entries = native().listDirectory(dir.path().u16string() + u"\\");
    ASSERT_TRUE(entries);
    EXPECT_TRUE(entries->empty());
    const auto root = native().listDirectory(variable("SystemDrive") + u"\\");
    ASSERT_TRUE(root);
    EXPECT_FALSE(root->empty());
}

TEST(DirectoryListing, AnswersNothingForWhatIsNoFolder) {
    const TempDir dir;
    dir.write("file", "x");
    const std::u16string folder = dir.path().u16string();
    for (const std::u16string& path :
         {folder + u"\\file", folder + u"\\missing", folder + u"\\*", folder + u"\\*\\x",
          std::u16string(), std::u16string(u"NUL"), std::u16string(u"\\\\.\\NUL"),
          std::u16string(u"Q:\\"), folder + std::u16string(u"\0", 1)})
        EXPECT_FALSE(native().listDirectory(path));
}

// The second unit of U+8868 in code page 932 is that of "\".
TEST(DirectoryListing, NamesOfAnyScriptComeThroughAndOpenAgain) {
    const TempDir dir;
    const std::u16string folder =
        dir.path().u16string() + u"\\\u8868 \u0436\u00E9 \u05D0 \U00020BB7";
    ASSERT_NE(::CreateDirectoryW(toWide(folder), nullptr), 0);
    const std::u16string name = u"\u8868\u8868.ttf";
    writeFile(folder + u"\\" + name, "bytes");
    const auto above = native().listDirectory(dir.path().u16string());
    ASSERT_TRUE(above);
    ASSERT_EQ(above->size(), 1U);
    EXPECT_EQ(above->front().name, folder.substr(folder.rfind(u'\\') + 1));
    const auto entries = native().listDirectory(folder);
    ASSERT_TRUE(entries);
    ASSERT_EQ(entries->size(), 1U);
    EXPECT_EQ(entries->front().name, name);
    EXPECT_TRUE(native().isRegularFile(folder + u"\\" + name));
    EXPECT_EQ(readAll(folder + u"\\" + name), "bytes");
}

TEST(LongPaths, AreListedAndOpened) {
    const TempDir dir;
    const std::u16string prefix = u"\\\\?\\";
    std::u16string folder = dir.path().u16string();
    std::vector<std::u16string> made;
    while (folder.size() < 600) {
        folder += u"\\" + std::u16string(60, u'n');
        ASSERT_NE(::CreateDirectoryW(toWide(prefix + folder), nullptr), 0);
        made.push_back(prefix + folder);
    }
    writeFile(prefix + folder + u"\\a.ttf", "bytes");
    const auto entries = native().listDirectory(folder);
    ASSERT_TRUE(entries);
    ASSERT_EQ(entries->size(), 1U);
    EXPECT_TRUE(native().directoryIdentity(folder));
    for (const std::u16string& path :
         {folder + u"\\a.ttf", folder + u"/../" + std::u16string(60, u'n') + u"/./a.ttf",
          prefix + folder + u"\\a.ttf"}) {
        EXPECT_TRUE(native().isRegularFile(path));
        EXPECT_EQ(readAll(path), "bytes");
    }
    EXPECT_NE(::DeleteFileW(toWide(prefix + folder + u"\\a.ttf")), 0);
    while (!made.empty()) {
        EXPECT_NE(::RemoveDirectoryW(toWide(made.back())), 0);
        made.pop_back();
    }
}

TEST(DirectoryIdentity, IsTheSameByEveryNameAndDiffersBetweenFolders) {
    const TempDir dir;
    dir.makeFolder("one/two");
    dir.write("file", "x");
    const std::u16string folder = dir.path().u16string();
    const auto one = native().directoryIdentity(folder + u"\\one");
    ASSERT_TRUE(one);
    EXPECT_EQ(one, native().directoryIdentity(folder + u"/ONE/two/.."));
    EXPECT_NE(one, native().directoryIdentity(folder + u"\\one\\two"));
    EXPECT_FALSE(native().directoryIdentity(folder + u"\\file"));
    EXPECT_FALSE(native().directoryIdentity(folder + u"\\missing"));
}

TEST(FileReader, RefusesFoldersAndDevices) {
    const TempDir dir;
    const std::u16string folder = dir.path().u16string();
    for (const std::u16string& path : {folder, variable("SystemDrive") + u"\\"}) {
        std::string reason;
        EXPECT_EQ(native().openFile(path, reason), nullptr);
        EXPECT_EQ(reason, "Not a regular file");
        EXPECT_FALSE(native().isRegularFile(path));
    }
    for (const char16_t* path : {u"NUL", u"\\\\.\\NUL", u"CON", u"\\\\.\\pipe\\kw", u""}) {
        std::string reason;
        EXPECT_EQ(native().openFile(path, reason), nullptr);
        EXPECT_EQ(reason, "No file can have this name");
        EXPECT_FALSE(native().isRegularFile(path));
    }
}

TEST(FileReader, SaysWhyAFileDoesNotOpen) {
    const TempDir dir;
    const fs::path locked = dir.write("locked", "x");
    const HANDLE lock = ::CreateFileW(locked.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(lock, INVALID_HANDLE_VALUE);
    for (const std::u16string& path :
         {dir.path("missing").u16string(), dir.path("no/such/folder").u16string(),
          locked.u16string(), std::u16string(u"\\\\kw-no-such-server\\share\\a.ttf")}) {
        std::string reason;
        EXPECT_EQ(native().openFile(path, reason), nullptr);
        EXPECT_FALSE(reason.empty());
    }
    ::CloseHandle(lock);
    EXPECT_EQ(readAll(locked.u16string()), "x");
}

TEST(FileReader, LeavesTheFileToOthers) {
    const TempDir dir;
    const fs::path path = dir.write("file", "bytes");
    std::string reason;
    const auto file = native().openFile(path.u16string(), reason);
    ASSERT_NE(file, nullptr) << reason;
    EXPECT_TRUE(fs::remove(path));
}

TEST(KnownFolders, AreThoseOfTheSystemAndTheUser) {
    EXPECT_EQ(native().knownFolder(KnownFolder::fonts), variable("windir") + u"\\Fonts");
    const std::u16string appData = native().knownFolder(KnownFolder::appData);
    const std::u16string local = native().knownFolder(KnownFolder::localAppData);
    EXPECT_EQ(appData, variable("APPDATA"));
    EXPECT_EQ(local, variable("LOCALAPPDATA"));
    EXPECT_EQ(native().knownFolder(KnownFolder::userFonts), local + u"\\Microsoft\\Windows\\Fonts");
}

TEST(KnownFolders, FilesPutIntoTheFontFoldersAreListed) {
    for (const KnownFolder folder : {KnownFolder::fonts, KnownFolder::userFonts}) {
        const fs::path path = native().knownFolder(folder);
        std::error_code error;
        fs::create_directories(path, error);
        const fs::path font = path / u"kw-test-\u8868.ttf";
        std::ofstream(font) << "bytes";
        if (!fs::exists(font))
            GTEST_SKIP() << "no right to write into the fonts folder";
        const auto entries = native().listDirectory(path.u16string());
        ASSERT_TRUE(entries);
        EXPECT_NE(find(*entries, u"kw-test-\u8868.ttf"), nullptr);
        fs::remove(font);
    }
}

TEST(ModuleFolder, IsThatOfALoadedModuleOrElseOfTheProgram) {
    const auto samePlace = [](const std::u16string& one, const std::u16string& other) {
        return native().directoryIdentity(one).has_value() &&
               native().directoryIdentity(one) == native().directoryIdentity(other);
    };
    EXPECT_TRUE(
        samePlace(native().moduleFolder(u"kernel32.dll"), variable("windir") + u"\\system32"));
    std::array<wchar_t, 32768> program{};
    ::GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size()));
    const std::u16string programFolder = fs::path(program.data()).parent_path().u16string();
    EXPECT_NE(programFolder.back(), u'\\');
    EXPECT_EQ(native().moduleFolder(u"KWFontService17.dll"), programFolder); // linked in statically
    EXPECT_EQ(native().moduleFolder(u"NoSuchModule.dll"), programFolder);
    EXPECT_EQ(native().moduleFolder(u""), programFolder);
}

TEST(NarrowPath, IsNothingForAPathThatReadsDifferentlyInAnotherCodePage) {
    EXPECT_EQ(KWPlatform::narrowPath(u"C:\\fonts\\a.ttf"), "C:\\fonts\\a.ttf");
    EXPECT_FALSE(KWPlatform::narrowPath(u"C:\\\u00E9.ttf"));
    EXPECT_FALSE(KWPlatform::narrowPath(u"C:\\\u8868.ttf"));
    EXPECT_FALSE(KWPlatform::narrowPath(std::u16string_view(u"C:\\a\0b", 6)));
    EXPECT_FALSE(KWPlatform::narrowPath(u"C:\\" + std::u16string(300, u'n')));
    EXPECT_EQ(KWPlatform::preferredSeparator(), u'\\');
}

// The job runs this room a second time under a Japanese locale and names the code page it wants.
TEST(CodePage, IsTheOneThatTheTestRunIsAbout) {
    const char* const wanted = std::getenv("KW_CODE_PAGE");
    if (wanted == nullptr)
        GTEST_SKIP() << "KW_CODE_PAGE is not set";
    EXPECT_EQ(std::to_string(::GetACP()), wanted);
}
