#include "type1/Type1CodeMap.h"

#include <gtest/gtest.h>

#include <set>
#include <thread>
#include <vector>

namespace KWFontService_NS {
namespace {

TEST(Type1CodeMap, ACharacterKeepsItsFirstCode) {
    Type1CodeMap codes;
    EXPECT_EQ(codes.unicodeCode('A'), 0);
    EXPECT_EQ(codes.assignCode('A', 65), 65);
    EXPECT_EQ(codes.assignCode('A', 66), 66);
    EXPECT_EQ(codes.unicodeCode('A'), 65);
    EXPECT_EQ(codes.unicodeCode(-1), 0);
}

TEST(Type1CodeMap, ACodeKeepsItsFirstName) {
    Type1CodeMap codes;
    codes.addCMapEntry(3, 65, "A");
    codes.addCMapEntry(3, 65, "B");
    codes.addCMapEntry(3, 33, "exclam");
    const FS_BaseFont::Type1CMapArray expected{{65, "A"}, {33, "exclam"}};
    ASSERT_NE(codes.getType1CMapArray(3), nullptr);
    EXPECT_EQ(*codes.getType1CMapArray(3), expected);
    std::string name;
    EXPECT_TRUE(codes.getType1GlyphName(3, 65, name));
    EXPECT_EQ(name, "A");
}

TEST(Type1CodeMap, FontNumbersThatNothingWasAddedToHaveNothing) {
    Type1CodeMap codes;
    unsigned char code = 7;
    std::string name = "kept";
    const auto hasNothing = [&](unsigned char fontNumber) {
        return codes.getType1CMapArray(fontNumber) == nullptr &&
               !codes.getType1CMapPair(fontNumber, 0, code, name) &&
               !codes.getType1GlyphName(fontNumber, 65, name);
    };
    EXPECT_TRUE(hasNothing(0));
    codes.addCMapEntry(0, 65, "A");
    EXPECT_TRUE(hasNothing(1));
    EXPECT_EQ(code, 7);
    EXPECT_EQ(name, "kept");
}

TEST(Type1CodeMap, PairsAreCountedFromZero) {
    Type1CodeMap codes;
    codes.addCMapEntry(0, 66, "B");
    codes.addCMapEntry(0, 65, "A");
    unsigned char code = 0;
    std::string name;
    EXPECT_TRUE(codes.getType1CMapPair(0, 1, code, name));
    EXPECT_EQ(code, 65);
    EXPECT_EQ(name, "A");
    EXPECT_FALSE(codes.getType1CMapPair(0, 2, code, name));
    EXPECT_FALSE(codes.getType1CMapPair(0, -1, code, name));
    EXPECT_FALSE(codes.getType1GlyphName(0, 67, name));
}

TEST(Type1CodeMap, ACodeIsOneAboveTheLast) {
    Type1CodeMap codes;
    codes.nextCode = Type1CodeMap::kLastOwnCode;
    codes.raiseNextCode();
    EXPECT_EQ(codes.allocateCode(0x100, "Amacron"), 128);
    EXPECT_EQ(codes.glyphOfCode(128), FS_NO_GLYPH) << "it is a character's and not a glyph's";
}

TEST(Type1CodeMap, AGlyphHoldsOneCode) {
    Type1CodeMap codes;
    EXPECT_EQ(codes.glyphCode(7), 0);
    EXPECT_EQ(codes.glyphOfCode(65), FS_NO_GLYPH);
    EXPECT_TRUE(codes.assignGlyphCode(7, 65));
    EXPECT_EQ(codes.glyphCode(7), 65);
    EXPECT_EQ(codes.glyphOfCode(65), 7);
    EXPECT_EQ(codes.glyphCode(8), 0);
    EXPECT_EQ(codes.unicodeCode(65), 0) << "characters are another matter";
}

TEST(Type1CodeMap, ACodeThatIsTakenGoesToNoOtherGlyph) {
    Type1CodeMap codes;
    EXPECT_TRUE(codes.assignGlyphCode(7, 65));
    EXPECT_FALSE(codes.assignGlyphCode(8, 65));
    EXPECT_EQ(codes.glyphCode(8), 0);
    codes.addCMapEntry(0, 66, "B");
    EXPECT_FALSE(codes.assignGlyphCode(9, 66));
}

TEST(Type1CodeMap, AllocatingForAGlyphNamesItAndPassesByTheCodesOfGlyphs) {
    Type1CodeMap codes;
    codes.nextCode = 128;
    EXPECT_TRUE(codes.assignGlyphCode(7, 128));
    EXPECT_EQ(codes.allocateGlyphCode(8, "Amacron"), 129);
    EXPECT_EQ(codes.glyphCode(8), 129);
    EXPECT_EQ(codes.glyphOfCode(129), 8);
    std::string name;
    EXPECT_TRUE(codes.getType1GlyphName(0, 129, name));
    EXPECT_EQ(name, "Amacron");
    codes.nextCode = Type1CodeMap::kAllCodes;
    EXPECT_EQ(codes.allocateGlyphCode(9, "x"), 0);
    EXPECT_EQ(codes.glyphCode(9), 0);
}

TEST(Type1CodeMap, After253CodesTheNextIs0101) {
    Type1CodeMap codes;
    for (int i = 1; i <= 253; ++i) {
        codes.raiseNextCode();
        EXPECT_EQ(codes.allocateCode(i, "x"), i);
    }
    codes.raiseNextCode();
    EXPECT_EQ(codes.allocateCode(254, "y"), 0x0101);
    std::string name;
    EXPECT_TRUE(codes.getType1GlyphName(1, 1, name));
    EXPECT_EQ(name, "y");
    EXPECT_EQ(codes.unicodeCode(254), 0x0101);
}

TEST(Type1CodeMap, AllCodesAreDifferentAndNoLowByteIsZero) {
    Type1CodeMap codes;
    std::set<int> given;
    int ch = 0;
    for (;; ++ch) {
        codes.raiseNextCode();
        const unsigned short code = codes.allocateCode(ch, "x");
        if (code == 0)
            break;
        EXPECT_NE(code & 0xFF, 0);
        EXPECT_LE(code & 0xFF, 253);
        given.insert(code);
    }
    EXPECT_EQ(ch, 256 * 253);
    EXPECT_EQ(given.size(), 256U * 253);
    for (int i = 0; i < 1000; ++i)
        codes.raiseNextCode();
    EXPECT_EQ(codes.allocateCode(ch, "x"), 0);
    EXPECT_EQ(codes.nextCode, Type1CodeMap::kAllCodes);
}

TEST(Type1CodeMap, CodesThatAFontProgramHasNamedAreNotGivenAgain) {
    Type1CodeMap codes;
    codes.addCMapEntry(0, 130, "dagger");
    codes.nextCode = 130;
    EXPECT_EQ(codes.allocateCode(0x100, "Amacron"), 131);
}

TEST(Type1CodeMap, RaisingGoesAboveALeastValue) {
    Type1CodeMap codes;
    codes.raiseNextCode(254);
    EXPECT_EQ(codes.nextCode, 255);
    codes.raiseNextCode(254);
    EXPECT_EQ(codes.nextCode, 256);
}

TEST(Type1CodeMap, ThreadsMayAddAtOnce) {
    Type1CodeMap codes;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&codes, t] {
            for (int i = 1; i < 200; ++i) {
                codes.addCMapEntry(static_cast<unsigned char>(t), static_cast<unsigned char>(i),
                                   "x");
                codes.assignCode(t * 256 + i, static_cast<unsigned short>(i));
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (int t = 0; t < 4; ++t)
        EXPECT_EQ(codes.getType1CMapArray(static_cast<unsigned char>(t))->size(), 199U);
}

} // namespace
} // namespace KWFontService_NS
