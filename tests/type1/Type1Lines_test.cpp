#include "type1/Type1Lines.h"

#include "support/Rng.h"

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

/// The same, slowly.
Lines plainLinesOf(const std::string& text, Type1LineEnd lineEnd) {
    Lines lines;
    std::string line;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isCR = text[i] == '\r' && lineEnd == Type1LineEnd::CROrLF;
        if (text[i] != '\n' && !isCR) {
            line += text[i];
            continue;
        }
        lines.push_back(line);
        line.clear();
        if (isCR && i + 1 < text.size() && text[i + 1] == '\n')
            ++i;
    }
    if (!line.empty())
        lines.push_back(line);
    return lines;
}

TEST(Type1Lines, AreThoseOfAPlainReadingWhateverEndsThem) {
    KWTest::Rng rng(7);
    for (int round = 0; round < 20; ++round) {
        std::string text;
        const unsigned ends = 2 + rng.below(30); // of so many characters two are line ends
        while (text.size() < 40000)
            text += "\r\nabcdefghijklmnopqrstuvwxyzABCDEF"[rng.below(ends + 1)];
        for (const Type1LineEnd lineEnd : {Type1LineEnd::LF, Type1LineEnd::CROrLF})
            EXPECT_EQ(linesOf(text, lineEnd), plainLinesOf(text, lineEnd)) << round;
    }
}

TEST(Type1Lines, TheRestOfALongLineIsPassedBy) {
    const std::string longLine(100000, 'x');
    EXPECT_EQ(linesOf(longLine + "\nshort\n", Type1LineEnd::LF, 5), (Lines{"xxxxx", "short"}));
}

} // namespace
} // namespace KWFontService_NS
