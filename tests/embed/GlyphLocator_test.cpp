#include "embed/GlyphLocator.h"

#include "support/GlyfTables.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using KWCommonNS::ByteView;
using KWTest::Bytes;
using KWTest::locaOf;

ByteView viewOf(const Bytes& bytes) {
    return ByteView(bytes.data(), bytes.size());
}

TEST(GlyphLocator, ShortEntriesHoldHalfTheOffset) {
    const Bytes loca{0x00, 0x00, 0x00, 0x05, 0x80, 0x00};
    const GlyphLocator locator(viewOf(loca), 0, 70000, 2);
    EXPECT_EQ(locator.entryCount(), 3u);
    EXPECT_EQ(locator.offset(1), 10u);
    EXPECT_EQ(locator.offset(2), 65536u);
    EXPECT_EQ(locator.length(0), 10u);
    EXPECT_EQ(locator.length(1), 65526u);
}

TEST(GlyphLocator, LongEntriesHoldTheOffset) {
    const Bytes loca{0x00, 0x00, 0x00, 0x01, 0x01, 0x02, 0x03, 0x04};
    const GlyphLocator locator(viewOf(loca), 1, 0x02000000, 1);
    EXPECT_EQ(locator.entryCount(), 2u);
    EXPECT_EQ(locator.offset(0), 1u);
    EXPECT_EQ(locator.offset(1), 0x01020304u);
}

TEST(GlyphLocator, OnlyFormatOneMeansLongEntries) {
    const Bytes loca = locaOf({0, 2, 4, 6}, false);
    for (const std::int16_t format : {std::int16_t{0}, std::int16_t{2}, std::int16_t{-1}}) {
        const GlyphLocator locator(viewOf(loca), format, 6, 3);
        EXPECT_FALSE(locator.isLong());
        EXPECT_EQ(locator.entryCount(), 4u);
        EXPECT_EQ(locator.length(1), 2u);
    }
}

TEST(GlyphLocator, PastTheLastEntryTheOffsetIsTheLengthOfGlyf) {
    const Bytes loca = locaOf({0, 20, 50}, true);
    const GlyphLocator locator(viewOf(loca), 1, 50, 2);
    EXPECT_EQ(locator.offset(3), 50u);
    EXPECT_EQ(locator.offset(65534), 50u);
    EXPECT_EQ(locator.length(3), 0u);
    EXPECT_EQ(locator.length(65534), 0u);
}

TEST(GlyphLocator, TheLastGlyphWithoutAClosingEntryReachesToTheEndOfGlyf) {
    const Bytes loca = locaOf({0, 20}, true);
    EXPECT_EQ(GlyphLocator(viewOf(loca), 1, 51, 2).length(1), 31u);
}

TEST(GlyphLocator, TheClosingEntryIsNoGlyphWhateverFollowsTheGlyphs) {
    const Bytes loca = locaOf({0, 20, 50}, true);
    EXPECT_EQ(GlyphLocator(viewOf(loca), 1, 99, 2).length(2), 0u);
    EXPECT_EQ(GlyphLocator(viewOf(loca), 1, 99, 0).length(2), 0u);
}

TEST(GlyphLocator, ADecreasingEntryGivesNoLength) {
    const Bytes loca = locaOf({40, 20, 0, 60}, true);
    const GlyphLocator locator(viewOf(loca), 1, 60, 3);
    EXPECT_EQ(locator.length(0), 0u);
    EXPECT_EQ(locator.length(1), 0u);
    EXPECT_EQ(locator.length(2), 60u);
}

TEST(GlyphLocator, BytesThatMakeNoWholeEntryAreNoEntry) {
    const Bytes loca{0x00, 0x00, 0x00, 0x05, 0x00};
    const GlyphLocator locator(viewOf(loca), 0, 30, 2);
    EXPECT_EQ(locator.entryCount(), 2u);
    EXPECT_EQ(locator.offset(2), 30u);
}

} // namespace
} // namespace KWFontService_NS
