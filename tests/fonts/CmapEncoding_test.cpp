#include "fonts/cmap/CmapEncoding.h"

#include "fonts/CmapFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

struct Row {
    std::uint16_t platformID;
    std::uint16_t encodingID;
    int ch;
    int code;
};

int convert(const Row& row) {
    return CmapEncoding(row.platformID, row.encodingID, false).convert(row.ch);
}

TEST(CmapEncoding, EachLegacyEncodingHasItsConverter) {
    const Row rows[] = {
        {3, 2, 0x3042, 0x82A0},  // Shift JIS
        {3, 3, 0x554A, 0xB0A1},  // GB 2312
        {3, 4, 0x4E00, 0xA440},  // Big5
        {3, 5, 0xAC00, 0xB0A1},  // Unified Hangul
        {1, 1, 0x3042, 0x82A0},  // Macintosh: Japanese
        {1, 2, 0x4E00, 0xA440},  // traditional Chinese
        {1, 3, 0xAC00, 0xB0A1},  // Korean
        {1, 25, 0x4E02, 0x8140}, // simplified Chinese: a character beyond GB 2312
    };
    for (const Row& row : rows) {
        EXPECT_EQ(convert(row), row.code) << row.platformID << ' ' << row.encodingID;
        EXPECT_EQ(convert({row.platformID, row.encodingID, 'A', 0}), 'A') << "one byte";
    }
}

TEST(CmapEncoding, SyllablesBeyondTheOlderHangulStandardFollowTheNamedConverter) {
    // "cp949" is ICU's name of the IBM code page, which places them apart from Windows' (0x8141).
    EXPECT_EQ(convert({3, 5, 0xAC02, 0}), 0x9EAD);
    EXPECT_EQ(convert({1, 3, 0xAC02, 0}), 0x9EAD);
}

TEST(CmapEncoding, EveryOtherEncodingTakesTheCharacterAsItIs) {
    for (const auto& [platform, encoding] :
         std::initializer_list<std::pair<int, int>>{{0, 1}, {1, 0}, {3, 0}, {3, 1}, {3, 10}}) {
        for (const int ch : std::initializer_list<int>{0, 'A', 0x3042, 0xF041, 0x1F600}) {
            EXPECT_EQ(convert({static_cast<std::uint16_t>(platform),
                               static_cast<std::uint16_t>(encoding), ch, 0}),
                      ch);
        }
    }
}

TEST(CmapEncoding, ASymbolRangeLiftsCodesOfWindowsSymbolAndUnicodeOnly) {
    for (const std::uint16_t encoding : std::initializer_list<std::uint16_t>{0, 1}) {
        const CmapEncoding symbol(3, encoding, true);
        EXPECT_EQ(symbol.convert(0x41), 0xF041);
        EXPECT_EQ(symbol.convert(0xFFF), 0xFFFF);
        EXPECT_EQ(symbol.convert(0xF041), 0xF041);
        EXPECT_EQ(symbol.convert(0x1041), 0x1041) << "any of the four bits keeps it";
        EXPECT_EQ(symbol.convert(0x10041), 0x1F041);
    }
    EXPECT_EQ(CmapEncoding(3, 10, true).convert(0x41), 0x41);
    EXPECT_EQ(CmapEncoding(1, 0, true).convert(0x41), 0x41);
    EXPECT_EQ(CmapEncoding(1, 1, true).convert(0x41), 0x41);
    EXPECT_EQ(CmapEncoding(0, 1, true).convert(0x41), 0x41);
}

TEST(CmapEncoding, TwoMarksOfWindowsSimplifiedChineseNeedNoConverter) {
    EXPECT_EQ(convert({3, 3, 0x00B7, 0}), 0xA1A4);
    EXPECT_EQ(convert({3, 3, 0x2014, 0}), 0xA1AA);
    // Elsewhere the converter decides.
    EXPECT_EQ(convert({1, 25, 0x2014, 0}), 0xA1AA);
    EXPECT_NE(convert({3, 2, 0x00B7, 0}), 0xA1A4);
    EXPECT_NE(convert({3, 4, 0x2014, 0}), 0xA1AA);
}

TEST(CmapEncoding, CharactersOutsideTheBasicPlaneHaveNoLegacyCode) {
    for (const int ch : {0x10000, 0x20000, 0x10FFFF, 0x7FFFFFFF, -1, -0x10000})
        EXPECT_EQ(convert({3, 2, ch, 0}), -1) << ch;
}

TEST(CmapEncoding, TheQuestionMarkIsACodeOfItsOwn) {
    for (const std::uint16_t encoding : std::initializer_list<std::uint16_t>{2, 3, 4, 5})
        EXPECT_EQ(convert({3, encoding, '?', 0}), '?');
}

TEST(CmapEncoding, AConverterThatWritesAQuestionMarkInsteadHasNoCode) {
    // No character but '?' may come back as the substitution mark.
    for (const Row& row : std::initializer_list<Row>{
             {3, 2, 0, 0}, {3, 3, 0, 0}, {3, 4, 0, 0}, {3, 5, 0, 0}, {1, 25, 0, 0}}) {
        for (int ch = 0x20; ch < 0x10000; ch += 61) {
            if (ch != '?') {
                EXPECT_NE(convert({row.platformID, row.encodingID, ch, 0}), 0x3F) << ch;
            }
        }
    }
}

TEST(CmapEncoding, AnyOtherSubstituteOfAConverterIsACodeLikeAnother) {
    // Only the question mark is told apart; a font may have a glyph at the code of the others.
    for (const Row& row : std::initializer_list<Row>{{3, 2, 0x0E01, 0xFCFC},
                                                     {3, 3, 0x0E01, 0xA1A1},
                                                     {3, 3, 0x00A5, 0x1A},
                                                     {3, 5, 0x0E01, 0xAFFE},
                                                     {3, 5, 0x00E9, 0x7F},
                                                     {1, 2, 0x0E01, 0xC8FE},
                                                     {3, 4, 0x0E01, -1},
                                                     {1, 25, 0x0E01, -1}})
        EXPECT_EQ(convert(row), row.code) << row.platformID << ' ' << row.encodingID;
}

TEST(CmapEncoding, ALegacyFontIsReadThroughItsConverter) {
    const Bytes format2 = CmapFormat2::of({{'A', 5}, {0x82A0, 7}}).build();
    const CmapReading japanese = CmapReading::of(format2, 3, 2);
    EXPECT_EQ(japanese.cmap.convertToCode(0x3042), 0x82A0);
    EXPECT_EQ(japanese(0x3042), 7);
    EXPECT_EQ(japanese('A'), 5);
    EXPECT_EQ(japanese(0x82A0), kMissing) << "U+82A0 is another character";
    EXPECT_EQ(japanese(0x1F600), kMissing);

    const CmapReading chinese = CmapReading::of(CmapFormat4::of({{0xA1AA, 9}}).build(), 3, 3);
    EXPECT_EQ(chinese(0x2014), 9);
}

} // namespace
} // namespace KWFontService_NS
