#include "embed/CharStringStore.h"

#include "CffOutput.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

/// CharStrings of so many glyphs; each knows its number.
struct Sample {
    explicit Sample(std::size_t count, std::size_t size = 10) {
        for (std::size_t i = 0; i < count; ++i)
            glyphs.push_back(Bytes().u16(i).fill(size - 2, 7));
        stream.emplace(joined(Bytes{0}, cffIndex(glyphs)));
        head = CFFIndexHead::read(stream->table, 1).value();
    }
    std::vector<Bytes> glyphs;
    std::optional<TableStream> stream;
    CFFIndexHead head;
};

TEST(CharStringStore, HasTheGlyphsInTheOrderThatTheyWereAdded) {
    Sample sample(400, 1000); // far apart and near each other
    CharStringReader reader(sample.stream->table, sample.head);
    CharStringStore store;
    const std::vector<std::uint16_t> first{0, 1, 2, 5, 200, 399};
    const std::vector<std::uint16_t> second{3, 398};
    ASSERT_TRUE(store.add(reader, first));
    ASSERT_TRUE(store.add(reader, second));
    std::size_t place = 0;
    for (const auto& gids : {first, second})
        for (const std::uint16_t gid : gids)
            EXPECT_EQ(bytesOf(store[place++]), sample.glyphs[gid]) << gid;
}

TEST(CharStringStore, NoGlyphsAreNoReads) {
    Sample sample(2);
    CharStringReader reader(sample.stream->table, sample.head);
    CharStringStore store;
    EXPECT_TRUE(store.add(reader, {}));
}

TEST(CharStringStore, AGlyphThatIsNotThereFails) {
    Sample sample(3);
    CharStringReader reader(sample.stream->table, sample.head);
    CharStringStore store;
    const std::vector<std::uint16_t> gids{1, 3};
    EXPECT_FALSE(store.add(reader, gids));
    EXPECT_FALSE(reader.sizeOf(gids));
}

TEST(CharStringStore, ReadsAGlyphThatIsLongerThanAPiece) {
    Sample sample(3, 200000);
    CharStringReader reader(sample.stream->table, sample.head);
    CharStringStore store;
    ASSERT_TRUE(store.add(reader, std::vector<std::uint16_t>{0, 1, 2}));
    EXPECT_EQ(bytesOf(store[2]), sample.glyphs[2]);
}

TEST(CharStringStore, EmptyGlyphsAreEmpty) {
    TableStream stream(joined(Bytes{0}, cffIndex({Bytes(), Bytes{14}, Bytes()})));
    const CFFIndexHead head = CFFIndexHead::read(stream.table, 1).value();
    CharStringReader reader(stream.table, head);
    CharStringStore store;
    ASSERT_TRUE(store.add(reader, std::vector<std::uint16_t>{0, 1, 2}));
    EXPECT_EQ(bytesOf(store[0]), Bytes());
    EXPECT_EQ(bytesOf(store[1]), Bytes{14});
    EXPECT_EQ(bytesOf(store[2]), Bytes());
}

TEST(CharStringStore, GlyphsThatLieOverEachOtherHaveNoMoreThanTheTable) {
    // From 1 to the end and back, again and again: every other glyph is the whole data.
    Bytes index = Bytes().u16(2000).u8(4).u32(1);
    for (int i = 0; i < 1000; ++i)
        index.u32(5001).u32(1);
    index.fill(5000, 14).patchU32At(3 + 4 * 2000, 5001); // what the end of the data goes by
    TableStream stream(joined(Bytes{0}, index));
    const CFFIndexHead head = CFFIndexHead::read(stream.table, 1).value();
    CharStringReader reader(stream.table, head);
    std::vector<std::uint16_t> gids{0, 2};
    EXPECT_EQ(reader.sizeOf(gids), 10000u);
    CharStringStore store;
    EXPECT_TRUE(store.add(reader, gids));
    for (std::uint16_t gid = 4; gid < 1998; gid = static_cast<std::uint16_t>(gid + 2))
        gids.push_back(gid);
    EXPECT_FALSE(reader.sizeOf(gids));
    EXPECT_FALSE(store.add(reader, gids));
}

} // namespace
} // namespace KWFontService_NS
