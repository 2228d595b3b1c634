#include <KWFontService17/FS_MergeEmbeddedFonts.h>

#include "MergeFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using testing::ElementsAre;

const Bytes kNothing;

// --- streams ------------------------------------------------------------------------------------

TEST(MergeEmbeddedFonts, NeedsTwoStreams) {
    std::istringstream stream(namedGlyphs({{34, glyph(1)}}).build().str());
    std::istringstream sfnt(TestFont::latin().build().str());
    KWMemStream output;
    EXPECT_FALSE(FS_MergeEmbeddedFonts::mergeCFF(output, nullptr, &stream, false));
    EXPECT_FALSE(FS_MergeEmbeddedFonts::mergeCFF(output, &stream, nullptr, true));
    EXPECT_FALSE(FS_MergeEmbeddedFonts::mergeTrueType(output, nullptr, &sfnt, true));
    EXPECT_FALSE(FS_MergeEmbeddedFonts::mergeTrueType(output, &sfnt, nullptr, true));
    EXPECT_EQ(output.size(), 0u);
}

TEST(MergeEmbeddedFonts, ReadsFromTheStartWhateverTheStateOfTheStreams) {
    std::istringstream cff(namedGlyphs({{34, glyph(1)}}).build().str());
    std::istringstream sfnt(TestFont::latin().build().str());
    for (std::istringstream* const stream : {&cff, &sfnt}) {
        stream->seekg(0, std::ios::end);
        stream->get();
        EXPECT_TRUE(stream->fail());
    }
    KWMemStream output;
    EXPECT_TRUE(FS_MergeEmbeddedFonts::mergeCFF(output, &cff, &cff, false)) << "one and the same";
    EXPECT_TRUE(FS_MergeEmbeddedFonts::mergeTrueType(output, &sfnt, &sfnt, true));
}

TEST(MergeEmbeddedFonts, AppendsToTheOutput) {
    const Bytes cff = namedGlyphs({{34, glyph(1)}}).build();
    const Bytes sfnt = TestFont::latin().build();
    std::istringstream a(cff.str());
    std::istringstream b(sfnt.str());
    KWMemStream output;
    output += "x";
    ASSERT_TRUE(FS_MergeEmbeddedFonts::mergeCFF(output, &a, &a, false));
    ASSERT_TRUE(FS_MergeEmbeddedFonts::mergeTrueType(output, &b, &b, true));
    EXPECT_EQ(bytesOf(output),
              joined(Bytes{'x'}, mergedCff(cff, cff, false), mergedSfnt(sfnt, sfnt)));
}

TEST(MergeEmbeddedFonts, ACffMergeThatFailsLeavesTheOutputAsItWas) {
    CffSections named = namedGlyphs({{34, glyph(1)}});
    std::istringstream a(named.build().str());
    named.names = {Bytes::ofText("KWTest-RegulaR")};
    std::istringstream b(named.build().str());
    KWMemStream output;
    output += "x";
    EXPECT_FALSE(FS_MergeEmbeddedFonts::mergeCFF(output, &a, &b, false));
    EXPECT_EQ(bytesOf(output), Bytes{'x'});
}

TEST(MergeEmbeddedFonts, AnOutputThatTakesNoMoreEndsTheMerge) {
    std::istringstream cff(namedGlyphs({{34, glyph(1)}}).build().str());
    std::istringstream sfnt(TestFont::latin().build().str());
    KWMemStream output;
    output.setstate(std::ios::badbit);
    EXPECT_FALSE(FS_MergeEmbeddedFonts::mergeCFF(output, &cff, &cff, false));
    EXPECT_FALSE(FS_MergeEmbeddedFonts::mergeTrueType(output, &sfnt, &sfnt, true));
}

TEST(MergeEmbeddedFonts, AFontOfTheOtherFormatIsNone) {
    const Bytes cff = namedGlyphs({{34, glyph(1)}}).build();
    const Bytes sfnt = TestFont::latin().build();
    EXPECT_EQ(mergedSfnt(cff, cff), kNothing);
    EXPECT_EQ(mergedSfnt(sfnt, cff), kNothing);
    EXPECT_EQ(mergedCff(sfnt, sfnt, false), kNothing);
    EXPECT_EQ(mergedCff(cff, sfnt, false), kNothing);
    const Bytes openType = TestFont::openType().build();
    EXPECT_EQ(mergedSfnt(openType, openType), kNothing) << "without glyf";
}

// --- TrueType -----------------------------------------------------------------------------------

/// Five glyphs of 14, 0, 18, 22 and 26 bytes.
TestFont countedGlyphs(bool longLoca) {
    TestFont font = TestFont::latin();
    font.outlines = GlyfLoca{.longLoca = longLoca};
    for (const std::size_t more : {4u, 0u, 8u, 12u, 16u})
        font.outlines.add(more == 0
                              ? Bytes()
                              : Bytes().i16(1).zero(8).fill(more, static_cast<std::uint8_t>(more)));
    font.maxp.numGlyphs = 5;
    return font;
}
/// A part of these glyphs, with the bytes of a glyph that is not to be taken changed.
Bytes subsetOf(TestFont font, const Glyphs& glyphs) {
    for (unsigned short gid = 0; gid < font.outlines.glyphs.size(); ++gid)
        if (std::ranges::find(glyphs, gid) == glyphs.end())
            font.outlines.glyphs[gid] = {};
    return font.build();
}
Bytes cutWithCmap(const TestFont& font, const Glyphs& glyphs) {
    return EmbeddableFont(font.build()).embedWithCmap(glyphs);
}

std::vector<std::uint32_t> offsetsOf(const WrittenSfnt& sfnt, bool isLong) {
    const Bytes loca = sfnt.table("loca");
    std::vector<std::uint32_t> offsets;
    for (std::size_t at = 0; at < loca.size(); at += isLong ? 4 : 2)
        offsets.push_back(isLong ? loca.u32At(at) : loca.u16At(at) * 2u);
    return offsets;
}
Bytes glyphsOf(const TestFont& font, const Glyphs& glyphs) {
    Bytes all;
    for (const unsigned short gid : glyphs)
        all.bytes(font.outlines.glyphs[gid]);
    return all;
}

TEST(MergeTrueType, HasTheGlyphsOfBothAtTheirIds) {
    for (const bool isLong : {false, true}) {
        const TestFont font = countedGlyphs(isLong);
        const WrittenSfnt sfnt(mergedSfnt(subsetOf(font, {0, 3}), subsetOf(font, {0, 2})));
        EXPECT_THAT(offsetsOf(sfnt, isLong), ElementsAre(0, 14, 14, 32, 54, 54));
        EXPECT_EQ(sfnt.table("glyf"), glyphsOf(font, {0, 2, 3}));
    }
}

TEST(MergeTrueType, AGlyphOfBothComesFromTheFirst) {
    const TestFont font = countedGlyphs(false);
    TestFont other = font;
    other.outlines.glyphs[3] = Bytes().i16(1).zero(8).fill(30, 0x77);
    EXPECT_EQ(WrittenSfnt(mergedSfnt(font.build(), other.build())).table("glyf"),
              font.outlines.glyf());
    EXPECT_EQ(WrittenSfnt(mergedSfnt(other.build(), font.build())).table("glyf"),
              other.outlines.glyf());
}

TEST(MergeTrueType, MergesWhatTheSubsetWriterMakes) {
    EmbeddableFont font(TestFont::latin().build());
    const Bytes merged = mergedSfnt(font.embed({TestFont::kA}), font.embed({TestFont::kAacute}));
    const WrittenSfnt sfnt(merged);
    EXPECT_EQ(sfnt.table("glyf"),
              WrittenSfnt(font.embed({TestFont::kA, TestFont::kAacute})).table("glyf"));
    std::istringstream stream(merged.str());
    const KWCommonNS::KWPtr<FS_TrueType> again(new FS_TrueType(KWUri()));
    KWError error;
    EXPECT_TRUE(again->scanEmbeddedFont(error, stream));
    EXPECT_TRUE(again->loadEmbeddedFont(error, &stream));
    const Bytes all = mergedSfnt(merged, font.embed({TestFont::kC}));
    EXPECT_EQ(WrittenSfnt(all).table("glyf"),
              WrittenSfnt(font.embed({TestFont::kAacute, TestFont::kC})).table("glyf"));
}

TEST(MergeTrueType, OtherTablesAreThoseOfTheFirst) {
    TestFont font = TestFont::latin();
    font.with("cvt ", Bytes{1, 2}).with("fpgm", Bytes{0xB0, 0}).with("prep", Bytes{0xB0, 1});
    TestFont other = font;
    other.post.underlinePosition = 77; // not compared
    const WrittenSfnt sfnt(mergedSfnt(font.build(), other.build()));
    EXPECT_THAT(sfnt.tags(), ElementsAre("cvt ", "fpgm", "glyf", "head", "hhea", "hmtx", "loca",
                                         "maxp", "post", "prep"));
    const WrittenSfnt source(font.build());
    for (const char* const tag : {"cvt ", "fpgm", "head", "hhea", "hmtx", "maxp", "post", "prep"}) {
        EXPECT_EQ(sfnt.table(tag), source.table(tag)) << tag;
        EXPECT_EQ(sfnt.record(tag).checkSum, source.record(tag).checkSum) << tag;
    }
    for (const char* const tag : {"glyf", "loca"})
        EXPECT_EQ(sfnt.record(tag).checkSum, tableChecksum(sfnt.table(tag).vector())) << tag;
}

TEST(MergeTrueType, DifferentOffsetsBecomeLongOnes) {
    const TestFont narrow = countedGlyphs(false);
    const TestFont wide = countedGlyphs(true);
    for (const auto& [a, b] : {std::pair{narrow, wide}, {wide, narrow}}) {
        const WrittenSfnt sfnt(mergedSfnt(subsetOf(a, {0, 4}), subsetOf(b, {0, 2})));
        EXPECT_THAT(offsetsOf(sfnt, true), ElementsAre(0, 14, 14, 32, 32, 58));
        EXPECT_EQ(sfnt.table("head").u16At(50), 1);
        EXPECT_EQ(sfnt.table("glyf"), glyphsOf(narrow, {0, 2, 4}));
    }
}

TEST(MergeTrueType, AChangedHeadHasItsCheckSumWithoutTheAdjustment) {
    const Bytes narrow = countedGlyphs(false).build();
    const WrittenSfnt source(narrow);
    const WrittenSfnt sfnt(mergedSfnt(narrow, countedGlyphs(true).build()));
    EXPECT_NE(sfnt.table("head").u32At(8), 0u);
    EXPECT_EQ(sfnt.record("head").checkSum, source.record("head").checkSum + 1);
}

TEST(MergeTrueType, WithTheCharacterMapHeadStaysWhateverTheOffsets) {
    const Bytes narrow = cutWithCmap(countedGlyphs(false), {3});
    const Bytes wide = cutWithCmap(countedGlyphs(true), {2});
    const WrittenSfnt sfnt(mergedSfnt(narrow, wide, false));
    EXPECT_EQ(sfnt.table("head").u16At(50), 0);
    EXPECT_THAT(offsetsOf(sfnt, true), ElementsAre(0, 14, 14, 32, 54, 54)) << "long";
    EXPECT_EQ(WrittenSfnt(mergedSfnt(wide, narrow, false)).table("head").u16At(50), 1);
}

TEST(MergeTrueType, TheCharacterMapIsThatOfTheFirstOrLeftOut) {
    TestFont font = TestFont::latin();
    const Bytes a = cutWithCmap(font, {TestFont::kA});
    font.cmap = Cmap{.records = {{.subtable = CmapFormat4::of({{'B', 2}}).build()}}};
    const Bytes b = cutWithCmap(font, {TestFont::kB});
    ASSERT_NE(WrittenSfnt(a).table("cmap"), WrittenSfnt(b).table("cmap"));
    EXPECT_EQ(WrittenSfnt(mergedSfnt(a, b, false)).table("cmap"), WrittenSfnt(a).table("cmap"));
    EXPECT_EQ(WrittenSfnt(mergedSfnt(b, a, false)).table("cmap"), WrittenSfnt(b).table("cmap"));
    const Bytes without = mergedSfnt(a, b, true);
    EXPECT_THAT(WrittenSfnt(without).tags(),
                ElementsAre("glyf", "head", "hhea", "hmtx", "loca", "maxp", "post"));
    EXPECT_EQ(without.slice(0, 12), Bytes().u32(0x00010000).u16(7).u16(64).u16(2).u16(48));
}

TEST(MergeTrueType, WithoutIgnoringItBothNeedACharacterMap) {
    EmbeddableFont font(TestFont::latin().build());
    const Bytes with = font.embedWithCmap({TestFont::kA});
    const Bytes without = font.embed({TestFont::kB});
    EXPECT_NE(mergedSfnt(with, with, false), kNothing);
    EXPECT_EQ(mergedSfnt(with, without, false), kNothing);
    EXPECT_EQ(mergedSfnt(without, with, false), kNothing);
    EXPECT_NE(mergedSfnt(with, without, true), kNothing);
}

TEST(MergeTrueType, HeadHasToBeEqualButForRevisionSumAndOffsetFormat) {
    const Bytes table = TestFont::latin().head.build();
    for (std::size_t at = 0; at < 54; ++at) {
        const bool mayDiffer = (at >= 4 && at < 12) || at == 50 || at == 51;
        Bytes changed = table;
        changed.patchU8At(at, table[at] ^ (at == 50 || at == 51 ? 2 : 1));
        TestFont other = TestFont::latin();
        other.with("head", changed);
        // A head that does not load is refused as well.
        const Bytes merged = mergedSfnt(TestFont::latin().build(), other.build());
        EXPECT_EQ(merged != kNothing, mayDiffer) << at;
    }
}

TEST(MergeTrueType, HeadHasToHave54BytesInBoth) {
    TestFont longer = TestFont::latin();
    longer.with("head", Bytes(longer.head.build()).u8(0));
    EXPECT_EQ(mergedSfnt(longer.build(), TestFont::latin().build()), kNothing);
    EXPECT_EQ(mergedSfnt(TestFont::latin().build(), longer.build()), kNothing);
    EXPECT_EQ(mergedSfnt(longer.build(), longer.build()), kNothing);
}

TEST(MergeTrueType, TablesThatTellTheFontHaveToBeEqual) {
    TestFont font = TestFont::latin();
    font.with("cvt ", Bytes{1, 2}).with("fpgm", Bytes{0xB0, 0}).with("prep", Bytes{0xB0, 1});
    const WrittenSfnt source(font.build());
    for (const char* const tag : {"hhea", "hmtx", "maxp", "cvt ", "fpgm", "prep"}) {
        const Bytes table = source.table(tag);
        TestFont other = font;
        other.with(tag, Bytes(table).patchU8At(table.size() - 1, table[table.size() - 1] ^ 1));
        EXPECT_EQ(mergedSfnt(font.build(), other.build()), kNothing) << tag;
        other.with(tag, joined(table, Bytes{0, 0}));
        EXPECT_EQ(mergedSfnt(font.build(), other.build()), kNothing) << tag << " longer";
        EXPECT_NE(mergedSfnt(other.build(), other.build()), kNothing) << tag << " longer in both";
        other = font;
        other.without(tag);
        EXPECT_EQ(mergedSfnt(font.build(), other.build()), kNothing) << tag << " missing";
        EXPECT_EQ(mergedSfnt(other.build(), font.build()), kNothing) << tag << " missing";
        const bool mayLack = tag[0] == 'c' || tag[0] == 'f' || tag[0] == 'p';
        EXPECT_EQ(mergedSfnt(other.build(), other.build()) != kNothing, mayLack)
            << tag << " missing in both";
    }
}

TEST(MergeTrueType, NeedsOutlinesInBoth) {
    TestFont without = TestFont::latin();
    without.without("glyf");
    EXPECT_EQ(mergedSfnt(TestFont::latin().build(), without.build()), kNothing);
    EXPECT_EQ(mergedSfnt(without.build(), TestFont::latin().build()), kNothing);
}

TEST(MergeTrueType, ShortOffsetsThatGlyphsOfBothPassEndTheMerge) {
    const auto half = [](std::uint16_t gid, std::size_t size) {
        TestFont font = countedGlyphs(false);
        for (Bytes& each : font.outlines.glyphs)
            each = {};
        font.outlines.glyphs[gid] = Bytes().i16(1).zero(size - 2);
        return font.build();
    };
    EXPECT_NE(mergedSfnt(half(1, 65536), half(2, 65534)), kNothing);
    EXPECT_EQ(mergedSfnt(half(1, 65536), half(2, 65536)), kNothing);
}

TEST(MergeTrueType, GlyphsThatLieOverEachOtherEndTheMerge) {
    TestFont font = countedGlyphs(true);
    const Bytes sound = font.build();
    font.with("loca", locaOf({0, 80, 0, 80, 0, 80}, true));
    EXPECT_EQ(mergedSfnt(font.build(), sound), kNothing);
}

TEST(MergeTrueType, AGlyphOutsideOfGlyfEndsTheMerge) {
    TestFont font = countedGlyphs(true);
    font.with("loca", locaOf({0, 14, 14, 32, 54, 90}, true));
    EXPECT_EQ(mergedSfnt(font.build(), countedGlyphs(true).build()), kNothing);
}

TEST(MergeTrueType, OffsetsAreForTheGlyphsThatThereMayBe) {
    TestFont font = countedGlyphs(false);
    font.maxp.numGlyphs = 60000; // which neither `loca` has
    font.hhea.numberOfHMetrics = 1;
    font.with("hmtx", Bytes().zero(4 + 2 * 59999));
    const Bytes merged = mergedSfnt(font.build(), font.build());
    ASSERT_NE(merged, kNothing);
    EXPECT_THAT(offsetsOf(WrittenSfnt(merged), false), ElementsAre(0, 14, 14, 32, 54, 80, 80));
}

TEST(MergeTrueType, EntriesBehindTheLastGlyphGetLost) {
    TestFont font = countedGlyphs(false);
    font.maxp.numGlyphs = 3;
    font.hhea.numberOfHMetrics = 1;
    const Bytes merged = mergedSfnt(font.build(), font.build());
    ASSERT_NE(merged, kNothing);
    EXPECT_THAT(offsetsOf(WrittenSfnt(merged), false), ElementsAre(0, 14, 14, 32));
}

} // namespace
} // namespace KWFontService_NS
