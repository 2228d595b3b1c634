#include "type1/GlyphNames.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <thread>
#include <vector>

namespace KWFontService_NS {
namespace {

TEST(GlyphNames, TheListsHave856And203Names) {
    EXPECT_EQ(kFirstGlyphNames, 856U);
    EXPECT_EQ(kSecondGlyphNames, 203U);
}

TEST(GlyphNames, NamesOfBothListsHaveTheirCharacters) {
    const std::pair<int, const char*> rows[] = {{0x0041, "A"},
                                                {0x00C6, "AE"},
                                                {0x01FC, "AEacute"},
                                                {0x0030, "zero"},
                                                {0x03B6, "zeta"},
                                                {0x00B2, "twosuperior"},
                                                {0x00B3, "threesuperior"},
                                                {0x00B9, "onesuperior"},
                                                {0x2070, "zerosuperior"},
                                                {0xFB2B, "afii57695"},
                                                {0xFB35, "afii57723"},
                                                {0xFB4B, "afii57700"}};
    for (const auto& [ch, name] : rows) {
        EXPECT_EQ(glyphNameOf(ch), name);
        EXPECT_EQ(characterOf(name), ch);
    }
}

TEST(GlyphNames, WhatTheListsDoNotHaveHasNoNameAndNoCharacter) {
    for (const int ch : {-1, 0, 0x80, 0xA0, 0x0394, 0x4E00, 0x10FFFF})
        EXPECT_EQ(glyphNameOf(ch), "") << ch;
    for (const char* name : {"", "a1", "AA", "zetas", "uni0041", ".notdef"})
        EXPECT_EQ(characterOf(name), -1) << name;
}

TEST(GlyphNames, LatinGreekCyrillicAndSymbolsHaveTheirNames) {
    EXPECT_EQ(glyphNameOf(0x20AC), "Euro");
    EXPECT_EQ(glyphNameOf(0x0162), "Tcommaaccent");
    EXPECT_EQ(glyphNameOf(0x03B1), "alpha");
    EXPECT_EQ(glyphNameOf(0x0416), "afii10024");
    EXPECT_EQ(glyphNameOf(0x0454), "afii10101");
    EXPECT_EQ(glyphNameOf(0x2588), "block");
    EXPECT_EQ(glyphNameOf(0xFB01), "fi");
    EXPECT_EQ(glyphNameOf(0xF6D9), "copyrightserif");
}

TEST(GlyphNames, ANameBackAndForthIsItself) {
    std::set<std::string_view> names;
    for (int ch = 0; ch <= 0xFFFF; ++ch) {
        const std::string_view name = glyphNameOf(ch);
        if (name.empty())
            continue;
        EXPECT_EQ(characterOf(name), ch);
        names.insert(name);
    }
    // One character has two names.
    EXPECT_EQ(names.size(), kFirstGlyphNames + kSecondGlyphNames - 1);
}

TEST(GlyphNames, TheFirstListGoesBeforeTheSecond) {
    EXPECT_EQ(glyphNameOf(0x20A4), "lira");
    EXPECT_EQ(characterOf("lira"), 0x20A4);
    EXPECT_EQ(characterOf("afii08941"), 0x20A4);
}

TEST(GlyphNames, TwelveCharactersHaveASubstitute) {
    const std::pair<int, int> rows[] = {{0x00A0, 0x0020}, {0x00AD, 0x002D}, {0x021A, 0x0162},
                                        {0x021B, 0x0163}, {0x02C9, 0x00AF}, {0x0394, 0x2206},
                                        {0x03A9, 0x2126}, {0x03BC, 0x00B5}, {0x2215, 0x2044},
                                        {0x2219, 0x00B7}, {0xF6C1, 0x015E}, {0xF6C2, 0x015F}};
    for (const auto& [from, to] : rows)
        EXPECT_EQ(substituteCharacter(from), to);
    int substituted = 0;
    for (int ch = -1; ch <= 0x10000; ++ch)
        substituted += substituteCharacter(ch) != ch ? 1 : 0;
    EXPECT_EQ(substituted, 12);
}

TEST(GlyphNames, EverySubstituteHasANameAndWhatItStandsForHasNone) {
    for (int ch = 0; ch <= 0xFFFF; ++ch) {
        if (substituteCharacter(ch) == ch)
            continue;
        EXPECT_NE(glyphNameOf(substituteCharacter(ch)), "") << ch;
        EXPECT_EQ(glyphNameOf(ch), "") << ch;
    }
}

TEST(GlyphNames, TheSubstituteOfOmegaLeadsToOmega) {
    EXPECT_EQ(glyphNameOf(substituteCharacter(0x03A9)), "Omega");
}

TEST(StandardEncoding, Has149NamesWithTheirCodes) {
    int count = 0;
    for (int code = 0; code < 256; ++code) {
        const auto byte = static_cast<std::uint8_t>(code);
        const std::string_view name = standardName(byte);
        if (name.empty())
            continue;
        ++count;
        EXPECT_EQ(standardCode(name), byte);
    }
    EXPECT_EQ(count, 149);
    EXPECT_EQ(standardName('A'), "A");
    EXPECT_EQ(standardName(0x27), "quoteright");
    EXPECT_EQ(standardName(0xFB), "germandbls");
    EXPECT_EQ(standardName(0), "");
    EXPECT_EQ(standardCode(".notdef"), 0);
    EXPECT_EQ(standardCode("Euro"), 0);
    EXPECT_EQ(standardCode(""), 0);
}

TEST(GlyphNames, ThreadsMayAskAtOnce) {
    std::vector<std::thread> threads;
    std::vector<int> answers(4);
    for (int& answer : answers) {
        threads.emplace_back([&answer] {
            initType1Tables();
            answer = characterOf("zeta");
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(answers, std::vector<int>(4, 0x03B6));
}

} // namespace
} // namespace KWFontService_NS
