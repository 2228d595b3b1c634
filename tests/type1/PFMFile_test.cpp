#include "type1/PFMFile.h"

#include "common/KWLimits.h"
#include "support/MetricsFiles.h"
#include "support/Utf8.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace KWFontService_NS {
namespace {

using KWTest::Bytes;
using KWTest::patchLittle16;
using KWTest::patchLittle32;
using KWTest::PfmFile;
using KWTest::utf8;

struct Read {
    explicit Read(const Bytes& bytes, bool mendRange = true) {
        std::istringstream stream(bytes.str());
        const auto failure = readPFM(stream, mendRange, file);
        if (failure) {
            EXPECT_EQ(failure->code, FS_ERROR_FONT_READ);
            complaint = utf8(failure->detail);
        }
        failed = failure.has_value();
    }
    explicit Read(const PfmFile& built, bool mendRange = true) : Read(built.build(), mendRange) {}

    PFMFile file;
    bool failed = false;
    std::string complaint = "none";
};

std::size_t little32(const Bytes& bytes, std::size_t at) {
    return std::size_t{bytes[at]} | std::size_t{bytes[at + 1]} << 8 |
           std::size_t{bytes[at + 2]} << 16;
}

TEST(PFMFile, EachFieldIsReadFromItsPlace) {
    PfmFile built = PfmFile::latin();
    built.italic = true;
    built.charSet = 238;
    built.pixWidth = 600;
    built.pitchAndFamily = 0x31;
    built.breakChar = 3;
    const Read read(built);
    ASSERT_FALSE(read.failed);
    const PFMFile& file = read.file;
    EXPECT_EQ(utf8(file.copyright), "Copyright KWTest");
    EXPECT_EQ(file.dfAscent, 800);
    EXPECT_EQ(file.dfInternalLeading, 30);
    EXPECT_TRUE(file.dfItalic);
    EXPECT_EQ(file.dfWeight, 700);
    EXPECT_EQ(file.dfCharSet, 238);
    EXPECT_EQ(file.dfPixWidth, 600);
    EXPECT_EQ(file.dfPixHeight, 1000);
    EXPECT_EQ(file.dfPitchAndFamily, 0x31);
    EXPECT_EQ(file.dfAvgWidth, 510);
    EXPECT_EQ(file.dfMaxWidth, 1020);
    EXPECT_EQ(file.dfFirstChar, 32);
    EXPECT_EQ(file.dfLastChar, 255);
    EXPECT_EQ(file.dfBreakChar, 3);
    EXPECT_EQ(utf8(file.deviceName), "PostScript");
    EXPECT_EQ(utf8(file.faceName), "KWTest");
    EXPECT_EQ(utf8(file.postScriptName), "KWTest-Bold");
    EXPECT_FLOAT_EQ(file.xHeight, 0.45F);
    ASSERT_TRUE(file.extents);
    EXPECT_EQ(file.extents->size(), 224U);
    EXPECT_EQ(file.kernPairs.find('A', 'B'), -80);
    EXPECT_EQ(file.kernPairs.find('B', 'A'), -40);
    EXPECT_EQ(file.kernPairs.size(), 2U);
}

TEST(PFMFile, TheCopyrightHasSixtyBytesAtMost) {
    PfmFile built;
    built.copyright = std::string(60, 'c');
    EXPECT_EQ(utf8(Read(built).file.copyright), std::string(60, 'c'));
    built.copyright = "abc";
    EXPECT_EQ(utf8(Read(built).file.copyright), "abc");
}

TEST(PFMFile, TheXHeightIsInEm) {
    PfmFile built;
    built.masterUnits = 2000;
    built.xHeight = 900;
    EXPECT_FLOAT_EQ(Read(built).file.xHeight, 0.45F);
    built.masterUnits = 0;
    EXPECT_EQ(Read(built).file.xHeight, 0);
    built.hasTextMetrics = false;
    EXPECT_EQ(Read(built).file.xHeight, 0);
}

TEST(PFMFile, WidthsAreByCode) {
    const PFMFile file = Read(PfmFile::latin()).file;
    EXPECT_EQ(file.widthOf(32), 332);
    EXPECT_EQ(file.widthOf(255), 555);
    EXPECT_EQ(file.widthOf(31), 0);
    EXPECT_EQ(file.widthOf(256), 0);
    EXPECT_EQ(file.widthOf(-1), 0);
}

TEST(PFMFile, WithoutExtentsAllCharactersAreEquallyWide) {
    PfmFile built;
    built.pixWidth = 600;
    const PFMFile file = Read(built).file;
    EXPECT_FALSE(file.extents);
    EXPECT_EQ(file.widthOf(32), 600);
    EXPECT_EQ(file.widthOf(31), 0);
}

TEST(PFMFile, OfEqualKernPairsTheFirstStays) {
    PfmFile built = PfmFile::latin();
    built.kernPairs = {{'A', 'B', -1}, {'A', 'B', 2}, {200, 255, -32768}};
    const PFMFile file = Read(built).file;
    EXPECT_EQ(file.kernPairs.find('A', 'B'), -1);
    EXPECT_EQ(file.kernPairs.find(200, 255), -32768);
}

TEST(PFMFile, AFileWithoutNamesHasNone) {
    PfmFile built = PfmFile::latin();
    built.hasNames = false;
    const Read read(built);
    EXPECT_FALSE(read.failed);
    EXPECT_TRUE(read.file.faceName.isEmpty());
    EXPECT_TRUE(read.file.postScriptName.isEmpty());
    EXPECT_EQ(read.file.widthOf('A'), 365);
}

// --- the range of characters --------------------------------------------------------------------

struct RangeRow {
    int first;
    int last;
    int mendedFirst;
    int mendedLast;
};

class PFMRange : public testing::TestWithParam<RangeRow> {};

TEST_P(PFMRange, IsMendedUnlessAnErrorIsPending) {
    const RangeRow& row = GetParam();
    PfmFile built;
    built.firstChar = row.first;
    built.lastChar = row.last;
    const PFMFile mended = Read(built, true).file;
    EXPECT_EQ(mended.dfFirstChar, row.mendedFirst);
    EXPECT_EQ(mended.dfLastChar, row.mendedLast);
    const PFMFile plain = Read(built, false).file;
    EXPECT_EQ(plain.dfFirstChar, row.first);
    EXPECT_EQ(plain.dfLastChar, row.last);
}

INSTANTIATE_TEST_SUITE_P(Rows, PFMRange,
                         testing::Values(RangeRow{32, 255, 32, 255}, RangeRow{32, 33, 32, 33},
                                         RangeRow{33, 255, 32, 255}, RangeRow{32, 32, 32, 255},
                                         RangeRow{200, 100, 32, 255}, RangeRow{0, 0, 32, 255},
                                         RangeRow{0, 20, 32, 20}));

TEST(PFMFile, ARangeThatStaysInvertedHasNoWidths) {
    // Mending leaves a last code that was above the first one.
    for (const bool mend : {true, false}) {
        Bytes bytes = PfmFile::latin().build();
        bytes.patchU8At(PfmFile::kFirstCharAt, mend ? 5 : 200);
        bytes.patchU8At(PfmFile::kLastCharAt, 20);
        const Read read(bytes, mend);
        ASSERT_FALSE(read.failed) << read.complaint;
        ASSERT_TRUE(read.file.extents);
        EXPECT_TRUE(read.file.extents->empty());
        for (int code = 0; code < 256; ++code)
            EXPECT_EQ(read.file.widthOf(code), 0);
    }
}

// The widths are those of the range that the file announces, and taken for those of the mended one.
TEST(PFMFile, TheWidthsOfAMendedRangeAreDeliberatelyCountedFromItsStart) {
    PfmFile built;
    built.firstChar = 65;
    for (int code = built.firstChar; code <= built.lastChar; ++code)
        built.extents.push_back(static_cast<std::uint16_t>(300 + code));
    EXPECT_EQ(Read(built).complaint, "Extent Table read error") << "it is 33 widths short";
    const Read read(built.build().zero(2 * 33));
    ASSERT_FALSE(read.failed) << read.complaint;
    EXPECT_EQ(read.file.widthOf(32), 300 + 65);
    EXPECT_EQ(read.file.widthOf(65), 300 + 98);
}

// --- files that are too short -------------------------------------------------------------------

TEST(PFMFile, EachPartThatIsTooShortHasItsMessage) {
    const Bytes whole = PfmFile::latin().build();
    const auto cutAt = [&](std::size_t size) {
        return Read(Bytes(whole).truncate(size)).complaint;
    };
    EXPECT_EQ(cutAt(0), "");
    EXPECT_EQ(cutAt(116), "");
    EXPECT_EQ(cutAt(117), "Extension read error");
    EXPECT_EQ(cutAt(146), "Extension read error");
    EXPECT_EQ(cutAt(147), "Extension Text Metrics read error");
    const std::size_t names = little32(whole, PfmFile::kDeviceAt);
    EXPECT_EQ(cutAt(names - 1), "Extension Text Metrics read error");
    EXPECT_EQ(cutAt(names), "PostScript Information read error");
    const std::size_t extents = little32(whole, PfmFile::kExtentTableAt);
    EXPECT_EQ(cutAt(extents - 1), "PostScript Information read error");
    EXPECT_EQ(cutAt(extents), "Extent Table read error");
    const std::size_t kerning = little32(whole, PfmFile::kPairKernTableAt);
    EXPECT_EQ(cutAt(kerning - 1), "Extent Table read error");
    EXPECT_EQ(cutAt(kerning), "Pair Kerning Table read error");
    EXPECT_EQ(cutAt(whole.size() - 1), "Pair Kerning Table read error");
    EXPECT_EQ(cutAt(whole.size()), "none");
}

TEST(PFMFile, AnOffsetPastTheEndHasTheMessageOfItsPart) {
    const auto withOffset = [](std::size_t place, std::uint32_t offset) {
        Bytes bytes = PfmFile::latin().build();
        return Read(patchLittle32(bytes, place, offset)).complaint;
    };
    for (const std::uint32_t offset : {5000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(withOffset(PfmFile::kExtMetricsAt, offset), "Extension Text Metrics read error");
        EXPECT_EQ(withOffset(PfmFile::kDeviceAt, offset), "PostScript Information read error");
        EXPECT_EQ(withOffset(PfmFile::kExtentTableAt, offset), "Extent Table read error");
        EXPECT_EQ(withOffset(PfmFile::kPairKernTableAt, offset), "Pair Kerning Table read error");
    }
    // 0 says that there is none, but for the pairs, whose number says that.
    EXPECT_EQ(withOffset(PfmFile::kExtMetricsAt, 0), "none");
    EXPECT_EQ(withOffset(PfmFile::kDeviceAt, 0), "none");
    EXPECT_EQ(withOffset(PfmFile::kExtentTableAt, 0), "none");
}

// Their number says whether there are pairs, so an offset of 0 is the start of the file.
TEST(PFMFile, PairsWithoutAnOffsetAreDeliberatelyReadFromTheStart) {
    Bytes bytes = PfmFile::latin().build();
    const Read read(patchLittle32(bytes, PfmFile::kPairKernTableAt, 0));
    ASSERT_FALSE(read.failed) << read.complaint;
    EXPECT_EQ(read.file.kernPairs.size(), 2U);
    EXPECT_EQ(read.file.kernPairs.find('C', 'o'), 'y' << 8 | 'p') << "of the copyright";
}

TEST(PFMFile, MorePairsThanThereAreIsAnError) {
    Bytes bytes = PfmFile::latin().build();
    const std::size_t count = little32(bytes, PfmFile::kExtMetricsAt) + 48;
    EXPECT_EQ(Read(patchLittle16(bytes, count, 0xFFFF)).complaint, "Pair Kerning Table read error");
    EXPECT_EQ(Read(patchLittle16(bytes, count, 1)).file.kernPairs.size(), 1U);
}

TEST(PFMFile, ANameWithoutAnEndIsAnError) {
    PfmFile built = PfmFile::latin();
    built.faceName = std::string(KWCommonNS::kMaxPFMName, 'f');
    EXPECT_FALSE(Read(built).failed);
    built.faceName += 'f';
    EXPECT_EQ(Read(built).complaint, "PostScript Information read error");
    built.faceName = std::string(std::size_t{1} << 20, 'f');
    EXPECT_EQ(Read(built).complaint, "PostScript Information read error");
}

TEST(PFMFile, AStreamThatDoesNotReadIsToldWithoutDetail) {
    std::istream none(nullptr);
    PFMFile file;
    const auto failure = readPFM(none, true, file);
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->code, FS_ERROR_FONT_READ);
    EXPECT_TRUE(failure->detail.isEmpty());
}

} // namespace
} // namespace KWFontService_NS
