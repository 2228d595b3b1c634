#include "type1/Type1Lines.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

namespace KWFontService_NS {
namespace {

std::vector<std::string> linesOf(const std::string& text, Type1LineEnd lineEnd,
                                 std::size_t longest = 1000000) {
    std::istringstream stream(text);
    Type1Lines lines(stream, longest, lineEnd);
    std::vector<std::string> result;
    for (std::string_view line; lines.next(line);)
        result.emplace_back(line);
    return result;
}

using Lines = std::vector<std::string>;

TEST(Type1Lines, LFAloneLeavesCRInTheLine) {
    EXPECT_EQ(linesOf("a\r\nb\rc\n\nd", Type1LineEnd::LF), (Lines{"a\r", "b\rc", "", "d"}));
}

TEST(Type1Lines, CRAndLFAndBothEndALine) {
    EXPECT_EQ(linesOf("a\r\nb\rc\nd\n\re\r\r\n", Type1LineEnd::CROrLF),
              (Lines{"a", "b", "c", "d", "", "e", ""}));
}

TEST(Type1Lines, AnEndAtTheEndStartsNoLine) {
    EXPECT_EQ(linesOf("", Type1LineEnd::LF), Lines{});
    EXPECT_EQ(linesOf("a\n", Type1LineEnd::LF), Lines{"a"});
    EXPECT_EQ(linesOf("a\r\n", Type1LineEnd::CROrLF), Lines{"a"});
}

TEST(Type1Lines, LinesGoOverPiecesOfTheFile) {
    // A CRLF on every side of a piece's end.
    for (std::size_t length = 16378; length < 16388; ++length) {
        const std::string a(length, 'a');
        const std::string b(40000, 'b');
        EXPECT_EQ(linesOf(a + "\r\n" + b + "\r\nc", Type1LineEnd::CROrLF), (Lines{a, b, "c"}));
    }
}

TEST(Type1Lines, TheRestOfALongLineIsPassedBy) {
    const std::string longLine(100000, 'x');
    EXPECT_EQ(linesOf(longLine + "\nshort\n", Type1LineEnd::LF, 5), (Lines{"xxxxx", "short"}));
}

} // namespace
} // namespace KWFontService_NS
