#include "fonts/TTI_Header.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

constexpr std::size_t kHeadSize = 54;
constexpr std::size_t kHheaSize = 36;
constexpr std::size_t kOS2Size = 100;
constexpr std::size_t kPostSize = 32;
constexpr std::size_t kMaxpSize = 32;
constexpr std::uint32_t kMaxpVersion1 = 0x00010000;

} // namespace

bool TTI_Header::readHead(SfntReader& reader) {
    const TTI_TableRecord* table = reader.table(sfntTag("head"));
    if (table == nullptr)
        return reader.fail(FS_ERROR_FONT_FILE, "'head' table not found");
    std::array<std::uint8_t, kHeadSize> bytes;
    if (!reader.read(table->offset, bytes))
        return reader.fail(FS_ERROR_FONT_READ, "'head' table read error");
    unitsPerEm = ByteView::loadI16(&bytes[18]);
    xMin = ByteView::loadI16(&bytes[36]);
    yMin = ByteView::loadI16(&bytes[38]);
    xMax = ByteView::loadI16(&bytes[40]);
    yMax = ByteView::loadI16(&bytes[42]);
    macStyle = ByteView::loadU16(&bytes[44]);
    indexToLocFormat = ByteView::loadI16(&bytes[50]);
    return true;
}

bool TTI_Header::readHhea(SfntReader& reader) {
    const TTI_TableRecord* table = reader.table(sfntTag("hhea"));
    if (table == nullptr)
        return reader.fail(FS_ERROR_FONT_FILE, "'hhea' table not found");
    std::array<std::uint8_t, kHheaSize> bytes;
    if (!reader.read(table->offset, bytes))
        return reader.fail(FS_ERROR_FONT_READ, "'hhea' table read error");
    ascender = ByteView::loadI16(&bytes[4]);
    descender = ByteView::loadI16(&bytes[6]);
    lineGap = ByteView::loadI16(&bytes[8]);
    numberOfHMetrics = ByteView::loadU16(&bytes[34]);
    return true;
}

bool TTI_Header::readOS2(SfntReader& reader, const TTI_TableRecord& table) {
    hasOS2 = true;
    std::array<std::uint8_t, kOS2Size> bytes{};
    const std::size_t length = std::min<std::size_t>(table.length, kOS2Size);
    if (!reader.read(table.offset, std::span(bytes).first(length)))
        return reader.fail(FS_ERROR_FONT_READ, "'OS/2' table read error");
    os2Version = ByteView::loadU16(&bytes[0]);
    xAvgCharWidth = ByteView::loadI16(&bytes[2]);
    usWeightClass = ByteView::loadU16(&bytes[4]);
    // Early fonts counted the weight classes from 1 to 9.
    if (os2Version <= 2 && usWeightClass <= 9)
        usWeightClass *= 100;
    usWidthClass = ByteView::loadU16(&bytes[6]);
    fsType = ByteView::loadU16(&bytes[8]);
    familyClass = bytes[30];
    familySubclass = bytes[31];
    std::copy_n(&bytes[32], panose.size(), panose.begin());
    isFixedPitch = panose[FamilyType] == 2 && panose[Proportion] == 9;
    for (std::size_t i = 0; i < ulUnicodeRange.size(); ++i)
        ulUnicodeRange[i] = ByteView::loadU32(&bytes[42 + 4 * i]);
    fsSelection = ByteView::loadU16(&bytes[62]);
    usFirstCharIndex = ByteView::loadU16(&bytes[64]);
    usLastCharIndex = ByteView::loadU16(&bytes[66]);
    sTypoAscender = ByteView::loadI16(&bytes[68]);
    sTypoDescender = ByteView::loadI16(&bytes[70]);
    sTypoLineGap = ByteView::loadI16(&bytes[72]);
    usWinAscent = ByteView::loadU16(&bytes[74]);
    usWinDescent = ByteView::loadU16(&bytes[76]);
    if (os2Version != 0) {
        ulCodePageRange1 = ByteView::loadU32(&bytes[78]);
        ulCodePageRange2 = ByteView::loadU32(&bytes[82]);
    }
    if (os2Version >= 2) {
        sxHeight = ByteView::loadI16(&bytes[86]);
        sCapHeight = ByteView::loadI16(&bytes[88]);
    }
    return true;
}

void TTI_Header::synthesizeOS2() {
    const bool bold = (macStyle & 1) != 0;
    const bool italic = (macStyle & 2) != 0;
    usWeightClass = bold ? 700 : 400;
    usWidthClass = 5;
    ulUnicodeRange = {3, 0, 0, 0};
    fsSelection = static_cast<std::uint16_t>((bold ? 0x20 : 0) | (italic ? 1 : 0));
    sTypoAscender = ascender;
    sTypoDescender = descender;
    sTypoLineGap = lineGap;
}

void TTI_Header::completeWinMetrics() {
    if (usWinAscent != 0)
        return;
    usWinAscent = static_cast<std::uint16_t>(ascender);
    usWinDescent = static_cast<std::uint16_t>(std::abs(int{descender}));
}

bool TTI_Header::readPost(SfntReader& reader, const TTI_TableRecord& table) {
    std::array<std::uint8_t, kPostSize> bytes;
    if (!reader.read(table.offset, bytes))
        return reader.fail(FS_ERROR_FONT_READ, "'post' table read error");
    constexpr float kFixedUnit = 1.52587890625e-05F;
    italicAngle =
        static_cast<float>(static_cast<std::int32_t>(ByteView::loadU32(&bytes[4]))) * kFixedUnit;
    underlinePosition = ByteView::loadI16(&bytes[8]);
    underlineThickness = ByteView::loadI16(&bytes[10]);
    if (!hasOS2)
        isFixedPitch = ByteView::loadU32(&bytes[12]) != 0;
    return true;
}

bool TTI_Header::readVhea(SfntReader& reader, const TTI_TableRecord& table) {
    std::array<std::uint8_t, kHheaSize> bytes;
    if (!reader.read(table.offset, bytes))
        return reader.fail(FS_ERROR_FONT_READ, "'vhea' table read error");
    vertAscender = ByteView::loadI16(&bytes[4]);
    vertDescender = ByteView::loadI16(&bytes[6]);
    vertLineGap = ByteView::loadI16(&bytes[8]);
    numOfLongVerMetrics = ByteView::loadU16(&bytes[34]);
    return true;
}

bool TTI_Header::readMaxp(SfntReader& reader, const TTI_TableRecord& table) {
    std::array<std::uint8_t, kMaxpSize> bytes{};
    const std::size_t got = reader.readUpTo(table.offset, bytes);
    const std::uint32_t version = ByteView::loadU32(bytes.data());
    if (got < 4 || (got < kMaxpSize && version == kMaxpVersion1))
        return reader.fail(FS_ERROR_FONT_READ, "'maxp' table read error");
    if (version != kMaxpVersion1)
        return true;
    // The numbers follow the version, in the order of the record.
    std::size_t at = 2;
    const auto next = [&] { return ByteView::loadU16(&bytes[at += 2]); };
    maxp = {next(), next(), next(), next(), next(), next(), next(),
            next(), next(), next(), next(), next(), next(), next()};
    return true;
}

} // namespace KWFontService_NS
