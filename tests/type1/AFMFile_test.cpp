#include "type1/AFMFile.h"

#include "common/KWLimits.h"
#include "support/BrokenStreams.h"
#include "support/MetricsFiles.h"
#include "support/Utf8.h"

#include <gtest/gtest.h>

#include <istream>
#include <sstream>
#include <string>
#include <vector>

namespace KWFontService_NS {
namespace {

using KWTest::AfmFile;
using KWTest::BreakingStream;
using KWTest::utf8;

std::string messageOf(const std::optional<Type1FileError>& failure) {
    if (!failure)
        return "none";
    EXPECT_EQ(failure->code, FS_ERROR_FONT_FILE);
    return utf8(failure->detail);
}

/// What a text is read to, and what it complains of. The scan's way of reading, which keeps no
/// glyphs, complains of the same.
struct Read {
    explicit Read(const std::string& text) {
        std::istringstream stream(text);
        complaint = messageOf(readAFM(stream, head, &glyphs));
        std::istringstream again(text);
        EXPECT_EQ(messageOf(readAFM(again, scanned, nullptr)), complaint);
        EXPECT_EQ(scanned.hasKernPairs, head.hasKernPairs);
        EXPECT_EQ(scanned.averageWidth, head.averageWidth);
        EXPECT_EQ(scanned.maximumWidth, head.maximumWidth);
    }
    const std::vector<Type1CharMetric>& records() const { return glyphs.charMetrics; }

    AFMHead head;
    AFMHead scanned;
    AFMGlyphs glyphs;
    std::string complaint;
};

Type1CharMetric metricOf(const std::string& line) {
    const Read read("StartCharMetrics 1\n" + line + "\nEndCharMetrics\n");
    EXPECT_EQ(read.complaint, "none") << line;
    return read.records().empty() ? Type1CharMetric() : read.records()[0];
}

// --- the font as a whole ------------------------------------------------------------------------

TEST(AFMFile, EachKeywordGoesToItsField) {
    const Read read("FontName Test-BoldItalic\nFullName  Test Bold Italic \nFamilyName Test\n"
                    "Weight Demi Bold\nCopyright \xA9 KW\nItalicAngle -12.5\n"
                    "UnderlinePosition -100\nUnderlineThickness 50.5\nIsFixedPitch TRUE\n"
                    "CapHeight 712\nXHeight 523\nAscender 750\nDescender -250\nStdHW 76\n"
                    "StdVW 88\nFontBBox -166 -225 1000 931\nMetricsSet 2\n"
                    "EncodingScheme FontSpecific\n");
    EXPECT_EQ(read.complaint, "none");
    for (const AFMHead& head : {read.head, read.scanned}) {
        EXPECT_EQ(utf8(head.postScriptName), "Test-BoldItalic");
        EXPECT_EQ(utf8(head.fullName), "Test Bold Italic");
        EXPECT_EQ(utf8(head.familyName), "Test");
        EXPECT_EQ(utf8(head.weightName), "Demi Bold");
        EXPECT_EQ(head.weight, 600);
        EXPECT_EQ(head.copyright, UnicodeString(u"\u00A9 KW"));
        EXPECT_EQ(head.italicAngle, -12.5F);
        EXPECT_EQ(head.underlinePosition, -100);
        EXPECT_EQ(head.underlineThickness, 50.5F);
        EXPECT_TRUE(head.isFixedPitch);
        EXPECT_EQ(head.capHeight, 712);
        EXPECT_FLOAT_EQ(head.xHeight, 0.523F);
        EXPECT_EQ(head.ascender, 750);
        EXPECT_EQ(head.descender, -250);
        EXPECT_EQ(head.stdHW, 76);
        EXPECT_EQ(head.stdVW, 88);
        EXPECT_EQ(head.fontBBox, (Type1Box{-166, -225, 1000, 931}));
        EXPECT_EQ(head.metricsSet, 2);
        EXPECT_EQ(utf8(head.encodingName), "FontSpecific");
        EXPECT_EQ(head.encodingScheme, FS_ENCODING_FONT);
    }
}

TEST(AFMFile, WhatIsNotThereIsZeroOrEmpty) {
    const Read read("no keyword here\n");
    EXPECT_EQ(read.complaint, "none");
    EXPECT_TRUE(read.head.postScriptName.isEmpty());
    EXPECT_EQ(read.head.weight, 0);
    EXPECT_EQ(read.head.encodingScheme, FS_ENCODING_STANDARD);
    EXPECT_EQ(read.head.averageWidth, 0);
    EXPECT_TRUE(read.records().empty());
}

TEST(AFMFile, EncodingSchemesAreKnownByTheirWholeNames) {
    const std::vector<std::pair<std::string, int>> rows = {
        {"WinAnsiEncoding", 2}, {"MacRomanEncoding", 3},      {"MacExpertEncoding", 4},
        {"FontSpecific", 5},    {"AdobeStandardEncoding", 1}, {"fontspecific", 1},
        {"FontSpecific X", 1},
    };
    for (const auto& [name, scheme] : rows)
        EXPECT_EQ(int{Read("EncodingScheme " + name + "\n").head.encodingScheme}, scheme) << name;
}

TEST(AFMFile, LinesEndInLFOrCROrBoth) {
    AfmFile file = AfmFile::latin();
    for (const char* lineEnd : {"\n", "\r", "\r\n"}) {
        file.lineEnd = lineEnd;
        const Read read(file.build());
        EXPECT_EQ(read.complaint, "none");
        EXPECT_EQ(utf8(read.head.fullName), "KWTest Bold");
        EXPECT_EQ(read.records().size(), 5U);
        EXPECT_EQ(read.glyphs.kernPairs.size(), 2U);
    }
}

TEST(AFMFile, SeparatorsSurroundKeywordsAndValues) {
    const Read read(" \t FontName\t  a b \t\n\n\t\nFullName\n");
    EXPECT_EQ(utf8(read.head.postScriptName), "a b");
    EXPECT_TRUE(read.head.fullName.isEmpty());
}

TEST(AFMFile, TheLeadingIsWhatTheBoxHasBeyondTheEm) {
    EXPECT_EQ(Read("FontBBox 0 -300 1000 900\n").head.externalLeading, 200);
    EXPECT_EQ(Read("FontBBox 0 -250 1000 750\n").head.externalLeading, 0);
    EXPECT_EQ(Read("FontBBox 0 0 1000 700\n").head.externalLeading, 0);
    EXPECT_EQ(Read("FontName X\n").head.externalLeading, 0);
}

TEST(AFMFile, TheLeadingIsAlwaysANumber) {
    EXPECT_EQ(Read("FontBBox 0 -3e38 0 3e38\n").head.externalLeading, 0);
    EXPECT_EQ(Read("FontBBox 0 -1e300 0 1e300\n").head.externalLeading, 0);
}

TEST(AFMFile, WidthsAreSummedUp) {
    const Read read(AfmFile::latin().build());
    EXPECT_EQ(read.head.maximumWidth, 650);
    EXPECT_EQ(read.head.averageWidth, (250 + 600 + 650 + 300 + 600) / 5.0F);
}

// --- glyphs -------------------------------------------------------------------------------------

TEST(AFMFile, ACharMetricHasItsFields) {
    const Type1CharMetric metric =
        metricOf("C 65 ; WX 722 ; WY 10 ; N A ; B 15 -2 706 674 ; L B AB ;");
    EXPECT_EQ(metric.code, 65);
    EXPECT_EQ(metric.WX, 722);
    EXPECT_EQ(metric.WY, 10);
    EXPECT_EQ(metric.name, "A");
    EXPECT_EQ(metric.left, 15);
    EXPECT_EQ(metric.bottom, -2);
    EXPECT_EQ(metric.right, 706);
    EXPECT_EQ(metric.top, 674);
}

TEST(AFMFile, FieldsNeedNoBlanksAndComeInAnyOrder) {
    const Type1CharMetric metric = metricOf("C -1;N a.alt;W0X 5;;WX 500.7;B 1 2");
    EXPECT_EQ(metric.code, -1);
    EXPECT_EQ(metric.name, "a.alt");
    EXPECT_EQ(metric.WX, 500);
    EXPECT_EQ(metric.left, 1);
    EXPECT_EQ(metric.bottom, 2);
    EXPECT_EQ(metric.top, 0);
}

TEST(AFMFile, AFieldsWordMayBeCutShort) {
    // Words are compared as far as they reach, so the width comes before the height.
    EXPECT_EQ(metricOf("C 1 ; W 500 ;").WX, 500);
    EXPECT_EQ(metricOf("C 1 ; WXX 500 ;").WX, 0);
    EXPECT_EQ(metricOf("C 1 ; Name x ;").name, "");
}

TEST(AFMFile, ALetterOfAWidthElsewhereIsNone) {
    EXPECT_EQ(metricOf("C 87 ; WX 640 ; N W ; B 0 W 0 W ;").WX, 640);
    EXPECT_EQ(metricOf("C 87 ; N W ; WIDE 3 ; W 5 ; WXY 7 ;").WX, 5);
    EXPECT_EQ(metricOf("C 87 ; WX 640 ; N W ; WX 641").WX, 641);
}

TEST(AFMFile, WidthsHaveNoSign) {
    EXPECT_EQ(metricOf("C 1 ; WX -500 ; WY -3 ;").WX, 0);
    EXPECT_EQ(metricOf("C 1 ; WX 99999999999 ;").WX, 2147483647);
}

TEST(AFMFile, CodesOfCHAreHexadecimal) {
    EXPECT_EQ(metricOf("CH <41> ; WX 1 ;").code, 0x41);
    EXPECT_EQ(metricOf("CH 41 ; WX 1 ;").code, 0x41);
    EXPECT_EQ(metricOf("CH <fF> ; WX 7 ;").code, 0xFF);
    EXPECT_EQ(metricOf("CH <fF> ; WX 7 ;").WX, 7);
    EXPECT_EQ(metricOf("CH -1 ; WX 1 ;").code, -1);
}

TEST(AFMFile, NothingOfARecordGoesIntoTheNext) {
    const Read read("StartCharMetrics 2\nC 65 ; WX 5 ; WY 6 ; N A ; B 1 2 3 4 ;\nC 66\n"
                    "EndCharMetrics\n");
    ASSERT_EQ(read.records().size(), 2U);
    EXPECT_EQ(read.records()[0].name, "A");
    const Type1CharMetric& second = read.records()[1];
    EXPECT_EQ(second.code, 66);
    EXPECT_EQ(second.name, "");
    EXPECT_EQ(second.WX + second.WY + second.left + second.bottom + second.right + second.top, 0);
}

TEST(AFMFile, FewerCharMetricsThanAnnouncedAreAsManyAsThereAre) {
    const Read read("StartCharMetrics 9\nC 65 ; WX 500 ;\nC 66 ; WX 700 ;\nEndCharMetrics\n");
    EXPECT_EQ(read.complaint, "none");
    EXPECT_EQ(read.records().size(), 2U);
    EXPECT_EQ(read.head.averageWidth, 600);
}

TEST(AFMFile, MoreCharMetricsThanAnnouncedAreAnErrorWithItsLine) {
    EXPECT_EQ(Read("FontName X\n\nStartCharMetrics 1\nC 65\nC 66\n").complaint, "in line #5 : C");
    EXPECT_EQ(Read("StartCharMetrics 1\rCH <41>\rCH <42>\r").complaint, "in line #3 : CH");
}

// --- what a keyword forbids ---------------------------------------------------------------------

TEST(AFMFile, AKeywordInTheWrongPlaceIsAnErrorWithItsLine) {
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"C 65 ; WX 1 ;\n", "in line #1 : C"},
        {"\r\n\r\nCH <41>\r\n", "in line #3 : CH"},
        {"StartCharMetrics 0\n", "in line #1 : StartCharMetrics"},
        {"StartCharMetrics\n", "in line #1 : StartCharMetrics"},
        {"StartCharMetrics -3\n", "in line #1 : StartCharMetrics"},
        {"StartCharMetrics 1\nStartCharMetrics 1\n", "in line #2 : StartCharMetrics"},
        {"StartKernData\nStartCharMetrics 1\n", "in line #2 : StartCharMetrics"},
        {"StartCharMetrics 1\nEndCharMetrics\nStartCharMetrics 1\n",
         "in line #3 : StartCharMetrics"},
        {"StartCharMetrics 1\nEndCharMetrics\nC 65\n", "in line #3 : C"},
        {"EndCharMetrics\n", "in line #1 : EndCharMetrics"},
        {"FontBBox 1 2 3\n", "in line #1 : FontBBox"},
        {"FontBBox 1 2 3 4 5\n", "in line #1 : FontBBox"},
        {"StartKernData\nStartKernData\n", "in line #2 : StartKernData"},
        {"StartCharMetrics 1\nStartKernData\n", "in line #2 : StartKernData"},
        {"StartKernPairs 1\n", "in line #1 : StartKernPairs"},
        {"StartKernData\nStartKernPairs -1\n", "in line #2 : StartKernPairs"},
        {"StartKernData\nStartKernPairs 1\nKPX A B 1\nEndKernPairs\nStartKernPairs 1\n",
         "in line #5 : StartKernPairs"},
        {"EndKernPairs\n", "in line #1 : EndKernPairs"},
        {"StartKernData\nEndKernPairs\n", "in line #2 : EndKernPairs"},
        {"EndKernData\n", "in line #1 : EndKernData"},
        {"StartKernData\nStartKernPairs 0\nEndKernData\n", "in line #3 : EndKernData"},
    };
    for (const auto& [text, complaint] : rows)
        EXPECT_EQ(Read(text).complaint, complaint) << text;
}

// --- kerning ------------------------------------------------------------------------------------

Read kernPairs(const std::string& lines, int count = 1) {
    return Read("StartKernData\nStartKernPairs " + std::to_string(count) + "\n" + lines +
                "EndKernPairs\nEndKernData\n");
}

TEST(AFMFile, KernPairsAreOfCharacters) {
    const Read read = kernPairs("KPX A Aacute -80\nKPX A B 12.9\nKPX V A -7\n");
    EXPECT_EQ(read.complaint, "none");
    EXPECT_TRUE(read.head.hasKernPairs);
    EXPECT_EQ(read.glyphs.kernPairs.size(), 3U);
    EXPECT_EQ(read.glyphs.kernPairs.find('A', 0xC1), -80);
    EXPECT_EQ(read.glyphs.kernPairs.find('A', 'B'), 12);
    EXPECT_EQ(read.glyphs.kernPairs.find('V', 'A'), -7);
    EXPECT_EQ(read.glyphs.kernPairs.find('B', 'A'), 0);
}

TEST(AFMFile, OfEqualKernPairsTheFirstStays) {
    EXPECT_EQ(kernPairs("KPX A B 1\nKPX A B 2\n").glyphs.kernPairs.find('A', 'B'), 1);
}

TEST(AFMFile, AKernPairWithAnUnknownNameIsDroppedAndCountsAllTheSame) {
    const Read read = kernPairs("KPX A nosuchglyph 1\nKPX nosuchglyph A 1\nKPX A\nKPX\n");
    EXPECT_EQ(read.complaint, "none");
    EXPECT_FALSE(read.head.hasKernPairs);
    EXPECT_TRUE(read.glyphs.kernPairs.empty());
    // Since none was kept, another section of pairs may follow.
    EXPECT_EQ(Read("StartKernData\nStartKernPairs 1\nKPX A x.y 1\nEndKernPairs\nStartKernPairs 1\n"
                   "KPX A B 2\nEndKernPairs\nEndKernData\n")
                  .glyphs.kernPairs.find('A', 'B'),
              2);
}

TEST(AFMFile, MoreKernPairsThanAnnouncedAreTaken) {
    const Read read = kernPairs("KPX A B 1\nKPX A C 2\n", 1);
    EXPECT_EQ(read.complaint, "none");
    EXPECT_EQ(read.glyphs.kernPairs.size(), 2U);
}

// A pair in the wrong place is a pair all the same.
TEST(AFMFile, APairOutsideOfItsSectionIsTakenAndForbidsTheSection) {
    const Read read("KPX A B 5\nStartKernData\n");
    EXPECT_EQ(read.complaint, "none");
    EXPECT_EQ(read.glyphs.kernPairs.find('A', 'B'), 5);
    EXPECT_EQ(Read("KPX A B 5\nStartKernData\nStartKernPairs 1\n").complaint,
              "in line #3 : StartKernPairs");
}

// Sections of one writing direction are not known, so what ends them stands in the wrong place.
TEST(AFMFile, SectionsOfOneDirectionAreDeliberatelyRefusedAtTheirEnd) {
    for (const char* keyword : {"StartKernPairs0", "StartKernPairs1"})
        EXPECT_EQ(Read("StartKernData\n" + std::string(keyword) +
                       " 1\nKPX A B 1\nEndKernPairs\nEndKernData\n")
                      .complaint,
                  "in line #4 : EndKernPairs");
}

// --- bad files ----------------------------------------------------------------------------------

TEST(AFMFile, AnAnnouncedCountNeedsNoMemory) {
    for (const char* count : {"2147483647", "2147483648", "99999999999999999999"}) {
        const Read read(std::string("StartCharMetrics ") + count + "\nC 65 ; WX 500 ;\n");
        EXPECT_EQ(read.complaint, "none") << count;
        EXPECT_EQ(read.records().size(), 1U);
        EXPECT_EQ(kernPairs("KPX A B 1\n", 2147483647).glyphs.kernPairs.size(), 1U);
    }
}

TEST(AFMFile, NoMoreGlyphsAreKeptThanThereAreGlyphIds) {
    std::string text = "StartCharMetrics 2147483648\n";
    for (int i = 0; i < KWCommonNS::kMaxCharMetrics; ++i)
        text += "C 1\n";
    EXPECT_EQ(Read(text).complaint, "none");
    EXPECT_EQ(Read(text + "C 1\n").complaint, "in line #65538 : C");
}

TEST(AFMFile, ALineOfAMegabyteIsCutShort) {
    const std::string longText(std::size_t{1} << 20, 'x');
    const Read read("FullName " + longText + "\nFamilyName F\nStartCharMetrics 1\nC 65 ; N " +
                    longText + " ; WX 5\nEndCharMetrics\nStartKernData\nKPX A " + longText +
                    " 1\n" + longText);
    EXPECT_EQ(read.complaint, "none");
    EXPECT_EQ(utf8(read.head.familyName), "F");
    EXPECT_EQ(read.head.fullName.length(),
              static_cast<int>(KWCommonNS::kMaxMetricsLine - std::string("FullName ").size()));
    EXPECT_LE(read.records().at(0).name.size(), KWCommonNS::kMaxMetricsLine);
    EXPECT_EQ(read.records()[0].WX, 0);
}

TEST(AFMFile, AStreamThatBreaksIsAReadErrorWithoutText) {
    std::istream none(nullptr);
    BreakingStream breaking(AfmFile::latin().build());
    for (std::istream* stream : {&none, static_cast<std::istream*>(&breaking)}) {
        AFMHead head;
        AFMGlyphs glyphs;
        const auto failure = readAFM(*stream, head, &glyphs);
        ASSERT_TRUE(failure);
        EXPECT_EQ(failure->code, FS_ERROR_FONT_READ);
        EXPECT_TRUE(failure->detail.isEmpty());
    }
}

TEST(AFMFile, ASectionThatDoesNotEndHasWhatWasReadOfIt) {
    const Read glyphs("FontBBox 0 0 1000 1200\nStartCharMetrics 5\nC 65 ; WX 500 ;");
    EXPECT_EQ(glyphs.complaint, "none");
    EXPECT_EQ(glyphs.records().size(), 1U);
    EXPECT_EQ(glyphs.head.averageWidth, 500);
    EXPECT_EQ(glyphs.head.externalLeading, 200);
    const Read kerning("StartKernData\nStartKernPairs 5\nKPX A B 1");
    EXPECT_EQ(kerning.complaint, "none");
    EXPECT_EQ(kerning.glyphs.kernPairs.size(), 1U);
}

} // namespace
} // namespace KWFontService_NS
