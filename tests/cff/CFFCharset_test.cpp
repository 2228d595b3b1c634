#include "cff/CFFCharset.h"

#include "cff/CffFixture.h"

#include <gmock/gmock.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using testing::ElementsAre;
using testing::IsEmpty;

std::optional<CFFCharset> charsetOf(const Bytes& bytes, std::uint16_t glyphCount) {
    TableStream stream(Bytes{9}.bytes(bytes));
    return readCharset(stream.table, 1, glyphCount);
}

using Range = CharsetRange;

TEST(CFFCharset, Format0HasAValueForEachGlyphButTheFirst) {
    const auto charset = charsetOf(Bytes{0}.u16s({5, 1, 700}), 4);
    ASSERT_TRUE(charset);
    EXPECT_THAT(charset->values, ElementsAre(5, 1, 700));
    EXPECT_THAT(charset->byValue, IsEmpty());
    EXPECT_THAT(charset->byGlyph, IsEmpty());
    EXPECT_FALSE(charsetOf(Bytes{0}.u16s({5, 1}).u8(2), 4));
}

TEST(CFFCharset, Format1HasRangesSortedByValueAndByGlyph) {
    const auto charset = charsetOf(Bytes{1}.u16(500).u8(2).u16(34).u8(1), 6);
    ASSERT_TRUE(charset);
    EXPECT_THAT(charset->values, IsEmpty());
    EXPECT_THAT(charset->byValue, ElementsAre(Range{34, 35, 4}, Range{500, 502, 1}));
    EXPECT_THAT(charset->byGlyph, ElementsAre(Range{1, 3, 500}, Range{4, 5, 34}));
    EXPECT_FALSE(charsetOf(Bytes{1}.u16(500).u8(2).u16(34), 6));
}

TEST(CFFCharset, Format2HasLongerRanges) {
    const auto charset = charsetOf(Bytes{2}.u16(1).u16(999), 1001);
    ASSERT_TRUE(charset);
    EXPECT_THAT(charset->byValue, ElementsAre(Range{1, 1000, 1}));
    EXPECT_THAT(charset->byGlyph, ElementsAre(Range{1, 1000, 1}));
    EXPECT_FALSE(charsetOf(Bytes{2}.u16(1).u8(3), 1001));
}

TEST(CFFCharset, AnyOtherFormatIsRefused) {
    for (int format = 3; format < 256; ++format)
        EXPECT_FALSE(charsetOf(Bytes{format}.zero(100), 2)) << format;
    EXPECT_FALSE(charsetOf({}, 2));
}

TEST(CFFCharset, NothingIsReadForOneGlyphOrNone) {
    for (const std::uint16_t count : {std::uint16_t{0}, std::uint16_t{1}}) {
        for (int format = 0; format < 3; ++format) {
            const auto charset = charsetOf({format}, count);
            ASSERT_TRUE(charset) << count;
            EXPECT_THAT(charset->values, IsEmpty());
            EXPECT_THAT(charset->byGlyph, IsEmpty());
        }
    }
}

TEST(CFFCharset, ARangeEndsWithTheFont) {
    const auto charset = charsetOf(Bytes{2}.u16(10).u16(0xFFFF), 4);
    ASSERT_TRUE(charset);
    EXPECT_THAT(charset->byValue, ElementsAre(Range{10, 12, 1}));
    EXPECT_THAT(charset->byGlyph, ElementsAre(Range{1, 3, 10}));
}

TEST(CFFCharset, ARangeEndsWithTheLastValueButItsGlyphsCount) {
    const auto charset = charsetOf(Bytes{1}.u16(0xFFFE).u8(4).u16(7).u8(0), 7);
    ASSERT_TRUE(charset);
    EXPECT_THAT(charset->byValue, ElementsAre(Range{7, 7, 6}, Range{0xFFFE, 0xFFFF, 1}));
    EXPECT_THAT(charset->byGlyph, ElementsAre(Range{1, 2, 0xFFFE}, Range{6, 6, 7}));
}

TEST(CFFCharset, EveryGlyphMayHaveARangeOfItsOwn) {
    Bytes bytes{1};
    for (int i = 1; i < 0xFFFF; ++i)
        bytes.u16(0xFFFF - i).u8(0);
    const auto charset = charsetOf(bytes, 0xFFFF);
    ASSERT_TRUE(charset);
    EXPECT_EQ(charset->byGlyph.size(), 0xFFFEU);
    EXPECT_EQ(findInRanges(charset->byGlyph, 3, 0), 0xFFFC);
    EXPECT_EQ(findInRanges(charset->byValue, 0xFFFC, 0), 3);
}

TEST(CFFCharset, ASearchFindsTheRangeThatHoldsTheNumber) {
    const std::vector<Range> ranges{{10, 12, 100}, {20, 20, 5}};
    EXPECT_EQ(findInRanges(ranges, 9, 7), 7);
    EXPECT_EQ(findInRanges(ranges, 10, 7), 100);
    EXPECT_EQ(findInRanges(ranges, 12, 7), 102);
    EXPECT_EQ(findInRanges(ranges, 13, 7), 7);
    EXPECT_EQ(findInRanges(ranges, 20, 7), 5);
    EXPECT_EQ(findInRanges(ranges, 21, 7), 7);
    EXPECT_EQ(findInRanges({}, 0, 7), 7);
}

// --- Encoding -----------------------------------------------------------------------------------

std::optional<std::vector<std::uint8_t>> encodingOf(const Bytes& bytes) {
    TableStream stream(Bytes{9}.bytes(bytes));
    return readEncoding(stream.table, 1);
}

TEST(CFFEncoding, Format0HasACodeForEachGlyph) {
    EXPECT_THAT(encodingOf({0, 3, 65, 33, 200}).value(), ElementsAre(65, 33, 200));
    EXPECT_THAT(encodingOf({0, 0}).value(), IsEmpty());
    EXPECT_FALSE(encodingOf({0, 3, 65, 33}));
    EXPECT_FALSE(encodingOf({0}));
    EXPECT_FALSE(encodingOf({}));
}

TEST(CFFEncoding, Format1HasRangesOfCodes) {
    EXPECT_THAT(encodingOf({1, 2, 65, 2, 33, 0}).value(), ElementsAre(65, 66, 67, 33));
    EXPECT_FALSE(encodingOf({1, 2, 65, 2, 33}));
}

// A font with supplements to format 0 is read as one with ranges.
TEST(CFFEncoding, AnyFormatButZeroReadsAsFormat1) {
    for (const int format : {0x80, 0x81, 2, 0xFF})
        EXPECT_THAT(encodingOf({format, 1, 65, 1, 9, 9, 9}).value(), ElementsAre(65, 66)) << format;
}

TEST(CFFEncoding, CodesGoOnAtZero) {
    EXPECT_THAT(encodingOf({1, 1, 254, 3}).value(), ElementsAre(254, 255, 0, 1));
}

} // namespace
} // namespace KWFontService_NS
