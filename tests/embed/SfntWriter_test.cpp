#include "embed/SfntWriter.h"

#include "EmbedFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace KWFontService_NS {
namespace {

using KWCommonNS::ByteView;
using KWTest::Bytes;
using KWTest::bytesOf;
using KWTest::EmbeddableFont;
using KWTest::KeptGlyphs;
using KWTest::SfntBuilder;
using KWTest::TestFont;
using KWTest::WrittenSfnt;
using testing::ElementsAre;

TTI_Directory directoryOf(const Bytes& file) {
    return TTI_Directory(file.u32At(0), ByteView(file.data() + 12, file.u16At(4) * 16u), 0);
}

struct Written {
    bool ok = false;
    Bytes bytes;
};

Written write(const Bytes& file, const ReplacedTables& replaced = {}) {
    std::istringstream stream(file.str());
    EmbedSource source(stream);
    TableSet tables;
    EXPECT_TRUE(selectTables(directoryOf(file), nullptr, tables));
    KWMemStream out;
    const bool ok = writeSfnt(source, out, replaced, tables);
    return {ok, bytesOf(out)};
}

ByteView viewOf(const Bytes& bytes) {
    return ByteView(bytes.data(), bytes.size());
}

/// Three tables out of order, one of odd length in the middle and one at the end.
SfntBuilder threeTables() {
    return SfntBuilder()
        .table("loca", Bytes{0x00, 0x00, 0x00})
        .table("abcd", Bytes{0x11, 0x22, 0x33, 0x44, 0x55})
        .table("glyf", Bytes{0x61, 0x62})
        .inGivenOrder();
}

TEST(SfntWriter, WritesTheBytesOfTheFormat) {
    const Bytes expected = Bytes{}
                               .u32(0x00010000)
                               .u16(3)
                               .u16(32)
                               .u16(1)
                               .u16(16)
                               .tag("abcd")
                               .u32(0x11223344u + 0x55000000u)
                               .u32(60)
                               .u32(5)
                               .tag("glyf")
                               .u32(0x61620000u)
                               .u32(68)
                               .u32(2)
                               .tag("loca")
                               .u32(0)
                               .u32(72)
                               .u32(3)
                               .bytes(Bytes{0x11, 0x22, 0x33, 0x44, 0x55, 0, 0, 0})
                               .bytes(Bytes{0x61, 0x62, 0, 0})
                               .zero(3);
    const Written written = write(threeTables().build());
    EXPECT_TRUE(written.ok);
    EXPECT_EQ(written.bytes, expected);
}

TEST(SfntWriter, PadsBeforeATableAndNotBehindTheLast) {
    const WrittenSfnt sfnt(write(threeTables().build()).bytes);
    EXPECT_EQ(sfnt.record("abcd").offset, 60u);
    EXPECT_EQ(sfnt.record("glyf").offset, 68u);
    EXPECT_EQ(sfnt.file().size(), sfnt.record("loca").offset + 3u);
}

TEST(SfntWriter, NewContentsGetTheirLengthAndSum) {
    const Bytes glyf{1, 2, 3, 4, 5};
    const Bytes loca{0, 0, 9};
    const WrittenSfnt sfnt(write(threeTables().build(), {.glyf = TableContents::of(viewOf(glyf)),
                                                         .loca = TableContents::of(viewOf(loca)),
                                                         .cff = {}})
                               .bytes);
    EXPECT_EQ(sfnt.table("glyf"), glyf);
    EXPECT_EQ(sfnt.record("glyf").checkSum, 0x01020304u + 0x05000000u);
    EXPECT_EQ(sfnt.table("loca"), loca);
    EXPECT_EQ(sfnt.record("loca").checkSum, 0x00000900u);
    EXPECT_EQ(sfnt.record("loca").offset, 76u);
}

TEST(SfntWriter, ACffTableCanBeReplacedToo) {
    const Bytes file = SfntBuilder(KWTest::kOttoVersion).table("CFF ", Bytes{1, 2}).build();
    const Bytes cff{9, 8, 7};
    const WrittenSfnt sfnt(
        write(file, {.glyf = {}, .loca = {}, .cff = TableContents::of(viewOf(cff))}).bytes);
    EXPECT_EQ(sfnt.file().u32At(0), KWTest::kOttoVersion);
    EXPECT_EQ(sfnt.table("CFF "), cff);
}

TEST(SfntWriter, ContentsThatFailEndTheFile) {
    const ReplacedTables failing{
        .glyf = TableContents{2, [](KWMemStream&) { return false; }}, .loca = {}, .cff = {}};
    EXPECT_FALSE(write(threeTables().build(), failing).ok);
}

TEST(SfntWriter, CheckSumsOfCopiedTablesStayAsTheyAreEvenWrong) {
    const WrittenSfnt sfnt(
        write(threeTables().lie("abcd", {.checkSum = 0xDEADBEEF}).build()).bytes);
    EXPECT_EQ(sfnt.record("abcd").checkSum, 0xDEADBEEFu);
}

TEST(SfntWriter, HeadIsCopiedWithItsCheckSumAdjustment) {
    TestFont font = TestFont::latin();
    font.head.checkSumAdjustment = 0x12345678;
    const Bytes file = font.sfnt().keepCheckSumAdjustment().build();
    const WrittenSfnt sfnt(write(file).bytes);
    EXPECT_EQ(sfnt.table("head"), WrittenSfnt(file).table("head"));
    EXPECT_EQ(sfnt.table("head").u32At(8), 0x12345678u);
}

TEST(SfntWriter, AppendsToWhatTheStreamHolds) {
    const Bytes file = threeTables().build();
    std::istringstream stream(file.str());
    EmbedSource source(stream);
    TableSet tables;
    ASSERT_TRUE(selectTables(directoryOf(file), nullptr, tables));
    KWMemStream out;
    out.append("abc");
    ASSERT_TRUE(writeSfnt(source, out, {}, tables));
    EXPECT_EQ(bytesOf(out), Bytes::ofText("abc").bytes(write(file).bytes));
}

TEST(SfntWriter, FailsOnATableThatLeavesTheFile) {
    EXPECT_FALSE(write(threeTables().lie("abcd", {.length = 500}).build()).ok);
    EXPECT_FALSE(write(threeTables().lie("abcd", {.length = 0xFFFFFFFF}).build()).ok);
    EXPECT_FALSE(write(threeTables().lie("loca", {.offset = 0xFFFFFFF0}).build()).ok);
}

TEST(SfntWriter, FailsOnOverlappingTablesBeyondWhatTheFileJustifies) {
    SfntBuilder builder;
    builder.table("glyf", Bytes().zero(20000)).table("loca", Bytes{0, 0});
    const std::uint32_t glyf = static_cast<std::uint32_t>(builder.offsetOf("glyf"));
    for (int i = 10; i < 20; ++i)
        builder.table("t0" + std::to_string(i), Bytes{0});
    const auto withOverlaps = [&](int count) {
        SfntBuilder lying = builder;
        for (int i = 0; i < count; ++i)
            lying.lie("t0" + std::to_string(10 + i), {.offset = glyf, .length = 20000});
        return write(lying.build());
    };
    EXPECT_TRUE(withOverlaps(1).ok);
    EXPECT_FALSE(withOverlaps(10).ok);
}

TEST(SfntWriter, AFaceOfASharedFileBecomesAFileOfItsOwn) {
    KWTest::SfntCollection collection;
    collection.fonts = {TestFont::vertical().sfnt(), TestFont::latin().sfnt()};
    const Bytes file = collection.build();
    const std::uint32_t start = file.u32At(16);
    const TTI_Directory directory(
        file.u32At(start), ByteView(file.data() + start + 12, file.u16At(start + 4) * 16u), 0);
    std::istringstream stream(file.str());
    KWMemStream out;
    ASSERT_TRUE(writeWholeSfnt(stream, directory, out));
    const WrittenSfnt sfnt(bytesOf(out));
    const WrittenSfnt alone(TestFont::latin().build());
    EXPECT_EQ(sfnt.tags(), alone.tags());
    for (const std::string& tag : alone.tags()) {
        if (tag != "head") { // checkSumAdjustment is that of the collection's builder
            EXPECT_EQ(sfnt.table(tag), alone.table(tag)) << tag;
        }
    }
}

// --- getPSEmbedFont -----------------------------------------------------------------------------

TestFont hintedLatin() {
    TestFont font = TestFont::latin();
    font.with("cvt ", Bytes{0x00, 0x01})
        .with("fpgm", Bytes{0xB0})
        .with("prep", Bytes{1, 2, 3, 4, 5});
    return font;
}

TEST(PSSfntWriter, PutsAnEmptyGdirBetweenFpgmAndHead) {
    EmbeddableFont font(hintedLatin().build());
    KeptGlyphs glyphs;
    const WrittenSfnt sfnt(font.embedPS({}, glyphs));
    EXPECT_THAT(sfnt.tags(),
                ElementsAre("cvt ", "fpgm", "gdir", "head", "hhea", "hmtx", "maxp", "prep"));
    EXPECT_EQ(sfnt.record("gdir").checkSum, 0u);
    EXPECT_EQ(sfnt.record("gdir").offset, 0u);
    EXPECT_EQ(sfnt.record("gdir").length, 0u);
}

TEST(PSSfntWriter, SearchFieldsStayThoseOfTheSetWithItsGlyphs) {
    EmbeddableFont font(hintedLatin().build());
    KeptGlyphs glyphs;
    const Bytes file = font.embedPS({}, glyphs);
    // The set has nine tables, glyf and loca among them; the file has eight records.
    EXPECT_EQ(file.u16At(4), 8);
    EXPECT_EQ(file.u16At(6), 128);
    EXPECT_EQ(file.u16At(8), 3);
    EXPECT_EQ(file.u16At(10), 16);
}

TEST(PSSfntWriter, TablesFollowTheEightRecordsAndTheLastIsPaddedToo) {
    const TestFont source = hintedLatin();
    const WrittenSfnt original(source.build());
    EmbeddableFont font(source.build());
    KeptGlyphs glyphs;
    const WrittenSfnt sfnt(font.embedPS({2}, glyphs));
    std::uint32_t offset = 12 + 16 * 8;
    for (const WrittenSfnt::Record& record : sfnt.records) {
        if (record.tag == "gdir")
            continue;
        EXPECT_EQ(record.offset, offset) << record.tag;
        EXPECT_EQ(record.length, original.record(record.tag).length) << record.tag;
        EXPECT_EQ(record.checkSum, original.record(record.tag).checkSum) << record.tag;
        EXPECT_EQ(sfnt.table(record.tag), original.table(record.tag)) << record.tag;
        offset += (record.length + 3) / 4 * 4;
    }
    EXPECT_EQ(sfnt.record("prep").length, 5u);
    EXPECT_EQ(sfnt.file().size(), offset);
    EXPECT_EQ(sfnt.file().slice(offset - 3, 3), (Bytes{0, 0, 0}));
}

TEST(PSSfntWriter, TheLastTableIsPaddedAlsoInFrontOfTheGdirRecord) {
    const Bytes file = SfntBuilder()
                           .table("cvt ", Bytes{1, 2, 3, 4, 5})
                           .table("glyf", Bytes{0, 0})
                           .table("loca", Bytes{0, 0})
                           .build();
    std::istringstream stream(file.str());
    EmbedSource source(stream);
    TableSet tables;
    ASSERT_TRUE(selectTables(directoryOf(file), kPostScriptTables.data(), tables));
    const GlyphLocator noGlyphs(ByteView(), 0, 0, 0);
    GlyphReader reader(source, 0, noGlyphs);
    KWMemStream out;
    KeptGlyphs glyphs;
    ASSERT_TRUE(writePSSfnt(source, reader, {}, out, glyphs, tables));
    const WrittenSfnt sfnt(bytesOf(out));
    EXPECT_THAT(sfnt.tags(), ElementsAre("cvt ", "gdir"));
    EXPECT_EQ(sfnt.file().slice(12 + 16 * 2, sfnt.file().size() - 44),
              (Bytes{1, 2, 3, 4, 5, 0, 0, 0}));
}

TEST(PSSfntWriter, AFontWithoutHintsHasGdirFirst) {
    EmbeddableFont font(TestFont::latin().build());
    KeptGlyphs glyphs;
    EXPECT_THAT(WrittenSfnt(font.embedPS({}, glyphs)).tags(),
                ElementsAre("gdir", "head", "hhea", "hmtx", "maxp"));
}

TEST(PSSfntWriter, GlyphsOfTheClosureGoToTheMapAndEmptyOnesDoNot) {
    const TestFont source = hintedLatin();
    EmbeddableFont font(source.build());
    KeptGlyphs kept;
    const Bytes file = font.embedPS({TestFont::kAacute, TestFont::kSpace, 200}, kept);
    ASSERT_FALSE(file.empty());
    const auto glyphs = kept.glyphs();
    std::vector<int> ids;
    for (const auto& [gid, bytes] : glyphs) {
        ids.push_back(gid);
        EXPECT_EQ(bytes, Bytes(source.outlines.glyphs[gid]).padTo(2)) << gid;
    }
    EXPECT_THAT(ids,
                ElementsAre(TestFont::kNotdef, TestFont::kA, TestFont::kAcute, TestFont::kAacute));
}

TEST(PSSfntWriter, AMapThatGivesNoStreamDropsTheGlyph) {
    class Nothing final : public FS_TTGlyphMap {
    public:
        KWMemStream* getGlyphStream(unsigned short) override { return nullptr; }
    } nothing;
    EmbeddableFont font(TestFont::latin().build());
    EXPECT_FALSE(font.embedPS({2}, nothing).empty());
}

TEST(PSSfntWriter, AppendsToStreamsThatHoldBytesAlready) {
    class One final : public FS_TTGlyphMap {
    public:
        KWMemStream* getGlyphStream(unsigned short gid) override { return gid == 2 ? &a : nullptr; }
        KWMemStream a;
    } one;
    one.a.append("x");
    const TestFont source = TestFont::latin();
    EmbeddableFont font(source.build());
    ASSERT_FALSE(font.embedPS({2}, one).empty());
    EXPECT_EQ(bytesOf(one.a), Bytes::ofText("x").bytes(Bytes(source.outlines.glyphs[2]).padTo(2)));
}

TEST(PSSfntWriter, AGlyphStreamThatTakesNothingFailsTheFont) {
    class Broken final : public FS_TTGlyphMap {
    public:
        Broken() { stream.setstate(std::ios::badbit); }
        KWMemStream* getGlyphStream(unsigned short) override { return &stream; }
        KWMemStream stream;
    } broken;
    EmbeddableFont font(TestFont::latin().build());
    EXPECT_TRUE(font.embedPS({2}, broken).empty());
}

TEST(SfntWriter, AGdirTableOfTheSourceIsCopied) {
    TestFont source = TestFont::latin();
    EmbeddableFont font(source.with("gdir", Bytes{1, 2, 3, 4, 5}).build());
    EXPECT_EQ(WrittenSfnt(font.subset({2})).table("gdir"), (Bytes{1, 2, 3, 4, 5}));
}

TEST(Writers, SayNoToAFontThatWasNeverScanned) {
    const KWCommonNS::KWPtr<FS_TrueType> font(new FS_TrueType(KWUri()));
    KWMemStream output;
    KeptGlyphs glyphs;
    const unsigned int tags[] = {0};
    EXPECT_FALSE(font->getEmbedFont({1}, output, nullptr, 0));
    EXPECT_FALSE(font->getEmbedFont({1}, output, tags, nullptr, 0));
    EXPECT_FALSE(font->getEmbedFontWithCmap({1}, output, nullptr, 0));
    EXPECT_FALSE(font->getEmbedFontStream(output, nullptr, 0));
    EXPECT_FALSE(font->getPSEmbedFont({1}, output, glyphs, nullptr, 0));
    EXPECT_FALSE(font->makeSubsetFont({1}, output, nullptr, 0));
    EXPECT_EQ(output.length(), 0);
}

} // namespace
} // namespace KWFontService_NS
