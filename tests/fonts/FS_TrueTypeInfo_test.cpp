#include "fonts/FS_FontFileOptions.h"
#include "fonts/SfntFixture.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

/// A font class whose file type is the test's choice.
class TypedFont : public FS_TrueType {
public:
    using FS_TrueType::FS_TrueType;
    FS_FontFileType getFontFileType(int) const override { return type; }
    FS_FontFileType type = FS_FILETYPE_TRUETYPE;
};

bool scanAs(FS_FontFileType type, const Bytes& file, Complaint* complaint = nullptr) {
    MemoryFont<TypedFont> font(file);
    font->type = type;
    const bool ok = font.scan();
    if (complaint != nullptr)
        *complaint = font.complaint();
    return ok;
}

Bytes latinCutTo(std::size_t size) {
    Bytes file = TestFont::latin().build();
    file.truncate(size);
    return file;
}

/// The file with its tables in the order that leaves `tag` at the very end, cut `missing` bytes
/// short.
Bytes cutInside(const TestFont& font, std::string_view tag, std::size_t missing) {
    SfntBuilder sfnt = font.sfnt();
    const Bytes last = sfnt.get(tag);
    sfnt.drop(tag).table(tag, last).inGivenOrder().unpadded();
    Bytes file = sfnt.build();
    return file.truncate(file.size() - missing);
}

// --- the scan stage -----------------------------------------------------------------------------

TEST(TrueTypeScan, ASoundFontIsScannedAndLoaded) {
    MemoryFont font(TestFont::latin().build());
    EXPECT_TRUE(font.scan());
    EXPECT_FALSE(font.info().isLoaded());
    EXPECT_TRUE(font.load());
    EXPECT_TRUE(font.info().isLoaded());
    EXPECT_EQ(font.complaint(), kNoComplaint);
}

TEST(TrueTypeScan, AShortOffsetTableIsAReadError) {
    EXPECT_EQ(scanComplaint(latinCutTo(0)), readError("Offset table read error"));
    EXPECT_EQ(scanComplaint(latinCutTo(11)), readError("Offset table read error"));
}

TEST(TrueTypeScan, NoTablesAreAFileError) {
    Bytes file = TestFont::latin().build();
    file.patchU16At(4, 0);
    EXPECT_EQ(scanComplaint(file), fileError("OffsetTable.numTables = 0"));
}

TEST(TrueTypeScan, AShortDirectoryIsAReadError) {
    EXPECT_EQ(scanComplaint(latinCutTo(12)), readError("Table directory read error"));
    EXPECT_EQ(scanComplaint(latinCutTo(12 + 16 * 9)), readError("Table directory read error"));
}

TEST(TrueTypeScan, AMessageEndsWithThePathOfTheFile) {
    const TempDir dir;
    dir.write("x.ttf", "abc");
    KWCommonNS::KWPtr<FS_TrueType> font(new FS_TrueType(dir.uri("x.ttf")));
    KWError error;
    std::istringstream stream("abc");
    EXPECT_FALSE(font->scanFont(error, stream));
    EXPECT_TRUE(error.getMessage().endsWith(UnicodeString(u"\n").append(dir.text("x.ttf"))));
}

TEST(TrueTypeScan, AnUnknownVersionIsRefusedWithoutAMessage) {
    for (const std::uint32_t version : {0x00020000U, kOttoVersion, 0x74746366U, 0U}) {
        TestFont file = TestFont::latin();
        file.version = version;
        EXPECT_EQ(scanComplaint(file.build()), kNoComplaint) << version;
    }
}

TEST(TrueTypeScan, TheThreeTrueTypeVersionsAreTaken) {
    for (const std::uint32_t version : {kTrueTypeVersion, kTrueVersion, kTyp1Version}) {
        TestFont file = TestFont::latin();
        file.version = version;
        EXPECT_TRUE(scanAs(FS_FILETYPE_TRUETYPE, file.build())) << version;
        EXPECT_TRUE(scanAs(FS_FILETYPE_COLLECTION, file.build())) << version;
        EXPECT_FALSE(scanAs(FS_FILETYPE_OPENTYPE, file.build())) << version;
        EXPECT_FALSE(scanAs(FS_FILETYPE_OPENTYPE_CID, file.build())) << version;
    }
}

TEST(TrueTypeScan, OpenTypeTakesOttoAlone) {
    const Bytes file = TestFont::openType().build();
    EXPECT_TRUE(scanAs(FS_FILETYPE_OPENTYPE, file));
    EXPECT_TRUE(scanAs(FS_FILETYPE_OPENTYPE_CID, file));
    EXPECT_FALSE(scanAs(FS_FILETYPE_TRUETYPE, file));
}

TEST(TrueTypeScan, AnOldMacintoshFontLackingMetricsIsRefusedWithoutAMessage) {
    for (const char* tag : {"head", "hhea", "hmtx"}) {
        TestFont file = TestFont::latin();
        file.version = kTrueVersion;
        EXPECT_EQ(scanComplaint(file.without(tag).build()), kNoComplaint) << tag;
    }
}

TEST(TrueTypeScan, AFontWithoutOutlinesIsAFileError) {
    TestFont file = TestFont::latin();
    EXPECT_EQ(scanComplaint(file.without("glyf").build()),
              fileError("'glyf' or 'CFF' table not found"));
}

TEST(TrueTypeScan, CffOutlinesUnderATrueTypeVersionAreOutlinesToo) {
    TestFont file = TestFont::latin();
    file.without("glyf").with("CFF ", TestFont::openType().sfnt().get("CFF "));
    MemoryFont font(file.build());
    EXPECT_TRUE(font.scanAndLoad()) << font.complaint();
}

struct RequiredTable {
    const char* tag;
    Complaint missing;
    Complaint cut;
};

class RequiredTables : public testing::TestWithParam<RequiredTable> {};

TEST_P(RequiredTables, MissingIsAFileErrorAndShortAReadError) {
    const RequiredTable& row = GetParam();
    TestFont lacking = TestFont::latin();
    EXPECT_EQ(scanComplaint(lacking.without(row.tag).build()), row.missing);
    EXPECT_EQ(scanComplaint(cutInside(TestFont::latin(), row.tag, 1)), row.cut);
}

INSTANTIATE_TEST_SUITE_P(TrueTypeScan, RequiredTables,
                         testing::Values(RequiredTable{"head", fileError("'head' table not found"),
                                                       readError("'head' table read error")},
                                         RequiredTable{"hhea", fileError("'hhea' table not found"),
                                                       readError("'hhea' table read error")},
                                         RequiredTable{"post", fileError("'post' table not found"),
                                                       readError("'post' table read error")}),
                         [](const auto& paramInfo) { return std::string(paramInfo.param.tag); });

TEST(TrueTypeScan, AMissingNameTableIsAFileError) {
    TestFont file = TestFont::latin();
    EXPECT_EQ(scanComplaint(file.without("name").build()), fileError("'name' table not found"));
}

TEST(TrueTypeScan, AShortOS2IsAReadError) {
    EXPECT_EQ(scanComplaint(cutInside(TestFont::latin(), "OS/2", 1)),
              readError("'OS/2' table read error"));
}

TEST(TrueTypeScan, AMissingOS2IsToleratedInSingleFontsAndDfonts) {
    TestFont trueType = TestFont::latin();
    TestFont openType = TestFont::openType();
    const Bytes latin = trueType.without("OS/2").build();
    EXPECT_TRUE(scanAs(FS_FILETYPE_TRUETYPE, latin));
    EXPECT_TRUE(scanAs(FS_FILETYPE_DFONT, latin));
    EXPECT_TRUE(scanAs(FS_FILETYPE_OPENTYPE, openType.without("OS/2").build()));
    Complaint complaint;
    EXPECT_FALSE(scanAs(FS_FILETYPE_COLLECTION, latin, &complaint));
    EXPECT_EQ(complaint, fileError("'OS/2' table not found"));
}

TEST(TrueTypeScan, AMissingOS2MakesTheMacintoshNamesCountInFull) {
    TestFont file = TestFont::latin();
    file.name = {.records = {macName(1, "Family"), macName(2, "Bold")}};
    MemoryFont with(file.build());
    ASSERT_TRUE(with.scan());
    EXPECT_EQ(with->getSubFamilyName(0, 0), UnicodeString());
    MemoryFont without(file.without("OS/2").build());
    ASSERT_TRUE(without.scan());
    EXPECT_EQ(without->getSubFamilyName(0, 0), UnicodeString("Bold"));
}

TEST(TrueTypeScan, TheOS2OfADfontMakesItAMacintoshFont) {
    TestFont file = TestFont::latin();
    file.name = {.records = {macName(1, "Family"), macName(2, "Bold")}};
    MemoryFont<TypedFont> font(file.build());
    font->type = FS_FILETYPE_DFONT;
    ASSERT_TRUE(font.scan());
    EXPECT_EQ(font->getSubFamilyName(0, 0), UnicodeString("Bold"));
}

TEST(TrueTypeScan, AShortVheaIsAReadError) {
    EXPECT_EQ(scanComplaint(cutInside(TestFont::vertical(), "vhea", 1)),
              readError("'vhea' table read error"));
}

TEST(TrueTypeScan, AShortVmtxIsAReadError) {
    EXPECT_EQ(scanComplaint(cutInside(TestFont::vertical(), "vmtx", 1)),
              readError("'vmtx' table metric read error"));
}

TEST(TrueTypeScan, AMissingVmtxLeavesNoVerticalMetrics) {
    TestFont file = TestFont::vertical();
    MemoryFont font(file.without("vmtx").build());
    EXPECT_TRUE(font.scanAndLoad()) << font.complaint();
    EXPECT_FALSE(font->hasVerticalMetrics(0));
}

TEST(TrueTypeScan, VheaWithoutMetricsDoesNotLookAtVmtx) {
    TestFont file = TestFont::vertical();
    file.with("vhea", Vhea{.numOfLongVerMetrics = 0}).with("vmtx", Bytes());
    MemoryFont font(file.build());
    EXPECT_TRUE(font.scanAndLoad()) << font.complaint();
    EXPECT_FALSE(font->hasVerticalMetrics(0));
}

TEST(TrueTypeScan, ASubsetFromADocumentMayLackNamesAndPost) {
    TestFont file = TestFont::latin();
    const Bytes bytes = file.without("name").without("post").without("cmap").build();
    MemoryFont font(bytes);
    EXPECT_TRUE(font.scanEmbedded()) << font.complaint();
    std::istringstream stream(bytes.str());
    EXPECT_TRUE(font->loadEmbeddedFont(font.error, &stream)) << font.complaint();
    EXPECT_EQ(font->getGlyphWidth(TestFont::kA, 0, false, 0), 600.0F);
}

TEST(TrueTypeScan, ASubsetFromADocumentMustStillHaveSoundNamesWhereItHasAny) {
    TestFont file = TestFont::latin();
    file.name = {};
    MemoryFont font(file.build());
    EXPECT_FALSE(font.scanEmbedded());
    EXPECT_EQ(font.complaint(), fileError("nameTable.count = 0"));
}

TEST(TrueTypeScan, TheFirstOfTwoTablesOfATagIsRead) {
    SfntBuilder sfnt = TestFont::latin().sfnt();
    sfnt.duplicate("head", Head{.unitsPerEm = 16}.build());
    MemoryFont font(sfnt.build());
    ASSERT_TRUE(font.scanAndLoad());
    EXPECT_EQ(font->getUnitsPerEm(0), 1000);
}

TEST(TrueTypeScan, TheFontStartsWhereTheStreamStands) {
    const Bytes file = TestFont::latin().sfnt().offsetShift(8).build();
    std::istringstream stream("PADDING." + file.str());
    stream.seekg(8);
    KWCommonNS::KWPtr<FS_TrueType> font(new FS_TrueType(KWUri()));
    KWError error;
    EXPECT_TRUE(font->scanFont(error, stream)) << complaintOf(error);
    EXPECT_TRUE(font->loadFont(error, 0, &stream)) << complaintOf(error);
    EXPECT_EQ(font->getFamilyName(0, 0), UnicodeString("KWTest Latin"));
}

TEST(TrueTypeScan, TheOffsetsOfADfontCountFromItsFont) {
    const std::string bytes = "PADDING." + TestFont::latin().build().str();
    std::istringstream stream(bytes);
    stream.seekg(8);
    KWCommonNS::KWPtr<TypedFont> font(new TypedFont(KWUri()));
    font->type = FS_FILETYPE_DFONT;
    KWError error;
    EXPECT_TRUE(font->scanFont(error, stream)) << complaintOf(error);
    EXPECT_EQ(font->face(0)->getTableEntry(sfntTag("OS/2"))->offset % 4, 0U);
    EXPECT_EQ(font->getFamilyName(0, 0), UnicodeString("KWTest Latin"));
}

TEST(TrueTypeScan, AWrongCheckSumIsTolerated) {
    EXPECT_TRUE(scanAs(FS_FILETYPE_TRUETYPE,
                       TestFont::latin().sfnt().lie("head", {.checkSum = 1}).build()));
}

TEST(TrueTypeScan, ATablePastTheEndIsToleratedUntilItIsRead) {
    const Bytes file = TestFont::latin().sfnt().lie("hmtx", {.offset = 0xFFFFFF00}).build();
    EXPECT_EQ(loadComplaint(file), readError("'hmtx' table metric read error"));
}

// --- the load stage -----------------------------------------------------------------------------

TEST(TrueTypeLoad, OpenTypeWithoutCffIsAFileError) {
    TestFont file = TestFont::latin();
    file.version = kOttoVersion;
    EXPECT_EQ(loadComplaint<FS_OpenType>(file.build()), fileError("'CFF' table not found"));
    file.with("CFF2", Bytes{0, 0});
    EXPECT_EQ(loadComplaint<FS_OpenType>(file.build()), fileError("'CFF2' table not supported"));
}

TEST(TrueTypeLoad, AnUnreadableCffIsAReadError) {
    TestFont file = TestFont::openType();
    file.with("CFF ", Bytes{1, 0});
    EXPECT_EQ(loadComplaint<FS_OpenType>(file.build()), readError("'CFF' table read error"));
}

TEST(TrueTypeLoad, ShortTablesAreReadErrors) {
    struct Row {
        const char* tag;
        const char* detail;
    };
    const Row rows[] = {{"GDEF", "'GDEF' table read error"},
                        {"GPOS", "'GPOS' table read error"},
                        {"GSUB", "'GSUB' table read error"},
                        {"mort", "'mort' table read error"},
                        {"VORG", "'VORG' table read error"},
                        {"maxp", "'maxp' table read error"},
                        {"hmtx", "'hmtx' left side bearing read error"}};
    const Bytes emptyLayout = Bytes().u32(0x00010000).u16(0).u16(0).u16(0);
    for (const Row& row : rows) {
        TestFont file = TestFont::latin();
        file.with("GDEF", Gdef{}).with("GPOS", emptyLayout).with("GSUB", emptyLayout);
        file.with("mort", Mort::vertical({{TestFont::kA, TestFont::kB}}));
        file.with("VORG", Vorg{.origins = {{TestFont::kA, 700}}});
        EXPECT_EQ(loadComplaint(cutInside(file, row.tag, 1)), readError(row.detail)) << row.tag;
    }
}

TEST(TrueTypeLoad, BadListsOfALayoutTableAreFileErrors) {
    const auto tableWith = [](std::size_t offsetAt) {
        Bytes table = Bytes().u32(0x00010000).u16(0).u16(0).u16(0);
        return table.patchU16At(offsetAt, 0x7FFF);
    };
    for (const std::string tag : {"GPOS", "GSUB"}) {
        const auto complain = [&](std::size_t offsetAt) {
            TestFont file = TestFont::latin();
            return loadComplaint(file.with(tag, tableWith(offsetAt)).build());
        };
        EXPECT_EQ(complain(6), fileError("'" + tag + "' feature list read error"));
        EXPECT_EQ(complain(8), fileError("'" + tag + "' lookup list read error"));
        EXPECT_EQ(complain(4), fileError("'" + tag + "' sclipt list read error"));
        TestFont file = TestFont::latin();
        file.with(tag, Bytes().u32(0x00010000).u16(0).u16(0x7FFF).u16(0x7FFF));
        EXPECT_EQ(loadComplaint(file.build()), fileError("'" + tag + "' lookup list read error"))
            << "the last one told";
    }
}

TEST(TrueTypeLoad, AnUnknownGlyphClassFormatIsAFileError) {
    TestFont file = TestFont::latin();
    file.with("GDEF", Gdef{.glyphClassDef = Bytes{0, 3}}.build());
    EXPECT_EQ(loadComplaint(file.build()), fileError("'GDEF' glyph ClassDef error"));
}

TEST(TrueTypeLoad, AnUnknownMarkAttachmentFormatIsToldAndDoesNotFailTheFont) {
    TestFont file = TestFont::latin();
    file.with("GDEF",
              Gdef{.glyphClassDef = classDefFormat2({{2, 2, 1}}), .markAttachClassDef = Bytes{0, 3}}
                  .build());
    MemoryFont font(file.build());
    EXPECT_TRUE(font.scanAndLoad());
    EXPECT_EQ(font.complaint(), fileError("'GDEF' markAttach ClassDef error"));
    EXPECT_EQ(font->getGlyphClassDef(2, 0), GlyphClassDef::Base);
}

TEST(TrueTypeLoad, AMissingCmapIsAFileError) {
    TestFont file = TestFont::latin();
    EXPECT_EQ(loadComplaint(file.without("cmap").build()), fileError("'cmap' table not found"));
}

TEST(TrueTypeLoad, AMissingHmtxIsAFileErrorOnlyWhereMetricsAreCounted) {
    TestFont file = TestFont::latin();
    file.without("hmtx");
    EXPECT_EQ(loadComplaint(file.build()), fileError("'hmtx' table not found"));
    file.hhea.numberOfHMetrics = 0;
    MemoryFont font(file.build());
    EXPECT_TRUE(font.scanAndLoad()) << font.complaint();
    EXPECT_EQ(font->getGlyphWidth(TestFont::kA, 0, false, 0), 0.0F);
}

TEST(TrueTypeLoad, AMissingMaxpCountsNoGlyphs) {
    TestFont file = TestFont::latin();
    MemoryFont font(file.without("maxp").build());
    EXPECT_TRUE(font.scanAndLoad()) << font.complaint();
    EXPECT_EQ(font.info().header().maxp.numGlyphs, 0);
}

TEST(TrueTypeLoad, AMaxpOfAnotherVersionNeedsFourBytesOnly) {
    TestFont file = TestFont::latin();
    file.with("maxp", Bytes().u32(0x00005000));
    SfntBuilder sfnt = file.sfnt();
    const Bytes maxp = sfnt.get("maxp");
    sfnt.drop("maxp").table("maxp", maxp).inGivenOrder().unpadded();
    MemoryFont font(sfnt.build());
    EXPECT_TRUE(font.scanAndLoad()) << font.complaint();
}

TEST(TrueTypeLoad, OneBadTableNeitherStopsNorUndoesTheOthers) {
    TestFont file = TestFont::latin();
    file.with("GDEF", Gdef{.glyphClassDef = Bytes{0, 3}}.build()).without("hmtx");
    MemoryFont font(file.build());
    ASSERT_TRUE(font.scan());
    EXPECT_FALSE(font.load());
    EXPECT_EQ(font.complaint(), fileError("'hmtx' table not found")) << "the last failure is told";
    EXPECT_EQ(font->getGlyphID('A', false, 0), TestFont::kA);
}

TEST(TrueTypeLoad, AFailedLoadIsNotTriedAgain) {
    TestFont bad = TestFont::latin();
    MemoryFont font(bad.without("cmap").build());
    ASSERT_TRUE(font.scan());
    EXPECT_FALSE(font.load());
    KWError second;
    std::istringstream good(TestFont::latin().build().str());
    EXPECT_FALSE(font->loadFont(second, 0, &good));
    EXPECT_EQ(second.getCode(), FS_ERROR_FONT_FILE) << "a caller tells it from a missing font";
    EXPECT_EQ(font->getGlyphID('A', false, 0), 0xFFFF);
}

TEST(TrueTypeLoad, ALoadThatAnExceptionLeftAnswersCannotReadFromThenOn) {
    class Throwing : public std::streambuf {
        int_type underflow() override { throw 7; }
        pos_type seekoff(off_type, std::ios_base::seekdir, std::ios_base::openmode) override {
            throw 7;
        }
        pos_type seekpos(pos_type, std::ios_base::openmode) override { throw 7; }
    } source;
    MemoryFont font(TestFont::latin().build());
    ASSERT_TRUE(font.scan());
    std::istream stream(&source);
    stream.exceptions(std::ios::badbit);
    KWError error;
    EXPECT_THROW(font->loadFont(error, 0, &stream), int);
    EXPECT_FALSE(font->loadFont(error, 0, nullptr));
    EXPECT_EQ(error.getCode(), FS_ERROR_FONT_READ);
}

TEST(TrueTypeLoad, AFontOpensItsOwnFileWhenNoStreamIsGiven) {
    const TempDir dir;
    dir.write("a.ttf", TestFont::latin().build());
    KWCommonNS::KWPtr<FS_TrueType> font(new FS_TrueType(dir.uri("a.ttf")));
    KWError error;
    std::istringstream stream(TestFont::latin().build().str());
    ASSERT_TRUE(font->scanFont(error, stream));
    EXPECT_TRUE(font->loadFont(error, 0, nullptr)) << complaintOf(error);
    EXPECT_EQ(font->getGlyphID('A', false, 0), TestFont::kA);
}

TEST(TrueTypeLoad, AFileThatIsGoneIsAReadErrorOnce) {
    const TempDir dir;
    KWCommonNS::KWPtr<FS_TrueType> font(new FS_TrueType(dir.uri("gone.ttf")));
    KWError error;
    std::istringstream stream(TestFont::latin().build().str());
    ASSERT_TRUE(font->scanFont(error, stream));
    EXPECT_FALSE(font->loadFont(error, 0, nullptr));
    UnicodeString expected("Font read error: Cannot read font: ");
    expected.append(dir.text("gone.ttf")).append(u'\n').append(u'\n').append(dir.text("gone.ttf"));
    EXPECT_EQ(error.getCode(), 1921);
    EXPECT_EQ(error.getMessage(), expected);
    dir.write("gone.ttf", TestFont::latin().build());
    EXPECT_FALSE(font->loadFont(error, 0, nullptr)) << "a failed load is not tried again";
}

TEST(TrueTypeLoad, TheSettingOfGlyphZeroReachesTheMap) {
    TestFont file = TestFont::latin();
    file.cmap = Cmap::unicode({{'A', 0}, {'B', TestFont::kB}});
    FS_FontFileOptions options;
    options.useZeroGlyphId = true;
    MemoryFont font(file.build());
    font->setFontEntrySettings(&options);
    ASSERT_TRUE(font.scanAndLoad());
    EXPECT_EQ(font->getGlyphID('A', false, 0), 0);
    MemoryFont plain(file.build());
    ASSERT_TRUE(plain.scanAndLoad());
    EXPECT_EQ(plain->getGlyphID('A', false, 0), 0xFFFF);
}

TEST(TrueTypeLoad, VerticalMetricsCountOnlyWithVerticalForms) {
    MemoryFont vertical(TestFont::vertical().build());
    ASSERT_TRUE(vertical.scanAndLoad());
    EXPECT_TRUE(vertical->hasVerticalMetrics(0));

    TestFont plain = TestFont::vertical();
    MemoryFont without(plain.without("GSUB").build());
    ASSERT_TRUE(without.scanAndLoad());
    EXPECT_FALSE(without->hasVerticalMetrics(0));

    TestFont mort = TestFont::vertical();
    mort.without("GSUB").with("mort",
                              Mort::vertical({{TestFont::kBracket, TestFont::kBracketVertical}}));
    MemoryFont withMort(mort.build());
    ASSERT_TRUE(withMort.scanAndLoad()) << withMort.complaint();
    EXPECT_TRUE(withMort->hasVerticalMetrics(0));
    EXPECT_EQ(withMort->getGlyphID(0x300C, true, 0), TestFont::kBracketVertical);
}

TEST(TrueTypeLoad, MortIsNotReadWhereThereAreVertLookups) {
    TestFont file = TestFont::vertical();
    file.with("mort", Bytes{1});
    MemoryFont font(file.build());
    EXPECT_TRUE(font.scanAndLoad()) << font.complaint();
    EXPECT_TRUE(font.info().tables().mort.empty());
}

} // namespace
} // namespace KWFontService_NS
