#include "fonts/FS_FontFileOptions.h"
#include "fonts/OperationCalls.h"
#include "fonts/WoffFixture.h"
#include "support/FontPackages.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <string_view>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using namespace std::string_literals;
using KWCommonNS::KWPtr;

// --- what comes out -----------------------------------------------------------------------------

TEST(Woff, IsAClassOfItsOwn) {
    WoffInMemory font(WoffFile::of(latinSfnt()).build());
    EXPECT_EQ(font->getClassId(), FS_CLASSID_WOFF);
    EXPECT_EQ(font->getClassName(), UnicodeString("FS_WOFF"));
    for (const unsigned id : {0x5726A54CU, 0x2E8D3159U, 0x523A46D6U, 0xD18D040AU, 0xDF537371U})
        EXPECT_TRUE(font->isKindOf(id)) << std::hex << id;
    EXPECT_EQ(font->getFontFileType(0), 10);
    EXPECT_EQ(font->getFontStream(), nullptr) << "before the scan";
    EXPECT_FALSE(font.load());
    EXPECT_FALSE(font.error.isError());
}

TEST(Woff, TheSfntComesOutAsItWentIn) {
    for (const TestFont& source : {TestFont::latin(), TestFont::vertical(), TestFont::openType()}) {
        const Bytes sfnt = source.build();
        WoffInMemory font(WoffFile::of(sfnt).build());
        ASSERT_TRUE(font.scan()) << font.complaint();
        EXPECT_EQ(font.sfnt(), sfnt);
    }
}

TEST(Woff, AnswersAsTheFontThatItWraps) {
    WoffInMemory font(WoffFile::of(latinSfnt()).build());
    ASSERT_TRUE(font.scan() && font.load()) << font.complaint();
    EXPECT_EQ(font->getFontFileType(0), 10);
    EXPECT_EQ(font->getFontFileType2(0), 5);
    EXPECT_TRUE(font->isExtraFont(nullptr, nullptr, 0));
    EXPECT_EQ(font->getGlyphID('A', false, 0), TestFont::kA);
    EXPECT_EQ(font->getGlyphWidth(TestFont::kA, 0, false, 0), 600.0F);
    EXPECT_TRUE(font->getFamilyName(0, 0).isEmpty()) << "the document names it";
}

TEST(Woff, TheTypeInsideIsSevenOrEightForCff) {
    WoffInMemory names(WoffFile::of(TestFont::openType().build()).build());
    ASSERT_TRUE(names.scan() && names.load()) << names.complaint();
    EXPECT_EQ(names->getFontFileType2(0), 7);
    EXPECT_TRUE(names->isType1OrNoCID(0));
    TestFont cid = TestFont::openType();
    cid.with("CFF ", CffCID{.glyphs = {{0, 0, {14}}, {7, 0, {14}}, {9, 0, {14}}, {8, 0, {14}}}});
    WoffInMemory cids(WoffFile::of(cid.build()).build());
    ASSERT_TRUE(cids.scan() && cids.load()) << cids.complaint();
    EXPECT_EQ(cids->getFontFileType2(0), 8);
    FS_CIDSystemInfo info;
    EXPECT_TRUE(cids->getCIDSystemInfo(info, 0));
}

TEST(Woff, ATableOfEqualLengthsIsStoredEvenIfItWouldInflate) {
    // The bytes of a table are a zlib stream, which nobody asked to unpack.
    TestFont source = TestFont::latin();
    const Bytes stream = deflated(letters(100));
    source.with("zzzz", stream);
    WoffInMemory font(WoffFile::of(source.build()).build());
    ASSERT_TRUE(font.scan()) << font.complaint();
    EXPECT_EQ(font.sfnt(), source.build());
}

TEST(Woff, LargeTablesAndSmallOnesInAnyOrder) {
    TestFont source = TestFont::latin();
    source.with("aaaa", letters(5000)).with("bbbb", letters(3)).with("zzzz", letters(100000));
    WoffFile file = WoffFile::of(source.build());
    file.table("aaaa") = WoffTable::plain("aaaa", letters(5000));
    WoffInMemory font(file.build());
    ASSERT_TRUE(font.scan()) << font.complaint();
    EXPECT_EQ(font.sfnt(), source.build());
}

TEST(Woff, TablesStandInTheOrderOfTheDirectory) {
    WoffFile file = WoffFile::of(latinSfnt());
    std::swap(file.tables[0], file.tables[3]);
    WoffInMemory font(file.build());
    ASSERT_TRUE(font.scan()) << font.complaint();
    const Bytes sfnt = font.sfnt();
    std::uint32_t next = static_cast<std::uint32_t>(12 + 16 * file.tables.size());
    for (std::size_t i = 0; i < file.tables.size(); ++i) {
        const std::size_t record = 12 + 16 * i;
        EXPECT_EQ(sfnt.str().substr(record, 4), file.tables[i].tag);
        EXPECT_EQ(sfnt.u32At(record + 4), file.tables[i].origChecksum);
        EXPECT_EQ(sfnt.u32At(record + 8), next);
        EXPECT_EQ(sfnt.u32At(record + 12), file.tables[i].origLength);
        next += (file.tables[i].origLength + 3) / 4 * 4;
    }
    EXPECT_EQ(sfnt.size(), next);
}

TEST(Woff, TheOrderOfTheDirectoryCountsAndNotThatOfTheData) {
    const Bytes inOrder = WoffFile::of(latinSfnt()).build();
    Bytes swapped = inOrder;
    for (std::size_t i = 0; i < 20; ++i) {
        swapped.patchU8At(44 + i, inOrder.u8At(64 + i));
        swapped.patchU8At(64 + i, inOrder.u8At(44 + i));
    }
    WoffInMemory font(swapped);
    ASSERT_TRUE(font.scan() && font.load()) << font.complaint();
    const Bytes sfnt = font.sfnt();
    EXPECT_EQ(sfnt.u32At(12), inOrder.u32At(64));
    EXPECT_EQ(sfnt.u32At(12 + 8), 12 + 16 * std::uint32_t{sfnt.u16At(4)});
    EXPECT_EQ(sfnt.u32At(28), inOrder.u32At(44));
    EXPECT_GT(sfnt.u32At(28 + 8), sfnt.u32At(12 + 8));
}

TEST(Woff, ATableThatIsLongerPackedIsInflatedAllTheSame) {
    TestFont source = TestFont::latin();
    source.with("aaaa", letters(3));
    WoffFile file = WoffFile::of(source.build());
    file.table("aaaa") = WoffTable::packed("aaaa", letters(3));
    ASSERT_GT(file.table("aaaa").stored.size(), 3U);
    WoffInMemory font(file.build());
    ASSERT_TRUE(font.scan()) << font.complaint();
    EXPECT_EQ(font.sfnt(), source.build());
}

TEST(Woff, TablesMayShareTheirBytes) {
    TestFont source = TestFont::latin();
    source.with("aaaa", letters(8)).with("bbbb", letters(8));
    WoffFile file = WoffFile::of(source.build());
    const std::size_t first = 44 + 20 * file.tables.size();
    file.table("bbbb").stored = Bytes();
    file.table("bbbb").compLength = 8;
    file.table("bbbb").offset = static_cast<std::uint32_t>(first);
    std::swap(file.table("aaaa"), file.tables.front());
    ASSERT_EQ(file.tables.front().tag, "aaaa");
    WoffInMemory font(file.build());
    ASSERT_TRUE(font.scan()) << font.complaint();
    const std::string sfnt = font.sfnt().str();
    const std::size_t at = sfnt.find(letters(8).str());
    EXPECT_NE(sfnt.find(letters(8).str(), at + 1), std::string::npos);
}

TEST(Woff, TheLastTableIsPaddedToo) {
    TestFont source = TestFont::latin();
    WoffFile file = WoffFile::of(source.build());
    file.tables.push_back(WoffTable::plain("zzzz", letters(5)));
    WoffInMemory font(file.build());
    ASSERT_TRUE(font.scan()) << font.complaint();
    EXPECT_EQ(font.sfnt().size() % 4, 0U);
    EXPECT_EQ(font.sfnt().str().substr(font.sfnt().size() - 8), letters(5).str() + "\0\0\0"s);
}

TEST(Woff, ALoadReadsTheUnpackedFontWhateverStreamItIsGiven) {
    const Bytes file = WoffFile::of(latinSfnt()).build();
    WoffInMemory font(file);
    ASSERT_TRUE(font.scan()) << font.complaint();
    std::istringstream other("another");
    EXPECT_TRUE(font->loadFont(font.error, 0, &other)) << font.complaint();
    EXPECT_EQ(font->getGlyphID('A', false, 0), TestFont::kA);
}

TEST(Woff, ALoadThatFailsTellsWhatTheFontInsideSays) {
    WoffInMemory font(WoffFile::of(TestFont::latin().without("hmtx").build()).build());
    ASSERT_TRUE(font.scan()) << font.complaint();
    EXPECT_FALSE(font.load());
    EXPECT_EQ(font.complaint(), fileError("'hmtx' table not found"));
}

TEST(Woff, ChecksumsAreCopiedAndNotVerified) {
    WoffFile file = WoffFile::of(latinSfnt());
    file.table("head").origChecksum = 0xDEADBEEF;
    WoffInMemory font(file.build());
    EXPECT_TRUE(font.scan()) << font.complaint();
    EXPECT_NE(font.sfnt().str().find("\xDE\xAD\xBE\xEF"), std::string::npos);
}

TEST(Woff, SearchFieldsFollowFromTheNumberOfTables) {
    struct Row {
        int tables;
        std::uint16_t range, selector, shift;
    };
    for (const Row& row : {Row{1, 16, 0, 0}, Row{2, 32, 1, 0}, Row{3, 32, 1, 16},
                           Row{10, 128, 3, 32}, Row{16, 256, 4, 0}, Row{4095, 32768, 11, 32752}}) {
        WoffFile file;
        for (int i = 0; i < row.tables; ++i)
            file.tables.push_back(
                WoffTable::plain("t" + std::to_string(100 + i % 900), letters(4)));
        WoffInMemory font(file.build());
        EXPECT_FALSE(font.scan()) << "no font";
        const Bytes sfnt = font.sfnt();
        EXPECT_EQ(sfnt.u16At(4), row.tables);
        EXPECT_EQ(sfnt.u16At(6), row.range) << row.tables;
        EXPECT_EQ(sfnt.u16At(8), row.selector) << row.tables;
        EXPECT_EQ(sfnt.u16At(10), row.shift) << row.tables;
    }
}

TEST(Woff, WithoutTablesItIsAnSfntThatTheScanRefuses) {
    WoffInMemory font(WoffFile{}.build());
    EXPECT_FALSE(font.scan());
    EXPECT_EQ(font.complaint(), fileError("OffsetTable.numTables = 0"));
    EXPECT_EQ(font.sfnt(), Bytes().u32(kTrueTypeVersion).zero(8));
}

TEST(Woff, TheFlavorIsCopiedAsItStands) {
    WoffFile file = WoffFile::of(latinSfnt());
    file.flavor = 0x12345678;
    WoffInMemory font(file.build());
    EXPECT_FALSE(font.scan());
    EXPECT_EQ(font.complaint(), kNoComplaint) << "no version of a font";
    EXPECT_EQ(font.sfnt().u32At(0), 0x12345678U);
    file.flavor = tagValue("ttcf");
    EXPECT_EQ(refusedWoff(file.build()), kNoComplaint);
}

TEST(Woff, MetadataPrivateDataVersionAndLengthAreNotLookedAt) {
    Bytes file = WoffFile::of(latinSfnt()).build();
    file.patchU32At(8, 0xFFFFFFFFU).patchU16At(14, 0xFFFF);
    for (std::size_t at = 20; at < 44; at += 4)
        file.patchU32At(at, 0xFFFFFFFFU);
    WoffInMemory font(file);
    EXPECT_TRUE(font.scan()) << font.complaint();
}

TEST(Woff, AShorterResultLeavesItsSpaceAndTheNextTableItsPlace) {
    WoffFile file = WoffFile::of(latinSfnt());
    WoffTable lying = WoffTable::packed("aaaa", letters(6));
    lying.origLength = 40;
    file.tables.insert(file.tables.begin(), lying);
    WoffInMemory font(file.build());
    ASSERT_TRUE(font.scan() && font.load()) << font.complaint();
    const Bytes sfnt = font.sfnt();
    const std::uint32_t at = sfnt.u32At(12 + 8);
    // Six bytes end two short of a multiple of four, and those two are added to what was promised.
    EXPECT_EQ(sfnt.u32At(12 + 16 + 8), at + 40 + 2);
    EXPECT_EQ(sfnt.str().substr(at, 6), letters(6).str());
    EXPECT_EQ(sfnt.str().substr(at + 6, 36), std::string(36, '\0'));
}

// --- messages -----------------------------------------------------------------------------------

TEST(WoffScan, AShortHeaderIsAReadErrorWithoutDetail) {
    const Bytes file = WoffFile::of(latinSfnt()).build();
    for (const std::size_t size : {0U, 1U, 43U})
        EXPECT_EQ(refusedWoff(Bytes(file).truncate(size)), kShortWoff);
}

TEST(WoffScan, AnotherSignatureAndATinySfntAreAnInvalidHeader) {
    Bytes file = WoffFile::of(latinSfnt()).build();
    EXPECT_EQ(refusedWoff(Bytes(file).patchU8At(0, 'W')), fileError("Invalid WOFF header."));
    EXPECT_EQ(refusedWoff(Bytes(file).patchU8At(3, '2')), fileError("Invalid WOFF header."));
    EXPECT_EQ(refusedWoff(Bytes(file).patchU32At(16, 11)), fileError("Invalid WOFF header."));
    EXPECT_EQ(refusedWoff(Bytes(file).patchU32At(16, 0)), fileError("Invalid WOFF header."));
    WoffInMemory least(file.patchU32At(16, 12));
    EXPECT_TRUE(least.scan()) << "the size is a wish: " << least.complaint();
}

TEST(WoffScan, AnErrorNamesTheWoffFile) {
    const TempDir dir;
    const KWPtr<FS_WOFF> font(new FS_WOFF(dir.uri("x.woff")));
    std::istringstream stream("wOFF");
    KWError error;
    EXPECT_FALSE(font->scanFont(error, stream));
    EXPECT_EQ(error.getMessage(), UnicodeString("Font read error.\n").append(dir.text("x.woff")));
}

TEST(WoffScan, AShortDirectoryIsAReadError) {
    const Bytes file = WoffFile::of(latinSfnt()).build();
    EXPECT_EQ(refusedWoff(Bytes(file).truncate(44)), kShortWoff);
    EXPECT_EQ(refusedWoff(Bytes(file).truncate(44 + 19)), kShortWoff);
    WoffFile counting;
    counting.numTables = 0xFFFF;
    EXPECT_EQ(refusedWoff(counting.build()), kShortWoff);
}

TEST(WoffScan, ATablePastTheFileIsAReadError) {
    const auto withTable = [](auto change) {
        WoffFile file = WoffFile::of(latinSfnt());
        change(file.tables.back());
        return refusedWoff(file.build());
    };
    EXPECT_EQ(withTable([](WoffTable& t) { t.offset = 0xFFFFFFFF; }), kShortWoff);
    EXPECT_EQ(withTable([](WoffTable& t) { t.compLength = 0xFFFFFFFF; }), kShortWoff);
    EXPECT_EQ(withTable([](WoffTable& t) {
                  t.compLength = static_cast<std::uint32_t>(t.stored.size() + 4);
              }),
              kShortWoff);
}

TEST(WoffScan, DamagedDataDoNotUncompress) {
    WoffFile file = WoffFile::of(latinSfnt());
    WoffTable& table = file.table("glyf");
    ASSERT_LT(table.stored.size(), table.origLength);
    table.stored.patchU8At(table.stored.size() - 1, table.stored.u8At(table.stored.size() - 1) ^ 1);
    EXPECT_EQ(refusedWoff(file.build()), fileError("Uncompress error."));
    WoffFile raw = WoffFile::of(latinSfnt());
    raw.table("glyf").origLength += 1;
    raw.table("glyf").stored = letters(20);
    EXPECT_EQ(refusedWoff(raw.build()), fileError("Uncompress error."));
}

TEST(WoffScan, NoBytesDoNotUncompress) {
    WoffFile file = WoffFile::of(latinSfnt());
    file.table("glyf").compLength = 0;
    EXPECT_EQ(refusedWoff(file.build()), fileError("Uncompress error."));
}

TEST(WoffScan, ATableThatUnpacksToMoreThanPromisedDoesNotUncompress) {
    WoffFile file = WoffFile::of(latinSfnt());
    file.tables.push_back(WoffTable::packed("zzzz", letters(1000)));
    file.tables.back().origLength = 999;
    EXPECT_EQ(refusedWoff(file.build()), fileError("Uncompress error."));
}

TEST(WoffScan, AfterAFailureALaterScanMayPass) {
    WoffFile file = WoffFile::of(latinSfnt());
    file.table("glyf").offset = 0xFFFFFFFF;
    WoffInMemory font(file.build());
    EXPECT_FALSE(font.scan());
    EXPECT_NE(font->getFontStream(), nullptr) << "kept";
    std::istringstream good(WoffFile::of(latinSfnt()).build().str());
    font.error = KWError();
    EXPECT_TRUE(font->scanFont(font.error, good)) << font.complaint();
    EXPECT_EQ(font.sfnt(), latinSfnt());
}

// --- the rebuilt stream -------------------------------------------------------------------------

/// A WOFF file and the sfnt that is in it, each in a file of its own.
class WoffFileAndSource : public testing::Test {
protected:
    WoffFileAndSource() {
        SfntBuilder sfnt = TestFont::latin().sfnt();
        source =
            open(KWPtr<FS_BaseFont>(new FS_TrueType(files.uri("a.ttf"))), "a.ttf", sfnt.build());
        woff = open(KWPtr<FS_BaseFont>(new FS_WOFF(files.uri("a.woff"))), "a.woff",
                    WoffFile::of(sfnt.build()).build());
    }
    KWPtr<FS_BaseFont> open(KWPtr<FS_BaseFont> font, const std::string& name, const Bytes& bytes) {
        files.write(name, bytes);
        std::istringstream stream(bytes.str());
        KWError error;
        EXPECT_TRUE(font->scanFont(error, stream) && font->loadFont(error, 0, nullptr))
            << complaintOf(error);
        return font;
    }

    TempDir files;
    KWPtr<FS_BaseFont> source;
    KWPtr<FS_BaseFont> woff;
};

TEST_F(WoffFileAndSource, WritersReadTheUnpackedFont) {
    enum class Wrapper { INNER, SOURCE, FILE, WOFF, OWN };
    int heard = 0;
#define FS_OPERATION(faces, wrapper, facade, result, name, parameters, arguments, qualifier,       \
                     missing)                                                                      \
    if constexpr (Wrapper::wrapper == Wrapper::SOURCE || Wrapper::wrapper == Wrapper::FILE ||      \
                  Wrapper::wrapper == Wrapper::WOFF) {                                             \
        using Operation = result (FS_BaseFont::*)(FS_PARAMETERS parameters int) qualifier;         \
        const Comparison comparison = compare(*woff, 0, *source, Operation(&FS_BaseFont::name),    \
                                              []() -> result { return missing; });                 \
        EXPECT_TRUE(comparison.likeTheFace) << #name;                                              \
        heard += comparison.faceHasAnswer ? 1 : 0;                                                 \
    }
#include "fonts/FS_FaceOperations.inc"
    EXPECT_GE(heard, 6);
}

TEST_F(WoffFileAndSource, AGivenStreamIsTheOneThatIsRead) {
    std::istringstream nothing;
    KWMemStream output;
    EXPECT_FALSE(woff->getEmbedFont({1}, output, &nothing, 0));
    EXPECT_FALSE(woff->getEmbedFontStream(output, &nothing, 0));
    std::istringstream given("given");
    EXPECT_TRUE(woff->getEmbedFontStream(output, &given, 0));
    EXPECT_EQ(output.length(), 5);
}

TEST_F(WoffFileAndSource, TheWholeFileOutlivesTheFontThatGaveIt) {
    const Bytes sfnt = TestFont::latin().build();
    KWMemStream whole;
    whole.append("before", 6);
    ASSERT_TRUE(woff->getEmbedFontStream(whole, nullptr, 0));
    EXPECT_FALSE(whole.rdbuf()->hasSource());
    woff = KWPtr<FS_BaseFont>();
    std::string read(sfnt.size() + 1, '\0');
    whole.read(read.data(), static_cast<std::streamsize>(read.size()));
    EXPECT_EQ(static_cast<std::size_t>(whole.gcount()), sfnt.size());
    EXPECT_EQ(read.substr(0, sfnt.size()), sfnt.str());
}

TEST_F(WoffFileAndSource, FreeTypeOpensTheUnpackedFont) {
    EXPECT_EQ(woff->getFTFace(1), nullptr);
    EXPECT_NE(woff->getFTFace(0), nullptr);
    EXPECT_EQ(woff->getFTFace(0), woff->getFTFace(0));
}

TEST(Woff, SettingsOfTheFileHoldForTheFontInside) {
    FS_FontFileOptions options;
    options.useZeroGlyphId = true;
    TestFont source = TestFont::latin();
    source.cmap = Cmap::unicode({{'A', 0}, {'B', TestFont::kB}});
    WoffInMemory font(WoffFile::of(source.build()).build());
    font->setFontEntrySettings(&options);
    ASSERT_TRUE(font.scan() && font.load()) << font.complaint();
    EXPECT_EQ(font->getGlyphID('A', false, 0), 0);
}

TEST(Woff, APackagedFontAnswersAsItsSource) {
    const Bytes bytes = readFile(packagedFont("DejaVuSans-WOFF"));
    WoffInMemory woff(bytes);
    ASSERT_TRUE(woff.scan() && woff.load()) << woff.complaint();
    MemoryFont source(readFile(packagedFont("DejaVuSans")));
    ASSERT_TRUE(source.scanAndLoad()) << source.complaint();
    for (const int ch : {0x20, 0x41, 0xE9, 0x416, 0x3B1, 0x5D0, 0x2200, 0x1D400}) {
        const unsigned short gid = source->getGlyphID(ch, false, 0);
        EXPECT_EQ(woff->getGlyphID(ch, false, 0), gid) << ch;
        EXPECT_EQ(woff->getGlyphWidth(gid, 0, false, 0), source->getGlyphWidth(gid, 0, false, 0));
    }
    EXPECT_EQ(woff->getUnitsPerEm(0), source->getUnitsPerEm(0));
    EXPECT_TRUE(woff->hasMATHInfo(0) == source->hasMATHInfo(0));
}

} // namespace
} // namespace KWFontService_NS
