#include "embed/GlyphSubset.h"

#include "EmbedFixture.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace KWFontService_NS {
namespace {

using KWTest::Bytes;
using KWTest::bytesOf;
using KWTest::EmbeddableFont;
using KWTest::GlyfLoca;
using KWTest::Glyphs;
using KWTest::KeptGlyphs;
using KWTest::locaOf;
using KWTest::tableChecksum;
using KWTest::TestFont;
using KWTest::WrittenSfnt;
using testing::ElementsAre;

constexpr unsigned int kNoTags[] = {0};

/// The offsets that `loca` of a subset holds.
std::vector<std::uint32_t> offsetsOf(const WrittenSfnt& sfnt, bool isLong = false) {
    const Bytes loca = sfnt.table("loca");
    std::vector<std::uint32_t> offsets;
    for (std::size_t at = 0; at < loca.size(); at += isLong ? 4 : 2)
        offsets.push_back(isLong ? loca.u32At(at) : loca.u16At(at) * 2u);
    return offsets;
}

Bytes glyphOf(const TestFont& font, std::uint16_t gid) {
    return Bytes(font.outlines.glyphs[gid]).padTo(font.outlines.alignment);
}

/// Latin with glyphs that tell themselves apart by length: 14, 0, 18, 22, 26 bytes.
TestFont countedGlyphs(bool longLoca, std::size_t alignment = 2) {
    TestFont font = TestFont::latin();
    font.outlines = GlyfLoca{.longLoca = longLoca, .alignment = alignment};
    for (const std::size_t more : {4u, 0u, 8u, 12u, 16u})
        font.outlines.add(more == 0
                              ? Bytes()
                              : Bytes().i16(1).zero(8).fill(more, static_cast<std::uint8_t>(more)));
    font.maxp.numGlyphs = 5;
    return font;
}

TEST(GlyphSubset, KeepsGlyphIdsAndGivesAbsentGlyphsNoLength) {
    const TestFont source = countedGlyphs(false);
    const WrittenSfnt sfnt(EmbeddableFont(source.build()).embed({3}));
    EXPECT_THAT(offsetsOf(sfnt), ElementsAre(0, 14, 14, 14, 36, 36));
    EXPECT_EQ(sfnt.table("glyf"), glyphOf(source, 0).bytes(glyphOf(source, 3)));
}

TEST(GlyphSubset, DoesTheSameInLongFormat) {
    const TestFont source = countedGlyphs(true);
    const WrittenSfnt sfnt(EmbeddableFont(source.build()).embed({2, 4}));
    EXPECT_THAT(offsetsOf(sfnt, true), ElementsAre(0, 14, 14, 32, 32, 58));
    EXPECT_EQ(sfnt.table("glyf"),
              glyphOf(source, 0).bytes(glyphOf(source, 2)).bytes(glyphOf(source, 4)));
}

TEST(GlyphSubset, AnEmptyListStillGivesGlyphZeroAndAValidFile) {
    const TestFont source = TestFont::latin();
    const WrittenSfnt sfnt(EmbeddableFont(source.build()).embed({}));
    EXPECT_EQ(sfnt.table("glyf"), glyphOf(source, 0));
    EXPECT_THAT(sfnt.tags(),
                ElementsAre("OS/2", "glyf", "head", "hhea", "hmtx", "loca", "maxp", "post"));
    EmbeddableFont embedded(TestFont::latin().build());
    KWError error;
    std::istringstream stream(sfnt.file().str());
    const KWCommonNS::KWPtr<FS_TrueType> again(new FS_TrueType(KWUri()));
    EXPECT_TRUE(again->scanEmbeddedFont(error, stream));
    EXPECT_TRUE(again->loadEmbeddedFont(error, &stream));
    EXPECT_EQ(again->getGlyphWidth(TestFont::kB, 0, false, 0),
              embedded.font().getGlyphWidth(TestFont::kB, 0, false, 0));
}

TEST(GlyphSubset, ACompositeBringsItsComponentsAtTheirOwnIds) {
    const TestFont source = TestFont::latin();
    const WrittenSfnt sfnt(EmbeddableFont(source.build()).embed({TestFont::kAacute}));
    const std::vector<std::uint32_t> offsets = offsetsOf(sfnt);
    ASSERT_EQ(offsets.size(), TestFont::kLatinGlyphs + 1u);
    for (const std::uint16_t gid :
         {TestFont::kNotdef, TestFont::kA, TestFont::kAcute, TestFont::kAacute}) {
        const std::uint32_t length = offsets[gid + 1u] - offsets[gid];
        EXPECT_EQ(sfnt.table("glyf").slice(offsets[gid], length), glyphOf(source, gid)) << gid;
    }
    for (const std::uint16_t gid : {TestFont::kSpace, TestFont::kB, TestFont::kC})
        EXPECT_EQ(offsets[gid + 1u], offsets[gid]) << gid;
}

TEST(GlyphSubset, OrderAndRepeatsOfTheListDoNotShow) {
    EmbeddableFont font(TestFont::latin().build());
    const Bytes sorted = font.embed({2, 3, 6});
    EXPECT_EQ(font.embed({6, 3, 3, 2, 0, 6}), sorted);
    EXPECT_FALSE(sorted.empty());
}

TEST(GlyphSubset, IdsPastTheEndAreNeverMet) {
    EmbeddableFont font(TestFont::latin().build());
    const Bytes plain = font.embed({2});
    EXPECT_EQ(font.embed({2, TestFont::kLatinGlyphs, 8, 1000, 65534, 65535}), plain);
}

TEST(GlyphSubset, NewTablesHaveTheirSumsAndOtherRecordsTheSources) {
    const Bytes file = TestFont::latin().sfnt().lie("maxp", {.checkSum = 7}).build();
    const WrittenSfnt source(file);
    const WrittenSfnt sfnt(EmbeddableFont(file).embed({2}));
    for (const WrittenSfnt::Record& record : sfnt.records) {
        const bool isNew = record.tag == "glyf" || record.tag == "loca";
        const auto table = sfnt.table(record.tag);
        EXPECT_EQ(record.checkSum,
                  isNew ? tableChecksum(table.vector()) : source.record(record.tag).checkSum)
            << record.tag;
        if (!isNew) {
            EXPECT_EQ(table, source.table(record.tag)) << record.tag;
        }
    }
    EXPECT_EQ(sfnt.record("maxp").checkSum, 7u);
}

TEST(GlyphSubset, TheHeaderCountsTheTablesOfTheSubset) {
    const Bytes file = EmbeddableFont(TestFont::latin().build()).embed({2});
    EXPECT_EQ(file.slice(0, 12), Bytes().u32(0x00010000).u16(8).u16(128).u16(3).u16(0));
}

TEST(GlyphSubset, HmtxAndMaxpAreNeverCut) {
    const TestFont source = TestFont::latin();
    const WrittenSfnt sfnt(EmbeddableFont(source.build()).embed({}));
    EXPECT_EQ(sfnt.table("hmtx"), source.hmtx.build());
    EXPECT_EQ(sfnt.table("maxp"), source.maxp.build());
}

TEST(GlyphSubset, TheLastEntryHoldsTheFinalOffsetThoughGlyfGoesOn) {
    TestFont source = countedGlyphs(true);
    source.with("glyf", source.outlines.glyf().bytes(Bytes().i16(1).fill(30, 0x77)));
    EmbeddableFont font(source.build());
    const WrittenSfnt sfnt(font.embed({4, 5}));
    EXPECT_THAT(offsetsOf(sfnt, true), ElementsAre(0, 14, 14, 14, 14, 40));
    EXPECT_EQ(sfnt.record("glyf").length, 40u);
}

TEST(GlyphSubset, AGlyphWithoutAClosingEntryReachesToTheEndOfGlyf) {
    TestFont source = countedGlyphs(true);
    source.with("loca", locaOf({0, 14, 14, 32, 54}, true)); // five glyphs, five entries
    const WrittenSfnt sfnt(EmbeddableFont(source.build()).embed({4}));
    EXPECT_THAT(offsetsOf(sfnt, true), ElementsAre(0, 14, 14, 14, 14));
    EXPECT_EQ(sfnt.table("glyf"), glyphOf(source, 0).bytes(glyphOf(source, 4)));
}

TEST(GlyphSubset, OddLengthsAreNotPaddedInLongFormat) {
    TestFont source = TestFont::latin();
    source.outlines = GlyfLoca{.longLoca = true, .alignment = 1};
    source.outlines.add(Bytes().i16(1).fill(13, 1)).add(Bytes().i16(1).fill(11, 2));
    source.maxp.numGlyphs = 2;
    const WrittenSfnt sfnt(EmbeddableFont(source.build()).embed({1}));
    EXPECT_THAT(offsetsOf(sfnt, true), ElementsAre(0, 15, 28));
    EXPECT_EQ(sfnt.record("glyf").length, 28u);
}

TEST(GlyphSubset, AnOddLengthInShortFormatIsHalvedDownwards) {
    // The last glyph has no closing entry and an odd end; nothing pads what follows it.
    TestFont source = TestFont::latin();
    source.with("glyf", Bytes().i16(1).fill(12, 1).i16(1).fill(11, 2));
    source.with("loca", locaOf({0, 14}, false));
    source.maxp.numGlyphs = 2;
    const WrittenSfnt sfnt(EmbeddableFont(source.build()).embed({1}));
    EXPECT_THAT(offsetsOf(sfnt), ElementsAre(0, 14));
    EXPECT_EQ(sfnt.record("glyf").length, 27u);
}

TEST(GlyphSubset, ALocaOfOddSizeKeepsItsSize) {
    TestFont source = countedGlyphs(true);
    source.with("loca", source.outlines.loca().bytes(Bytes{0xAB, 0xCD, 0xEF}));
    const WrittenSfnt sfnt(EmbeddableFont(source.build()).embed({2}));
    EXPECT_EQ(sfnt.table("loca"), locaOf({0, 14, 14, 32, 32, 32}, true).zero(3));
}

TEST(GlyphSubset, NothingButEmptyGlyphsGivesAGlyfRecordOfLengthZero) {
    TestFont source = TestFont::latin();
    source.outlines.glyphs[0] = Bytes();
    const WrittenSfnt sfnt(EmbeddableFont(source.build()).embed({TestFont::kSpace}));
    EXPECT_EQ(sfnt.record("glyf").length, 0u);
    EXPECT_EQ(sfnt.record("glyf").checkSum, 0u);
    EXPECT_EQ(sfnt.record("head").offset, sfnt.record("glyf").offset);
    EXPECT_EQ(sfnt.table("loca"), Bytes().zero(2 * (TestFont::kLatinGlyphs + 1)));
}

TEST(GlyphSubset, CopiesTheWholeCmapWhenAskedFor) {
    const TestFont source = TestFont::latin();
    const WrittenSfnt sfnt(EmbeddableFont(source.build()).embedWithCmap({2}));
    EXPECT_THAT(sfnt.tags(), ElementsAre("OS/2", "cmap", "glyf", "head", "hhea", "hmtx", "loca",
                                         "maxp", "post"));
    EXPECT_EQ(sfnt.table("cmap"), source.cmap.build());
}

TEST(GlyphSubset, ACallersListDecidesTheTables) {
    EmbeddableFont font(TestFont::latin().build());
    EXPECT_THAT(WrittenSfnt(font.embed({2}, {sfntTag("head"), 0})).tags(),
                ElementsAre("glyf", "head", "loca"));
    EXPECT_THAT(WrittenSfnt(font.embed({2}, {sfntTag("name"), sfntTag("XXXX"), 0})).tags(),
                ElementsAre("glyf", "loca", "name"));
    EXPECT_THAT(WrittenSfnt(font.embed({2}, {0})).tags(), ElementsAre("glyf", "loca"));
}

TEST(GlyphSubset, MakeSubsetFontKeepsEveryTable) {
    TestFont source = TestFont::latin();
    source.with("DSIG", Bytes{1, 2, 3}).with("zzzz", Bytes{4});
    const WrittenSfnt original(source.build());
    const WrittenSfnt sfnt(EmbeddableFont(source.build()).subset({2}));
    EXPECT_EQ(sfnt.tags(), original.tags());
    EXPECT_EQ(sfnt.table("name"), original.table("name"));
    EXPECT_EQ(sfnt.table("DSIG"), (Bytes{1, 2, 3}));
    EXPECT_LT(sfnt.record("glyf").length, original.record("glyf").length);
    EXPECT_EQ(sfnt.table("zzzz"), Bytes{4});
}

TEST(GlyphSubset, ARepeatedTagIsWrittenOnce) {
    const Bytes file = TestFont::latin().sfnt().duplicate("post", Bytes{9, 9}).build();
    const WrittenSfnt sfnt(EmbeddableFont(file).subset({2}));
    EXPECT_EQ(std::ranges::count(sfnt.tags(), std::string("post")), 1);
    EXPECT_EQ(sfnt.table("post"), TestFont::latin().post.build());
}

TEST(GlyphSubset, KeepsTheVersionOfAnOldMacintoshFont) {
    TestFont source = TestFont::latin();
    source.version = KWTest::kTrueVersion;
    EXPECT_EQ(EmbeddableFont(source.build()).embed({2}).u32At(0), KWTest::kTrueVersion);
}

TEST(GlyphSubset, EveryOtherLocFormatCountsAsShort) {
    TestFont source = countedGlyphs(false);
    const Bytes expected = EmbeddableFont(source.build()).embed({3});
    Bytes head = source.sfnt().get("head");
    source.with("head", head.patchU16At(50, 2));
    const WrittenSfnt sfnt(EmbeddableFont(source.build()).embed({3}));
    EXPECT_EQ(sfnt.table("glyf"), WrittenSfnt(expected).table("glyf"));
    EXPECT_EQ(sfnt.table("loca"), WrittenSfnt(expected).table("loca"));
}

TEST(GlyphSubset, ASecondCallReadsTheKeptLoca) {
    const Bytes file = TestFont::latin().build();
    EmbeddableFont font(file);
    EXPECT_TRUE(font.face().locaCache.empty());
    const Bytes first = font.embed({2});
    EXPECT_EQ(font.face().locaCache, TestFont::latin().outlines.loca().vector());
    EXPECT_EQ(font.embed({2}), first);
}

TEST(GlyphSubset, ASubsetCanBeSubsetAgain) {
    const Bytes once = EmbeddableFont(TestFont::latin().build()).subset({2, 3, 6});
    EXPECT_EQ(EmbeddableFont(once).subset({2, 3, 6}), once);
}

TEST(GlyphSubset, GlyfWithoutLocaIsNoFontToEmbed) {
    EmbeddableFont font(TestFont::latin().without("loca").build());
    KeptGlyphs kept;
    EXPECT_TRUE(font.embed({2}).empty());
    EXPECT_TRUE(font.embedWithCmap({2}).empty());
    EXPECT_TRUE(font.subset({2}).empty());
    EXPECT_TRUE(font.embedPS({2}, kept).empty());
}

TEST(GlyphSubset, WritersOpenTheFontsOwnFileWhenGivenNoStream) {
    const KWTest::TempDir folder;
    const Bytes file = TestFont::latin().build();
    folder.write("latin.ttf", file);
    const KWCommonNS::KWPtr<FS_TrueType> font(new FS_TrueType(folder.uri("latin.ttf")));
    KWError error;
    std::istringstream stream(file.str());
    ASSERT_TRUE(font->scanFont(error, stream));
    ASSERT_TRUE(font->loadFont(error, 0, nullptr));
    KWMemStream out;
    ASSERT_TRUE(font->getEmbedFont(Glyphs{2}, out, nullptr, 0));
    EXPECT_EQ(bytesOf(out), EmbeddableFont(file).embed({2}));
    KWMemStream whole;
    ASSERT_TRUE(font->getEmbedFontStream(whole, nullptr, 0));
    EXPECT_EQ(bytesOf(whole), file);
}

TEST(GlyphSubset, WritersSayNoWhenTheFileIsGone) {
    const Bytes file = TestFont::latin().build();
    const KWTest::TempDir folder;
    const KWCommonNS::KWPtr<FS_TrueType> font(new FS_TrueType(folder.uri("gone.ttf")));
    KWError error;
    std::istringstream stream(file.str());
    ASSERT_TRUE(font->scanFont(error, stream));
    ASSERT_TRUE(font->loadFont(error, 0, &stream));
    KWMemStream out;
    KeptGlyphs kept;
    EXPECT_FALSE(font->getEmbedFont(Glyphs{2}, out, nullptr, 0));
    EXPECT_FALSE(font->getEmbedFont(Glyphs{2}, out, kNoTags, nullptr, 0));
    EXPECT_FALSE(font->getEmbedFontWithCmap(Glyphs{2}, out, nullptr, 0));
    EXPECT_FALSE(font->makeSubsetFont(Glyphs{2}, out, nullptr, 0));
    EXPECT_FALSE(font->getPSEmbedFont(Glyphs{2}, out, kept, nullptr, 0));
    EXPECT_FALSE(font->getEmbedFontStream(out, nullptr, 0));
    EXPECT_EQ(out.length(), 0);
}

TEST(GlyphSubset, WritersSayNoToAnOutputThatCannotBeWritten) {
    EmbeddableFont font(TestFont::latin().build());
    FS_TrueType& f = font.font();
    std::istream* const in = &font.stream();
    for (const std::ios::iostate state : {std::ios::badbit, std::ios::failbit}) {
        KWMemStream out;
        out.setstate(state);
        KeptGlyphs kept;
        EXPECT_FALSE(f.getEmbedFont(Glyphs{2}, out, in, 0));
        EXPECT_FALSE(f.getEmbedFont(Glyphs{2}, out, kNoTags, in, 0)); // copies no table
        EXPECT_FALSE(f.getEmbedFontWithCmap(Glyphs{2}, out, in, 0));
        EXPECT_FALSE(f.makeSubsetFont(Glyphs{2}, out, in, 0));
        EXPECT_FALSE(f.getPSEmbedFont(Glyphs{2}, out, kept, in, 0));
        EXPECT_EQ(out.size(), 0u);
        EXPECT_TRUE(kept.glyphs().empty());
    }
}

TEST(GlyphSubset, AnOutputThatHasBeenReadToItsEndIsWrittenOn) {
    EmbeddableFont font(TestFont::latin().build());
    KWMemStream out;
    out.append("abc");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(out), {}), "abc");
    out.setstate(std::ios::eofbit);
    ASSERT_TRUE(font.font().getEmbedFont(Glyphs{2}, out, &font.stream(), 0));
    EXPECT_EQ(bytesOf(out), Bytes::ofText("abc").bytes(font.embed({2})));
}

TEST(GlyphSubset, TheStreamOfAFontIsItsSourceFromTheStart) {
    const Bytes file = TestFont::latin().build();
    EmbeddableFont font(file);
    font.stream().seekg(50);
    KWMemStream out;
    ASSERT_TRUE(font.font().getEmbedFontStream(out, &font.stream(), 0));
    EXPECT_TRUE(out.rdbuf()->hasSource());
    EXPECT_EQ(out.length(), static_cast<std::streamsize>(file.size()));
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(out), {}), file.str());
}

TEST(GlyphSubset, TheStreamOfAnEmptySourceIsNone) {
    EmbeddableFont font(TestFont::latin().build());
    std::istringstream nothing;
    KWMemStream out;
    EXPECT_FALSE(font.font().getEmbedFontStream(out, &nothing, 0));
}

} // namespace
} // namespace KWFontService_NS
