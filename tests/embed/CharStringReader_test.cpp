#include "embed/CharStringReader.h"

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

using Ids = std::vector<std::uint16_t>;

/// What a visit of these glyphs gives; nothing when it fails.
std::optional<std::vector<Bytes>> visited(CharStringReader& reader, const Ids& gids) {
    std::vector<Bytes> all;
    if (!reader.visit(gids, [&all](ByteView bytes) { all.push_back(bytesOf(bytes)); }))
        return std::nullopt;
    return all;
}

TEST(CharStringReader, VisitsGlyphsInTheirTurn) {
    Sample sample(400, 1000); // far apart and near each other
    CharStringReader reader(sample.stream->table, sample.head);
    for (const Ids& gids : {Ids{0, 1, 2, 5, 200, 399}, Ids{3, 398}, Ids{7}}) {
        std::vector<Bytes> expected;
        for (const std::uint16_t gid : gids)
            expected.push_back(sample.glyphs[gid]);
        EXPECT_EQ(visited(reader, gids), expected);
    }
}

TEST(CharStringReader, WhatIsKeptIsNotReadAgain) {
    Sample sample(400, 1000);
    CharStringReader reader(sample.stream->table, sample.head);
    const std::vector<Bytes> three{sample.glyphs[2], sample.glyphs[3], sample.glyphs[399]};
    EXPECT_EQ(visited(reader, {1}), std::vector<Bytes>{sample.glyphs[1]});
    reader.keep(2000);
    EXPECT_EQ(visited(reader, {2, 399}), (std::vector<Bytes>{three[0], three[2]}));
    EXPECT_EQ(visited(reader, {2, 3, 399}), three);
    sample.stream->lose();
    EXPECT_EQ(visited(reader, {2, 3, 399}), three);
    EXPECT_EQ(visited(reader, {1}), std::nullopt);
    EXPECT_EQ(visited(reader, {2, 4}), std::nullopt);
}

TEST(CharStringReader, WhatIsKeptStaysWhenNoMoreIs) {
    Sample sample(400, 1000);
    CharStringReader reader(sample.stream->table, sample.head);
    reader.keep(1000);
    EXPECT_TRUE(visited(reader, {2}));
    reader.keepNoMore();
    EXPECT_TRUE(visited(reader, {2, 3}));
    sample.stream->lose();
    EXPECT_EQ(visited(reader, {2}), std::vector<Bytes>{sample.glyphs[2]});
    EXPECT_EQ(visited(reader, {3}), std::nullopt);
}

TEST(CharStringReader, KeepsEmptyGlyphs) {
    TableStream stream(joined(Bytes{0}, cffIndex({Bytes(), Bytes{14}})));
    const CFFIndexHead head = CFFIndexHead::read(stream.table, 1).value();
    CharStringReader reader(stream.table, head);
    reader.keep(1);
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(visited(reader, {0, 1}), (std::vector<Bytes>{Bytes(), Bytes{14}}));
}

TEST(CharStringReader, GlyphsTogetherMayHaveAsManyBytesAsTheTable) {
    TableStream stream(joined(Bytes{0}, cffIndex({Bytes().fill(10, 5), Bytes{14}})));
    const CFFIndexHead head = CFFIndexHead::read(stream.table, 1).value();
    CharStringReader reader(stream.table, head);
    const std::size_t size = stream.table.size();
    Ids gids(size, 1);
    EXPECT_EQ(reader.sizeOf(gids), size);
    gids.push_back(1);
    EXPECT_EQ(reader.sizeOf(gids), std::nullopt);
}

TEST(CharStringReader, NoGlyphsAreNoReads) {
    Sample sample(2);
    CharStringReader reader(sample.stream->table, sample.head);
    EXPECT_EQ(visited(reader, {}), std::vector<Bytes>());
}

TEST(CharStringReader, AGlyphThatIsNotThereFails) {
    Sample sample(3);
    CharStringReader reader(sample.stream->table, sample.head);
    EXPECT_FALSE(reader.sizeOf(Ids{1, 3}));
    EXPECT_EQ(reader.sizeOf(Ids{1, 2}), 20u);
    EXPECT_EQ(reader.lengthOf(2), 10u);
    EXPECT_EQ(reader.lengthOf(3), 0u);
}

TEST(CharStringReader, ReadsAGlyphThatIsLongerThanAPiece) {
    Sample sample(3, 200000);
    CharStringReader reader(sample.stream->table, sample.head);
    EXPECT_EQ(visited(reader, {0, 1, 2}), sample.glyphs);
}

TEST(CharStringReader, EmptyGlyphsAreEmpty) {
    TableStream stream(joined(Bytes{0}, cffIndex({Bytes(), Bytes{14}, Bytes()})));
    const CFFIndexHead head = CFFIndexHead::read(stream.table, 1).value();
    CharStringReader reader(stream.table, head);
    EXPECT_EQ(visited(reader, {0, 1, 2}), (std::vector<Bytes>{Bytes(), Bytes{14}, Bytes()}));
}

TEST(CharStringReader, GlyphsThatLieOverEachOtherHaveNoMoreThanTheTable) {
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
    EXPECT_EQ(visited(reader, gids)->size(), 2u);
    for (std::uint16_t gid = 4; gid < 1998; gid = static_cast<std::uint16_t>(gid + 2))
        gids.push_back(gid);
    EXPECT_FALSE(reader.sizeOf(gids));
}

} // namespace
} // namespace KWFontService_NS
