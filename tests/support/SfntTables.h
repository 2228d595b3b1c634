#pragma once

#include "Bytes.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

// The small tables of OpenType as plain values. Each field bears its name of the OpenType
// specification and has an honest default; name those a test is about:
//
//     font.table("OS/2", OS2{.version = 1, .usWeightClass = 5});
//
// An optional count or length is worked out unless it is given; given, it may lie. A truncated
// table is `OS2{}.build().truncate(50)`.

namespace KWTest {

/// `head`, 54 bytes.
struct Head {
    std::uint32_t version = 0x00010000;
    double fontRevision = 1.0;
    std::uint32_t checkSumAdjustment = 0; // SfntBuilder sets it right
    std::uint32_t magicNumber = 0x5F0F3CF5;
    std::uint16_t flags = 0x0003;
    std::uint16_t unitsPerEm = 1000;
    std::int16_t xMin = 0;
    std::int16_t yMin = -200;
    std::int16_t xMax = 1000;
    std::int16_t yMax = 800;
    std::uint16_t macStyle = 0;
    std::uint16_t lowestRecPPEM = 8;
    std::int16_t fontDirectionHint = 2;
    std::int16_t indexToLocFormat = 0;

    Bytes build() const;
};

/// `hhea`, 36 bytes.
struct Hhea {
    std::uint32_t version = 0x00010000;
    std::int16_t ascender = 800;
    std::int16_t descender = -200;
    std::int16_t lineGap = 0;
    std::uint16_t advanceWidthMax = 1000;
    std::int16_t minLeftSideBearing = 0;
    std::int16_t minRightSideBearing = 0;
    std::int16_t xMaxExtent = 1000;
    std::int16_t caretSlopeRise = 1;
    std::int16_t caretSlopeRun = 0;
    std::uint16_t numberOfHMetrics = 1;

    Bytes build() const;
};

/// `vhea`, 36 bytes.
struct Vhea {
    std::uint32_t version = 0x00010000;
    std::int16_t vertTypoAscender = 500;
    std::int16_t vertTypoDescender = -500;
    std::int16_t vertTypoLineGap = 0;
    std::uint16_t advanceHeightMax = 1000;
    std::int16_t minTopSideBearing = 0;
    std::int16_t minBottomSideBearing = 0;
    std::int16_t yMaxExtent = 1000;
    std::int16_t caretSlopeRise = 0;
    std::int16_t caretSlopeRun = 1;
    std::uint16_t numOfLongVerMetrics = 1;

    Bytes build() const;
};

/// `maxp`: 32 bytes as version 1.0, 6 bytes as version 0.5 (0x00005000).
struct Maxp {
    std::uint32_t version = 0x00010000;
    std::uint16_t numGlyphs = 1;
    std::uint16_t maxPoints = 64;
    std::uint16_t maxContours = 8;
    std::uint16_t maxCompositePoints = 64;
    std::uint16_t maxCompositeContours = 8;
    std::uint16_t maxZones = 1;
    std::uint16_t maxTwilightPoints = 0;
    std::uint16_t maxStorage = 0;
    std::uint16_t maxFunctionDefs = 0;
    std::uint16_t maxInstructionDefs = 0;
    std::uint16_t maxStackElements = 0;
    std::uint16_t maxSizeOfInstructions = 0;
    std::uint16_t maxComponentElements = 4;
    std::uint16_t maxComponentDepth = 4;

    Bytes build() const;
};

/// `OS/2`, versions 0 to 5: the version decides how many fields are written.
struct OS2 {
    std::uint16_t version = 4;
    std::int16_t xAvgCharWidth = 500;
    std::uint16_t usWeightClass = 400;
    std::uint16_t usWidthClass = 5;
    std::uint16_t fsType = 0;
    std::int16_t ySubscriptXSize = 650;
    std::int16_t ySubscriptYSize = 600;
    std::int16_t ySubscriptXOffset = 0;
    std::int16_t ySubscriptYOffset = 75;
    std::int16_t ySuperscriptXSize = 650;
    std::int16_t ySuperscriptYSize = 600;
    std::int16_t ySuperscriptXOffset = 0;
    std::int16_t ySuperscriptYOffset = 350;
    std::int16_t yStrikeoutSize = 50;
    std::int16_t yStrikeoutPosition = 300;
    std::int16_t sFamilyClass = 0; // class in the high byte, subclass in the low byte
    std::array<std::uint8_t, 10> panose{};
    std::uint32_t ulUnicodeRange1 = 3;
    std::uint32_t ulUnicodeRange2 = 0;
    std::uint32_t ulUnicodeRange3 = 0;
    std::uint32_t ulUnicodeRange4 = 0;
    std::string_view achVendID = "TEST";
    std::uint16_t fsSelection = 0x0040;
    std::uint16_t usFirstCharIndex = 0x0020;
    std::uint16_t usLastCharIndex = 0x00C1;
    std::int16_t sTypoAscender = 800;
    std::int16_t sTypoDescender = -200;
    std::int16_t sTypoLineGap = 0;
    std::uint16_t usWinAscent = 800;
    std::uint16_t usWinDescent = 200;
    std::uint32_t ulCodePageRange1 = 1; // version 1 and later
    std::uint32_t ulCodePageRange2 = 0;
    std::int16_t sxHeight = 500; // version 2 and later
    std::int16_t sCapHeight = 700;
    std::uint16_t usDefaultChar = 0;
    std::uint16_t usBreakChar = 0x0020;
    std::uint16_t usMaxContext = 2;
    std::uint16_t usLowerOpticalPointSize = 0; // version 5
    std::uint16_t usUpperOpticalPointSize = 0xFFFF;

    Bytes build() const;
};

/// `post`, the 32-byte header; `tail` holds what formats 2.0 and 2.5 add.
struct Post {
    std::uint32_t version = 0x00030000;
    double italicAngle = 0.0;
    std::int16_t underlinePosition = -100;
    std::int16_t underlineThickness = 50;
    std::uint32_t isFixedPitch = 0;
    std::uint32_t minMemType42 = 0;
    std::uint32_t maxMemType42 = 0;
    std::uint32_t minMemType1 = 0;
    std::uint32_t maxMemType1 = 0;
    Bytes tail{};

    Bytes build() const;
};

/// One metric of `hmtx` (advance width, left side bearing) or `vmtx` (advance height, top side
/// bearing).
struct LongMetric {
    std::uint16_t advance = 0;
    std::int16_t bearing = 0;
};

/// `hmtx`. `hhea` must name `metrics.size()` as `numberOfHMetrics`.
struct Hmtx {
    std::vector<LongMetric> metrics{};
    std::vector<std::int16_t> bearings{}; // of the glyphs after the last full metric

    Bytes build() const;
};

/// `vmtx`. `vhea` must name `metrics.size()` as `numOfLongVerMetrics`.
struct Vmtx {
    std::vector<LongMetric> metrics{};
    std::vector<std::int16_t> bearings{};

    Bytes build() const;
};

/// `VORG`.
struct Vorg {
    struct Origin {
        std::uint16_t glyphIndex = 0;
        std::int16_t vertOriginY = 0;
    };

    std::uint16_t majorVersion = 1;
    std::uint16_t minorVersion = 0;
    std::int16_t defaultVertOriginY = 880;
    std::vector<Origin> origins{}; // ascending glyph ids
    std::optional<std::uint16_t> numVertOriginYMetrics{};

    Bytes build() const;
};

/// One record of `name`. `string` holds the stored bytes, whatever they are; the functions below
/// make the usual ones.
struct NameRecord {
    std::uint16_t platformID = 3;
    std::uint16_t encodingID = 1;
    std::uint16_t languageID = 0x0409;
    std::uint16_t nameID = 1;
    Bytes string{};
    std::optional<std::uint16_t> length{};
    std::optional<std::uint16_t> offset{}; // from the start of the string storage
};

/// A Windows name in UTF-16; the encoding is Unicode unless told otherwise.
NameRecord windowsName(std::uint16_t nameID, std::u16string_view text,
                       std::uint16_t languageID = 0x0409, std::uint16_t encodingID = 1);
/// A Windows name of a legacy encoding: each byte of `codes` stored as one 16-bit unit.
NameRecord windowsBytesName(std::uint16_t nameID, std::string_view codes, std::uint16_t encodingID,
                            std::uint16_t languageID);
/// A Macintosh name in the bytes of its script; Roman, English unless told otherwise.
NameRecord macName(std::uint16_t nameID, std::string_view codes, std::uint16_t languageID = 0,
                   std::uint16_t encodingID = 0);

/// `name`, format 0. Records stand in the order given.
struct Name {
    std::uint16_t format = 0;
    std::vector<NameRecord> records{};
    std::optional<std::uint16_t> count{};
    std::optional<std::uint16_t> stringOffset{};

    /// Family, subfamily, unique id, full and PostScript name, as Windows Unicode English.
    static Name english(std::u16string_view family, std::u16string_view subfamily = u"Regular");

    Bytes build() const;
};

/// One pair of a `kern` subtable of format 0.
struct KernPair {
    std::uint16_t left = 0;
    std::uint16_t right = 0;
    std::int16_t value = 0;
};

/// One subtable of `kern` version 0. The format is the high byte of `coverage`; bit 0 is
/// horizontal, bit 1 minimum values, bit 2 cross-stream, bit 3 override.
struct KernSubtable {
    std::uint16_t version = 0;
    std::uint16_t coverage = 0x0001;
    std::vector<KernPair> pairs{}; // written for format 0, in the order given
    Bytes body{};                  // what follows the 6-byte header for any other format
    std::optional<std::uint16_t> length{};
    std::optional<std::uint16_t> nPairs{};

    Bytes build() const;
};

/// `kern` version 0.
struct Kern {
    std::uint16_t version = 0;
    std::vector<KernSubtable> subtables{};
    std::optional<std::uint16_t> nTables{};

    Bytes build() const;
};

/// `cvt `.
struct Cvt {
    std::vector<std::int16_t> values{};

    Bytes build() const;
};

} // namespace KWTest
