#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace KWTest {
namespace {

namespace fs = std::filesystem;

TEST(TempDir, IsRemovedWithEverythingInItAtTheEndOfItsScope) {
    fs::path path;
    {
        const TempDir folder;
        path = folder.path();
        folder.write("a/b/file.txt", "text");
        EXPECT_TRUE(fs::is_regular_file(path / "a" / "b" / "file.txt"));
        EXPECT_TRUE(fs::is_directory(folder.makeFolder("empty")));
    }
    EXPECT_FALSE(fs::exists(path));
}

TEST(TempDir, TwoFoldersAtOnceAreDifferent) {
    const TempDir one;
    const TempDir other;
    EXPECT_NE(one.path(), other.path());
}

TEST(TempDir, WhatIsWrittenCanBeReadBack) {
    const TempDir folder;
    const Bytes bytes{0, 10, 13, 26, 255};
    EXPECT_EQ(readFile(folder.write("bytes", bytes)), bytes);
    EXPECT_EQ(readFile(folder.write("empty", Bytes())), Bytes());
}

TEST(TempDir, ReadingAFolderOrAMissingFileThrows) {
    const TempDir folder;
    EXPECT_THROW(readFile(folder.path()), std::runtime_error);
    EXPECT_THROW(readFile(folder.path("none")), std::runtime_error);
}

TEST(TempDir, PathsAreGivenAsTheLibraryTakesThem) {
    const TempDir folder;
    folder.write("\u3042 b.ttf", "x");
    const auto separator = static_cast<char16_t>(fs::path::preferred_separator);
    EXPECT_TRUE(folder.text("\u3042 b.ttf")
                    .endsWith(icu::UnicodeString(separator).append(u"\u3042 b.ttf")));
    const KWCommonNS::KWUri uri = folder.uri("\u3042 b.ttf");
    EXPECT_TRUE(uri.isFile());
    EXPECT_EQ(uri.getLocalPath(), folder.text("\u3042 b.ttf"));
}

} // namespace
} // namespace KWTest
