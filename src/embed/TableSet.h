#pragma once

#include "fonts/TTI_Directory.h"

#include <array>
#include <cstdint>
#include <vector>

namespace KWFontService_NS {

/// Tables that a document needs to show glyphs by id.
inline constexpr std::array<std::uint32_t, 10> kDocumentTables{
    sfntTag("OS/2"), sfntTag("cvt "), sfntTag("fpgm"), sfntTag("head"), sfntTag("hhea"),
    sfntTag("hmtx"), sfntTag("maxp"), sfntTag("post"), sfntTag("prep"), 0};
/// The same with the character map.
inline constexpr std::array<std::uint32_t, 11> kDocumentTablesWithCmap{sfntTag("OS/2"),
                                                                       sfntTag("cmap"),
                                                                       sfntTag("cvt "),
                                                                       sfntTag("fpgm"),
                                                                       sfntTag("head"),
                                                                       sfntTag("hhea"),
                                                                       sfntTag("hmtx"),
                                                                       sfntTag("maxp"),
                                                                       sfntTag("post"),
                                                                       sfntTag("prep"),
                                                                       0};
/// Tables of a PostScript Type 42 font (Adobe Technical Note 5012).
inline constexpr std::array<std::uint32_t, 8> kPostScriptTables{
    sfntTag("cvt "), sfntTag("fpgm"), sfntTag("head"), sfntTag("hhea"),
    sfntTag("hmtx"), sfntTag("maxp"), sfntTag("prep"), 0};
/// Tables of two subsets that become one.
inline constexpr std::array<std::uint32_t, 9> kMergedTables{
    sfntTag("cvt "), sfntTag("fpgm"), sfntTag("head"),
    sfntTag("hhea"), sfntTag("hmtx"), sfntTag("maxp"),
    sfntTag("post"), sfntTag("prep"), 0};
/// The same with the character map.
inline constexpr std::array<std::uint32_t, 10> kMergedTablesWithCmap{
    sfntTag("cvt "), sfntTag("fpgm"), sfntTag("head"), sfntTag("hhea"), sfntTag("hmtx"),
    sfntTag("maxp"), sfntTag("post"), sfntTag("prep"), sfntTag("cmap"), 0};

/// The tables of a font to be written: records of the source by ascending tag, and the version and
/// search fields of the new offset table.
struct TableSet {
    std::uint32_t version = 0;
    std::uint16_t numTables = 0;
    std::uint16_t searchRange = 0;
    std::uint16_t entrySelector = 0;
    std::uint16_t rangeShift = 0;
    std::vector<TTI_TableRecord> records;
};

/// Picks the tables of a list that the font has, and its outlines whatever the list says.
/// @param tags  ends in 0; null picks every table
/// @return      false for a font without outlines; `glyf` without its `loca` is none
bool selectTables(const TTI_Directory& directory, const unsigned int* tags, TableSet& tables);

} // namespace KWFontService_NS
