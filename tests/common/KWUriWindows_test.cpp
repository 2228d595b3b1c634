// Windows only: paths of its kinds, on the real system.

#include "KWCommon15/KWUri.h"

#include "platform/windows/WindowsHeader.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <istream>
#include <iterator>
#include <memory>
#include <string>

using namespace KWCommonNS;

namespace {

/// The current folder for the length of a scope.
class CurrentFolder {
public:
    explicit CurrentFolder(const std::filesystem::path& folder)
        : before_(std::filesystem::current_path()) {
        std::filesystem::current_path(folder);
    }
    ~CurrentFolder() { std::filesystem::current_path(before_); }
    CurrentFolder(const CurrentFolder&) = delete;
    CurrentFolder& operator=(const CurrentFolder&) = delete;

private:
    std::filesystem::path before_;
};

std::string contents(const KWUri& uri) {
    UnicodeString reason;
    const std::unique_ptr<std::istream> stream(uri.getIStream(nullptr, &reason));
    if (stream == nullptr) {
        std::string text = "not opened: ";
        return reason.toUTF8String(text);
    }
    return {std::istreambuf_iterator<char>(*stream), {}};
}

UnicodeString textOf(const std::filesystem::path& path) {
    return KWTest::pathText(path);
}

} // namespace

TEST(WindowsUri, APathWithoutADriveIsOnTheCurrentOne) {
    const KWTest::TempDir dir;
    const std::filesystem::path file = dir.write("a.ttf", "bytes");
    const CurrentFolder current(dir.path());
    const std::filesystem::path rooted = file.root_directory() / file.relative_path();
    EXPECT_EQ(contents(KWUri(textOf(rooted))), "bytes");
    EXPECT_EQ(contents(KWUri(u"a.ttf")), "bytes");
    EXPECT_EQ(contents(KWUri(u"C:\\no\\such\\folder\\a.ttf")),
              "not opened: No such file or directory");
}

TEST(WindowsUri, ANameBehindADriveIsInTheCurrentFolderOfThatDrive) {
    const KWTest::TempDir dir;
    const std::filesystem::path file = dir.write("a.ttf", "bytes");
    const CurrentFolder current(dir.path());
    const std::u16string drive = file.root_name().u16string();
    const KWUri uri(UnicodeString(drive.c_str()) + u"a.ttf");
    EXPECT_FALSE(uri.isAbsolute());
    EXPECT_EQ(contents(uri), "bytes");
    EXPECT_EQ(contents(KWUri(UnicodeString(drive.c_str()) + u"a.ttf", dir.uri("x"))), "bytes")
        << "the same drive as the base";
}

TEST(WindowsUri, AShareIsAServerAndComesBackAsItWas) {
    const KWUri uri(u"\\\\kw-no-such-server\\share\\f\u00F6nt.ttf");
    EXPECT_EQ(uri.getString(), UnicodeString(u"file://kw-no-such-server/share/f%C3%B6nt.ttf"));
    EXPECT_EQ(uri.getLocalPath(), UnicodeString(u"\\\\kw-no-such-server\\share\\f\u00F6nt.ttf"));
    EXPECT_TRUE(uri.isAbsolute());
    EXPECT_FALSE(uri.isFileExists());
    EXPECT_TRUE(contents(uri).starts_with("not opened: "));
}

TEST(WindowsUri, NamesOfAnyScriptAndLengthOpen) {
    const KWTest::TempDir dir;
    std::u16string folder = dir.path().u16string();
    while (folder.size() < 400) {
        folder += u"\\\u8868 \u0436" + std::u16string(60, u'\u540D');
        ASSERT_NE(::CreateDirectoryW(KWPlatform::toWide(u"\\\\?\\" + folder), nullptr), 0);
    }
    const std::u16string file = folder + u"\\a.ttf";
    ASSERT_NE(::CopyFileW(dir.write("plain.ttf", "bytes").c_str(),
                          KWPlatform::toWide(u"\\\\?\\" + file), TRUE),
              0);
    const KWUri uri(UnicodeString(file.c_str()), URISTR_LOCAL);
    EXPECT_TRUE(uri.isFileExists());
    EXPECT_EQ(contents(uri), "bytes");
    EXPECT_NE(::DeleteFileW(KWPlatform::toWide(u"\\\\?\\" + file)), 0);
    for (; folder.size() > dir.path().u16string().size(); folder.resize(folder.rfind(u'\\')))
        EXPECT_NE(::RemoveDirectoryW(KWPlatform::toWide(u"\\\\?\\" + folder)), 0);
}

TEST(WindowsUri, DevicesAreNoFiles) {
    for (const char16_t* text : {u"NUL", u"\\\\.\\NUL", u"\\\\?\\GLOBALROOT\\Device\\Null"}) {
        EXPECT_FALSE(KWUri(text).isFileExists());
        EXPECT_EQ(KWUri(text).getIStream(), nullptr);
    }
}
