// Fonts that lie: a writer answers false or what is there, in time and memory that the file's own
// size bounds.

#include "EmbedFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using KWTest::Bytes;
using KWTest::EmbeddableFont;
using KWTest::GlyfLoca;
using KWTest::Glyphs;
using KWTest::KeptGlyphs;
using KWTest::locaOf;
using KWTest::TestFont;
using KWTest::WrittenSfnt;

Glyphs everyId() {
    Glyphs all;
    for (unsigned gid = 0; gid <= 0xFFFF; ++gid)
        all.push_back(static_cast<unsigned short>(gid));
    return all;
}

/// For what they must not do.
void callEveryWriter(EmbeddableFont& font, const Glyphs& glyphs) {
    KeptGlyphs kept;
    font.embed(glyphs);
    font.embed(glyphs, {sfntTag("head"), 0});
    font.embedWithCmap(glyphs);
    font.subset(glyphs);
    font.embedPS(glyphs, kept);
}

TEST(HostileSubset, AFontOfEveryIdIsTheFontItself) {
    const Bytes file = TestFont::latin().build();
    EXPECT_EQ(WrittenSfnt(EmbeddableFont(file).subset(everyId())).table("glyf"),
              WrittenSfnt(file).table("glyf"));
}

TEST(HostileSubset, LocaThatDecreasesDropsTheGlyphsThatDoNotEnd) {
    TestFont source = TestFont::latin();
    source.outlines.longLoca = true;
    source.with("glyf", Bytes().i16(1).fill(58, 1))
        .with("loca", locaOf({40, 20, 60, 10, 0, 0, 0, 0}, true));
    const WrittenSfnt sfnt(EmbeddableFont(source.build()).embed(everyId()));
    // Only glyph 1, from 20 to 60, ends behind its start.
    EXPECT_EQ(sfnt.table("loca"), locaOf({0, 0, 40, 40, 40, 40, 40, 40}, true));
}

TEST(HostileSubset, LocaShorterThanItsRecordFails) {
    const Bytes file = TestFont::latin().sfnt().lie("loca", {.length = 0xFFFFFFF0}).build();
    EmbeddableFont font(file);
    EXPECT_TRUE(font.embed({2}).empty());
    EXPECT_TRUE(font.face().locaCache.empty());
}

TEST(HostileSubset, AnEmptyLocaLeavesAnEmptyGlyf) {
    const WrittenSfnt sfnt(
        EmbeddableFont(TestFont::latin().with("loca", Bytes()).build()).embed({2}));
    EXPECT_EQ(sfnt.record("loca").length, 0u);
    EXPECT_EQ(sfnt.record("glyf").length, 0u);
}

TEST(HostileSubset, GlyphsOutsideTheFileFail) {
    TestFont source = TestFont::latin();
    source.outlines.longLoca = true;
    source.with("loca", locaOf({0, 0, 0xFFFFFFF0, 0xFFFFFFFF, 0, 0, 0, 0}, true));
    EmbeddableFont font(source.build());
    EXPECT_FALSE(font.embed({0}).empty());
    EXPECT_TRUE(font.embed({1}).empty());
    EXPECT_TRUE(font.embed({2}).empty());
}

TEST(HostileSubset, EveryTableMayLieAboutItsSize) {
    const std::vector<std::string> tags = TestFont::latin().sfnt().tags();
    for (const std::string& tag : tags)
        for (const std::uint32_t length : {0xFFFFFFFFu, 0xFFFFFFFCu, 0x80000000u, 0x00100000u}) {
            // The header tables are read up to the size they need, so the font loads all the same.
            EmbeddableFont font(TestFont::latin().build());
            const Bytes lying = TestFont::latin().sfnt().lie(tag, {.length = length}).build();
            std::istringstream stream(lying.str());
            KWError error;
            const KWCommonNS::KWPtr<FS_TrueType> liar(new FS_TrueType(KWUri()));
            if (!liar->scanFont(error, stream))
                continue;
            liar->loadFont(error, 0, &stream);
            KWMemStream out;
            const bool ok = liar->makeSubsetFont({2, 6}, out, &stream, 0);
            EXPECT_EQ(ok, tag == "glyf") << tag;
            EXPECT_LE(out.size(), 4 * lying.size());
        }
}

TEST(HostileSubset, AFileThatShrankAfterTheLoadFails) {
    const Bytes file = TestFont::latin().build();
    for (std::size_t size = 0; size < file.size(); size += 7) {
        EmbeddableFont font(file);
        font.replaceFile(Bytes(file).truncate(size));
        EXPECT_TRUE(font.subset({2, 3, 4, 5, 6}).empty()) << size;
        callEveryWriter(font, {2, 3, 4, 5, 6, 7, 0xFFFF});
    }
}

TEST(HostileSubset, ATableSetOfTheMostRecordsThereAreIsWritten) {
    const WrittenSfnt latin(TestFont::latin().build());
    const auto start = static_cast<std::uint32_t>(12 + 16 * 0xFFFF);
    Bytes file = Bytes().u32(0x00010000).u16(0xFFFF).u16(0).u16(0).u16(0);
    for (const WrittenSfnt::Record& record : latin.records)
        file.tag(record.tag).u32(record.checkSum).u32(start + record.offset).u32(record.length);
    for (std::uint32_t tag = 0x7A000000; file.size() < start; ++tag)
        file.u32(tag).u32(0).u32(0).u32(0);
    file.bytes(latin.file());
    ASSERT_EQ(file.u16At(4), 0xFFFF);
    EmbeddableFont font(file);
    const Bytes subset = font.subset({2});
    ASSERT_FALSE(subset.empty());
    EXPECT_EQ(subset.u16At(4), 0xFFFF);
    EXPECT_EQ(subset.u16At(8), 15);
    EXPECT_EQ(WrittenSfnt(font.embed({2})).tags().size(), 8u);
}

TEST(HostileSubset, RecordsThatShareOneBigTableDoNotMultiplyIt) {
    KWTest::SfntBuilder builder = TestFont::latin().with("big0", Bytes().zero(100000)).sfnt();
    const auto big = static_cast<std::uint32_t>(builder.offsetOf("big0"));
    for (int i = 0; i < 1000; ++i)
        builder.table(Bytes().u32(0x7A000000 + i).str(), Bytes());
    const auto shift = static_cast<std::uint32_t>(builder.offsetOf("big0")) - big;
    for (int i = 0; i < 1000; ++i)
        builder.lie(Bytes().u32(0x7A000000 + i).str(), {.offset = big + shift, .length = 100000});
    const Bytes file = builder.build();
    EmbeddableFont font(file);
    KWMemStream out;
    EXPECT_FALSE(font.font().makeSubsetFont({2}, out, &font.stream(), 0));
    EXPECT_LE(out.size(), 4 * file.size() + 12 + 16 * 0xFFFF);
    EXPECT_FALSE(font.embed({2}).empty());
}

TEST(HostileSubset, ManyCompositesOverTheSameBytesEndInTime) {
    // 32,000 glyphs that each claim the same endless composite.
    TestFont source = TestFont::latin();
    Bytes glyf = Bytes().i16(-1).zero(8);
    for (std::uint16_t i = 0; i < 16000; ++i)
        glyf.u16(0x0020).u16(i * 2).u16(0);
    std::vector<std::uint32_t> offsets;
    for (int i = 0; i < 32000; ++i)
        offsets.insert(offsets.end(), {0, static_cast<std::uint32_t>(glyf.size())});
    source.outlines.longLoca = true;
    source.with("glyf", glyf).with("loca", locaOf(offsets, true));
    EmbeddableFont font(source.build());
    EXPECT_TRUE(font.embed({0}).empty());
}

TEST(HostileSubset, CompositesThatLoopOrReachFFFFEnd) {
    TestFont source = TestFont::latin();
    source.outlines = GlyfLoca{};
    source.outlines
        .add(KWTest::CompositeGlyph{
            .components = {{.glyphIndex = 0}, {.glyphIndex = 1}, {.glyphIndex = 0xFFFF}}})
        .add(KWTest::CompositeGlyph{.components = {{.glyphIndex = 0}, {.glyphIndex = 60000}},
                                    .endlessComponents = true});
    source.maxp.numGlyphs = 2;
    EmbeddableFont font(source.build());
    EXPECT_EQ(WrittenSfnt(font.embed({1})).table("glyf"), source.outlines.glyf());
    callEveryWriter(font, everyId());
}

} // namespace
} // namespace KWFontService_NS
