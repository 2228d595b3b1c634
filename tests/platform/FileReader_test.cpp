#include "platform/Platform.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>

namespace fs = std::filesystem;

using KWTest::TempDir;

namespace {

KWPlatform::System& native() {
    return KWPlatform::nativeSystem();
}

} // namespace

TEST(FileReader, ReadsAtAnyPosition) {
    const TempDir dir;
    std::string reason;
    const auto file = native().openFile(dir.write("file", "0123456789").u16string(), reason);
    ASSERT_NE(file, nullptr) << reason;
    EXPECT_EQ(file->size(), 10U);
    std::array<char, 16> buffer{};
    EXPECT_EQ(file->readAt(3, buffer.data(), 4), 4U);
    EXPECT_EQ(std::string(buffer.data(), 4), "3456");
    EXPECT_EQ(file->readAt(8, buffer.data(), 16), 2U);
    EXPECT_EQ(file->readAt(10, buffer.data(), 16), 0U);
    EXPECT_EQ(file->readAt(1000, buffer.data(), 16), 0U);
    EXPECT_EQ(file->readAt(std::numeric_limits<std::uint64_t>::max(), buffer.data(), 16), 0U);
    EXPECT_EQ(file->readAt(std::numeric_limits<std::int64_t>::max(), buffer.data(), 16), 0U);
}

TEST(FileReader, AFileThatShrinksWhileOpenGivesShortReads) {
    const TempDir dir;
    const fs::path path = dir.write("file", std::string(10000, 'x'));
    std::string reason;
    const auto file = native().openFile(path.u16string(), reason);
    ASSERT_NE(file, nullptr) << reason;
    fs::resize_file(path, 100);
    std::string bytes(10000, '\0');
    EXPECT_EQ(file->readAt(0, bytes.data(), bytes.size()), 100U);
    EXPECT_EQ(file->readAt(100, bytes.data(), 1), 0U);
}
