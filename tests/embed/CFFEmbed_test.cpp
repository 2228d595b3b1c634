// What the operations of a font with `CFF ` outlines give.

#include "CffOutput.h"
#include "support/TempDir.h"

#include <KWFontService17/FS_FontInfo.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using testing::ElementsAre;

Bytes cffOf(const TestFont& font) {
    return font.extras.get("CFF ");
}

/// The fonts that operations are asked of: a name-keyed and a CID-keyed one.
std::vector<TestFont> fonts() {
    TestFont cid = TestFont::openType();
    CffCID table;
    for (int i = 0; i < 4; ++i)
        table.glyphs.push_back(
            {static_cast<std::uint16_t>(i), 0, rectangleCharstring(0, 0, 0, i * 10, 700)});
    table.fontDicts[0].privateDict = CffPrivate{.dict = Bytes{140, 20}};
    cid.with("CFF ", table);
    return {TestFont::openType(), cid};
}

TEST(CFFEmbed, GetEmbedFontIsTheBareTableRenumbered) {
    for (const TestFont& source : fonts()) {
        const Bytes expected = renumbered(cffOf(source), {2});
        EXPECT_FALSE(expected.empty());
        EXPECT_EQ(EmbeddableFont(source.build()).embed({2}), expected);
    }
}

TEST(CFFEmbed, GetEmbedFontWithTagsHasTheTableWholeWhateverTheGlyphs) {
    for (const TestFont& source : fonts()) {
        EmbeddableFont font(source.build());
        const WrittenSfnt sfnt(font.embed({2}, {sfntTag("head"), sfntTag("XXXX"), 0}));
        EXPECT_THAT(sfnt.tags(), ElementsAre("CFF ", "head"));
        EXPECT_EQ(sfnt.table("CFF "), cffOf(source));
        EXPECT_EQ(sfnt.file().u32At(0), kOttoVersion);
        EXPECT_EQ(font.embed({}, {sfntTag("head"), 0}), sfnt.file());
        EXPECT_EQ(font.embed({60000}, {sfntTag("head"), 0}), sfnt.file());
    }
}

TEST(CFFEmbed, GetEmbedFontStreamIsTheTableAsItStands) {
    for (const TestFont& source : fonts()) {
        EmbeddableFont font(source.build());
        KWMemStream out;
        ASSERT_TRUE(font.font().getEmbedFontStream(out, &font.stream(), 0));
        EXPECT_EQ(bytesOf(out), cffOf(source));
    }
}

TEST(CFFEmbed, MakeSubsetFontHasEveryTableAndTheGlyphsInPlace) {
    for (const TestFont& source : fonts()) {
        const WrittenSfnt original(source.build());
        const WrittenSfnt sfnt(EmbeddableFont(source.build()).subset({2}));
        EXPECT_EQ(sfnt.tags(), original.tags());
        TableStream stream(cffOf(source));
        KWMemStream table;
        ASSERT_TRUE(subsetCFFInPlace(stream.table, {2}, TestFont::kSpace, table));
        EXPECT_EQ(sfnt.table("CFF "), bytesOf(table));
        EXPECT_LT(sfnt.record("CFF ").length, original.record("CFF ").length);
        EXPECT_EQ(sfnt.record("CFF ").checkSum, tableChecksum(bytesOf(table).vector()));
        for (const auto& record : original.records) {
            if (record.tag != "CFF ") {
                EXPECT_EQ(sfnt.table(record.tag), original.table(record.tag)) << record.tag;
                EXPECT_EQ(sfnt.record(record.tag).checkSum, record.checkSum) << record.tag;
            }
        }
    }
}

TEST(CFFEmbed, OfAnFDSelectOfFormatZeroOnlyMakeSubsetFontWorks) {
    TestFont source = fonts()[1];
    CffCID table;
    for (int i = 0; i < 4; ++i)
        table.glyphs.push_back({static_cast<std::uint16_t>(i), 0, Bytes{14}});
    table.fontDicts[0].privateDict = CffPrivate{.dict = Bytes{140, 20}};
    CffSections sections = table.sections();
    sections.fdSelect = Bytes{0, 0, 0, 0, 0};
    source.with("CFF ", sections.build());
    EmbeddableFont font(source.build());
    EXPECT_TRUE(font.embed({2}).empty());
    EXPECT_FALSE(font.subset({2}).empty());
}

TEST(CFFEmbed, OperationsOfGlyfOutlinesGiveNothing) {
    EmbeddableFont font(TestFont::openType().build());
    KeptGlyphs kept;
    EXPECT_TRUE(font.embedWithCmap({2}).empty());
    EXPECT_TRUE(font.embedPS({2}, kept).empty());
    EXPECT_TRUE(kept.glyphs().empty());
}

TEST(CFFEmbed, AnEmptyListGivesNoSubset) {
    EmbeddableFont font(TestFont::openType().build());
    EXPECT_TRUE(font.embed({}).empty());
    EXPECT_TRUE(font.subset({}).empty());
}

TEST(CFFEmbed, AFontOfGlyfThatHasCffTooIsCutByItsCff) {
    TestFont source = TestFont::latin();
    source.with("CFF ", cffOf(TestFont::openType()));
    EmbeddableFont font(source.build());
    EXPECT_EQ(font.embed({2}), renumbered(cffOf(source), {2}));
    EXPECT_THAT(WrittenSfnt(font.embed({2}, {0})).tags(), ElementsAre("CFF ", "glyf", "loca"));
    EXPECT_EQ(WrittenSfnt(font.subset({2})).table("glyf"),
              WrittenSfnt(source.build()).table("glyf"));
}

TEST(CFFEmbed, FontsOpenTheirOwnFile) {
    const TempDir folder;
    for (const TestFont& source : fonts()) {
        const Bytes file = source.build();
        FS_FontInfo font;
        ASSERT_TRUE(font.createFont(fileUri(folder.write("font.otf", file))));
        EmbeddableFont inMemory(file);
        KWMemStream embedded;
        ASSERT_TRUE(font.getEmbedFont(Glyphs{2}, embedded));
        EXPECT_EQ(bytesOf(embedded), inMemory.embed({2}));
        KWMemStream cut;
        ASSERT_TRUE(font.makeSubsetFont(Glyphs{2}, cut));
        EXPECT_EQ(bytesOf(cut), inMemory.subset({2}));
        KWMemStream table;
        ASSERT_TRUE(font.getEmbedFontStream(table));
        EXPECT_EQ(bytesOf(table), cffOf(source));
        const unsigned int tags[] = {0};
        KWMemStream listed;
        ASSERT_TRUE(font.getEmbedFont(Glyphs{2}, listed, tags));
        EXPECT_EQ(bytesOf(listed), inMemory.embed({2}, {0}));
    }
}

TEST(CFFEmbed, OperationsSayNoWhenTheFileIsGone) {
    const TempDir folder;
    const Bytes file = TestFont::openType().build();
    FS_FontInfo font;
    const auto path = folder.write("font.otf", file);
    ASSERT_TRUE(font.createFont(fileUri(path)));
    std::filesystem::remove(path);
    const unsigned int tags[] = {0};
    KWMemStream out;
    EXPECT_FALSE(font.getEmbedFont(Glyphs{2}, out));
    EXPECT_FALSE(font.getEmbedFont(Glyphs{2}, out, tags));
    EXPECT_FALSE(font.makeSubsetFont(Glyphs{2}, out));
    EXPECT_FALSE(font.getEmbedFontStream(out));
    EXPECT_EQ(out.size(), 0u);
}

TEST(CFFEmbed, AFileThatGotShorterGivesNothing) {
    for (const TestFont& source : fonts()) {
        const Bytes file = source.build();
        const WrittenSfnt sfnt(file);
        for (std::size_t more = 0; more < sfnt.record("CFF ").length; more += 3) {
            EmbeddableFont font(file);
            font.replaceFile(Bytes(file).truncate(sfnt.record("CFF ").offset + more));
            EXPECT_TRUE(font.embed({3}).empty()) << more;
            EXPECT_TRUE(font.subset({3}).empty()) << more;
            KWMemStream out;
            EXPECT_FALSE(font.font().getEmbedFontStream(out, &font.stream(), 0)) << more;
        }
    }
}

TEST(CFFEmbed, ATableThatClaimsMoreThanTheFileHasGivesNothing) {
    for (const TestFont& source : fonts()) {
        Bytes file = source.build();
        constexpr std::size_t kRecord = 12; // `CFF ` comes first
        ASSERT_EQ(file.u32At(kRecord), sfntTag("CFF "));
        const std::size_t most = file.size() - file.u32At(kRecord + 8);
        for (const bool fits : {true, false}) {
            EmbeddableFont font(file.patchU32At(kRecord + 12, fits ? most : most + 1));
            EXPECT_EQ(!font.embed({2}).empty(), fits);
            EXPECT_EQ(!font.subset({2}).empty(), fits);
            KWMemStream out;
            EXPECT_EQ(font.font().getEmbedFontStream(out, &font.stream(), 0), fits);
        }
    }
}

TEST(CFFEmbed, OperationsSayNoToAnOutputThatCannotBeWritten) {
    for (const TestFont& source : fonts()) {
        EmbeddableFont font(source.build());
        FS_TrueType& f = font.font();
        std::istream* const in = &font.stream();
        for (const std::ios::iostate state : {std::ios::badbit, std::ios::failbit}) {
            KWMemStream out;
            out.setstate(state);
            const unsigned int tags[] = {0};
            EXPECT_FALSE(f.getEmbedFont(Glyphs{2}, out, in, 0));
            EXPECT_FALSE(f.getEmbedFont(Glyphs{2}, out, tags, in, 0));
            EXPECT_FALSE(f.makeSubsetFont(Glyphs{2}, out, in, 0));
            EXPECT_FALSE(f.getEmbedFontStream(out, in, 0));
            EXPECT_EQ(out.size(), 0u);
        }
    }
}

} // namespace
} // namespace KWFontService_NS
