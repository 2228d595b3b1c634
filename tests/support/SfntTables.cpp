#include "SfntTables.h"

#include "BinarySearchFields.h"

namespace KWTest {

namespace {

constexpr std::uint32_t kFirstOf2020 = 3660681600; // seconds since 1904

Bytes metricsTable(const std::vector<LongMetric>& metrics,
                   const std::vector<std::int16_t>& bearings) {
    Bytes table;
    for (const LongMetric& metric : metrics)
        table.u16(metric.advance).i16(metric.bearing);
    for (const std::int16_t bearing : bearings)
        table.i16(bearing);
    return table;
}

/// The low 16 bits of a size; a true size beyond them cannot be told in the field.
std::uint16_t low16(std::size_t size) {
    return static_cast<std::uint16_t>(size & 0xFFFF);
}

} // namespace

Bytes Head::build() const {
    return Bytes()
        .u32(version, "version")
        .fixed(fontRevision)
        .u32(checkSumAdjustment, "checkSumAdjustment")
        .u32(magicNumber, "magicNumber")
        .u16(flags, "flags")
        .u16(unitsPerEm, "unitsPerEm")
        .u32(0)
        .u32(kFirstOf2020) // created
        .u32(0)
        .u32(kFirstOf2020) // modified
        .i16(xMin, "xMin")
        .i16(yMin, "yMin")
        .i16(xMax, "xMax")
        .i16(yMax, "yMax")
        .u16(macStyle, "macStyle")
        .u16(lowestRecPPEM, "lowestRecPPEM")
        .i16(fontDirectionHint, "fontDirectionHint")
        .i16(indexToLocFormat, "indexToLocFormat")
        .i16(0, "glyphDataFormat");
}

Bytes Hhea::build() const {
    return Bytes()
        .u32(version, "version")
        .i16(ascender, "ascender")
        .i16(descender, "descender")
        .i16(lineGap, "lineGap")
        .u16(advanceWidthMax, "advanceWidthMax")
        .i16(minLeftSideBearing, "minLeftSideBearing")
        .i16(minRightSideBearing, "minRightSideBearing")
        .i16(xMaxExtent, "xMaxExtent")
        .i16(caretSlopeRise, "caretSlopeRise")
        .i16(caretSlopeRun, "caretSlopeRun")
        .i16(0, "caretOffset")
        .zero(8)
        .i16(0, "metricDataFormat")
        .u16(numberOfHMetrics, "numberOfHMetrics");
}

Bytes Vhea::build() const {
    return Bytes()
        .u32(version, "version")
        .i16(vertTypoAscender, "vertTypoAscender")
        .i16(vertTypoDescender, "vertTypoDescender")
        .i16(vertTypoLineGap, "vertTypoLineGap")
        .u16(advanceHeightMax, "advanceHeightMax")
        .i16(minTopSideBearing, "minTopSideBearing")
        .i16(minBottomSideBearing, "minBottomSideBearing")
        .i16(yMaxExtent, "yMaxExtent")
        .i16(caretSlopeRise, "caretSlopeRise")
        .i16(caretSlopeRun, "caretSlopeRun")
        .i16(0, "caretOffset")
        .zero(8)
        .i16(0, "metricDataFormat")
        .u16(numOfLongVerMetrics, "numOfLongVerMetrics");
}

Bytes Maxp::build() const {
    Bytes table;
    table.u32(version, "version").u16(numGlyphs, "numGlyphs");
    if (version != 0x00010000)
        return table;
    return table.u16(maxPoints)
        .u16(maxContours)
        .u16(maxCompositePoints)
        .u16(maxCompositeContours)
        .u16(maxZones)
        .u16(maxTwilightPoints)
        .u16(maxStorage)
        .u16(maxFunctionDefs)
        .u16(maxInstructionDefs)
        .u16(maxStackElements)
        .u16(maxSizeOfInstructions)
        .u16(maxComponentElements)
        .u16(maxComponentDepth);
}

Bytes OS2::build() const {
    Bytes table;
    table.u16(version, "version")
        .i16(xAvgCharWidth, "xAvgCharWidth")
        .u16(usWeightClass, "usWeightClass")
        .u16(usWidthClass, "usWidthClass")
        .u16(fsType, "fsType")
        .i16(ySubscriptXSize)
        .i16(ySubscriptYSize)
        .i16(ySubscriptXOffset)
        .i16(ySubscriptYOffset)
        .i16(ySuperscriptXSize)
        .i16(ySuperscriptYSize)
        .i16(ySuperscriptXOffset)
        .i16(ySuperscriptYOffset)
        .i16(yStrikeoutSize)
        .i16(yStrikeoutPosition)
        .i16(sFamilyClass, "sFamilyClass")
        .label("panose")
        .bytes(panose)
        .u32(ulUnicodeRange1, "ulUnicodeRange1")
        .u32(ulUnicodeRange2)
        .u32(ulUnicodeRange3)
        .u32(ulUnicodeRange4)
        .tag(achVendID)
        .u16(fsSelection, "fsSelection")
        .u16(usFirstCharIndex)
        .u16(usLastCharIndex)
        .i16(sTypoAscender, "sTypoAscender")
        .i16(sTypoDescender, "sTypoDescender")
        .i16(sTypoLineGap, "sTypoLineGap")
        .u16(usWinAscent, "usWinAscent")
        .u16(usWinDescent, "usWinDescent");
    if (version >= 1)
        table.u32(ulCodePageRange1, "ulCodePageRange1").u32(ulCodePageRange2, "ulCodePageRange2");
    if (version >= 2) {
        table.i16(sxHeight, "sxHeight")
            .i16(sCapHeight, "sCapHeight")
            .u16(usDefaultChar, "usDefaultChar")
            .u16(usBreakChar)
            .u16(usMaxContext);
    }
    if (version >= 5)
        table.u16(usLowerOpticalPointSize).u16(usUpperOpticalPointSize);
    return table;
}

Bytes Post::build() const {
    return Bytes()
        .u32(version, "version")
        .fixed(italicAngle)
        .i16(underlinePosition, "underlinePosition")
        .i16(underlineThickness, "underlineThickness")
        .u32(isFixedPitch, "isFixedPitch")
        .u32(minMemType42)
        .u32(maxMemType42)
        .u32(minMemType1)
        .u32(maxMemType1)
        .bytes(tail);
}

Bytes Hmtx::build() const {
    return metricsTable(metrics, bearings);
}

Bytes Vmtx::build() const {
    return metricsTable(metrics, bearings);
}

Bytes Vorg::build() const {
    Bytes table;
    table.u16(majorVersion)
        .u16(minorVersion)
        .i16(defaultVertOriginY, "defaultVertOriginY")
        .u16(numVertOriginYMetrics.value_or(low16(origins.size())), "numVertOriginYMetrics");
    for (const Origin& origin : origins)
        table.u16(origin.glyphIndex).i16(origin.vertOriginY);
    return table;
}

NameRecord windowsName(std::uint16_t nameID, std::u16string_view text, std::uint16_t languageID,
                       std::uint16_t encodingID) {
    return {.platformID = 3,
            .encodingID = encodingID,
            .languageID = languageID,
            .nameID = nameID,
            .string = Bytes().utf16be(text)};
}

NameRecord windowsBytesName(std::uint16_t nameID, std::string_view codes, std::uint16_t encodingID,
                            std::uint16_t languageID) {
    Bytes units;
    for (const char code : codes)
        units.u16(static_cast<std::uint8_t>(code));
    return {.platformID = 3,
            .encodingID = encodingID,
            .languageID = languageID,
            .nameID = nameID,
            .string = units};
}

NameRecord macName(std::uint16_t nameID, std::string_view codes, std::uint16_t languageID,
                   std::uint16_t encodingID) {
    return {.platformID = 1,
            .encodingID = encodingID,
            .languageID = languageID,
            .nameID = nameID,
            .string = Bytes::ofText(codes)};
}

Name Name::english(std::u16string_view family, std::u16string_view subfamily) {
    std::u16string full(family);
    full.append(u" ").append(subfamily);
    std::u16string postScript;
    for (const char16_t unit : family) {
        if (unit != u' ')
            postScript += unit;
    }
    postScript.append(u"-").append(subfamily);
    return {.records = {windowsName(1, family), windowsName(2, subfamily), windowsName(3, full),
                        windowsName(4, full), windowsName(6, postScript)}};
}

Bytes Name::build() const {
    constexpr std::size_t kHeaderSize = 6;
    constexpr std::size_t kRecordSize = 12;
    Bytes table;
    Bytes storage;
    table.u16(format, "format")
        .u16(count.value_or(low16(records.size())), "count")
        .u16(stringOffset.value_or(low16(kHeaderSize + kRecordSize * records.size())),
             "stringOffset");
    for (const NameRecord& record : records) {
        table.u16(record.platformID)
            .u16(record.encodingID)
            .u16(record.languageID)
            .u16(record.nameID)
            .u16(record.length.value_or(low16(record.string.size())))
            .u16(record.offset.value_or(low16(storage.size())));
        storage.bytes(record.string);
    }
    return table.bytes(storage);
}

Bytes KernSubtable::build() const {
    Bytes content = body;
    if (coverage >> 8 == 0) {
        content = Bytes().u16(nPairs.value_or(low16(pairs.size())));
        writeBinarySearchFields(content, pairs.size(), 6);
        for (const KernPair& pair : pairs)
            content.u16(pair.left).u16(pair.right).i16(pair.value);
    }
    constexpr std::size_t kHeaderSize = 6;
    return Bytes()
        .u16(version)
        .u16(length.value_or(low16(kHeaderSize + content.size())))
        .u16(coverage)
        .bytes(content);
}

Bytes Kern::build() const {
    Bytes table;
    table.u16(version, "version").u16(nTables.value_or(low16(subtables.size())), "nTables");
    for (const KernSubtable& subtable : subtables)
        table.bytes(subtable.build());
    return table;
}

Bytes Cvt::build() const {
    Bytes table;
    for (const std::int16_t value : values)
        table.i16(value);
    return table;
}

} // namespace KWTest
