#include "type1/GlyphListFile.h"

#include <gtest/gtest.h>

#include <sstream>

namespace KWFontService_NS {
namespace {

Type1GlyphList listOf(const std::string& text) {
    std::istringstream stream(text);
    Type1GlyphList list;
    EXPECT_TRUE(readGlyphList(stream, list));
    return list;
}

TEST(GlyphListFile, ALineIsAValueAndAName) {
    EXPECT_EQ(listOf("0041;A\n20ac;Euro\n1F600;smile\n"),
              (Type1GlyphList{{0x41, "A"}, {0x20AC, "Euro"}, {0x1F600, "smile"}}));
}

TEST(GlyphListFile, LinesOfAnyEndAndWithoutOne) {
    EXPECT_EQ(listOf("0041;A\r\n0042;B\r0043;C\n\n0044;D"),
              (Type1GlyphList{{0x41, "A"}, {0x42, "B"}, {0x43, "C"}, {0x44, "D"}}));
}

TEST(GlyphListFile, CommentsAndIndentedLinesArePassedBy) {
    EXPECT_EQ(listOf("# 0041;A\n 0042;B\n\t0043;C\n\n0044;D\n"), (Type1GlyphList{{0x44, "D"}}));
}

TEST(GlyphListFile, ASemicolonHasToFollowTheValue) {
    EXPECT_EQ(listOf("0041 A\n0042 ;B\n;C\nxyz;D\n004G;E\n"), Type1GlyphList{});
}

TEST(GlyphListFile, TheNameEndsAtAnotherSemicolonWithoutWhiteSpace) {
    EXPECT_EQ(listOf("0041;A \t;LATIN CAPITAL LETTER A\n0042;two words \n"),
              (Type1GlyphList{{0x41, "A"}, {0x42, "two words"}}));
}

TEST(GlyphListFile, OfTwoLinesForAValueTheFirstCounts) {
    EXPECT_EQ(listOf("0041;A\n41;B\n"), (Type1GlyphList{{0x41, "A"}}));
    Type1GlyphList list{{0x41, "old"}};
    std::istringstream stream("0041;new\n");
    EXPECT_TRUE(readGlyphList(stream, list));
    EXPECT_EQ(list, (Type1GlyphList{{0x41, "old"}}));
}

TEST(GlyphListFile, ValuesPastUnicodeArePassedBy) {
    EXPECT_EQ(listOf("10FFFF;last\n110000;no\nFFFFFFFF0041;A\n"),
              (Type1GlyphList{{0x10FFFF, "last"}}));
}

TEST(GlyphListFile, NonsenseLeavesAnEmptyList) {
    EXPECT_EQ(listOf(""), Type1GlyphList{});
    EXPECT_EQ(listOf(std::string(100000, 'A')), Type1GlyphList{});
    EXPECT_EQ(listOf(std::string(100000, '\0')), Type1GlyphList{});
}

TEST(GlyphListFile, ANameWithoutEndIsPassedByAndTheNextLineRead) {
    EXPECT_EQ(listOf("0041;" + std::string(1 << 20, 'x') + "\n0042;B\n"),
              (Type1GlyphList{{0x42, "B"}}));
    const std::string longest(1024, 'x');
    EXPECT_EQ(listOf("0041;" + longest + "\n0042;y" + longest + "\n"),
              (Type1GlyphList{{0x41, longest}}));
}

TEST(GlyphListFile, AStreamThatFailsIsTold) {
    struct Failing : std::streambuf {
        int_type underflow() override { throw 1; }
    } buffer;
    std::istream stream(&buffer);
    Type1GlyphList list;
    EXPECT_FALSE(readGlyphList(stream, list));
}

} // namespace
} // namespace KWFontService_NS
