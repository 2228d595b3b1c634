#pragma once

#include "Bytes.h"

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

// `cmap` and its subtables. Each subtable is a plain value of the fields it stores. `of` works them
// out from a small map; a test that needs a broken subtable fills or changes them by hand:
//
//     Cmap{.records = {{3, 1, CmapFormat4::of({{'A', 3}, {'B', 4}}).build()}}}
//
//     auto odd = CmapFormat4::of({{'A', 3}});
//     odd.length = 33;

namespace KWTest {

/// Character code to glyph id.
using CmapMap = std::map<std::uint32_t, std::uint16_t>;

/// Format 0, 262 bytes.
struct CmapFormat0 {
    std::uint16_t language = 0;
    std::array<std::uint8_t, 256> glyphIdArray{};
    std::optional<std::uint16_t> length{};

    static CmapFormat0 of(const CmapMap& glyphs);
    Bytes build() const;
};

/// Format 2. `subHeaderKeys` hold index × 8, as in the file.
struct CmapFormat2 {
    struct SubHeader {
        std::uint16_t firstCode = 0;
        std::uint16_t entryCount = 0;
        std::int16_t idDelta = 0;
        std::uint16_t idRangeOffset = 0; // from its own place to its first array element
    };

    std::uint16_t language = 0;
    std::array<std::uint16_t, 256> subHeaderKeys{};
    std::vector<SubHeader> subHeaders{};
    std::vector<std::uint16_t> glyphIndexArray{};
    std::optional<std::uint16_t> length{};

    /// Codes up to 0xFF are one-byte codes, those above are two-byte codes. A byte must not be both
    /// a one-byte code and the first of two.
    static CmapFormat2 of(const CmapMap& glyphs);
    Bytes build() const;
};

/// Format 4. The last segment of a sound table is 0xFFFF to 0xFFFF; `of` adds it.
struct CmapFormat4 {
    struct Segment {
        std::uint16_t startCode = 0xFFFF;
        std::uint16_t endCode = 0xFFFF;
        std::int16_t idDelta = 1;
        std::uint16_t idRangeOffset = 0;
    };

    std::uint16_t language = 0;
    std::vector<Segment> segments{};
    std::vector<std::uint16_t> glyphIdArray{};
    std::optional<std::uint16_t> length{};
    std::optional<std::uint16_t> segCountX2{};

    /// Runs of consecutive codes and glyphs become segments of `idRangeOffset` 0.
    static CmapFormat4 of(const CmapMap& glyphs);
    /// The same, but every segment goes through `glyphIdArray`, with `idDelta` as given.
    static CmapFormat4 withGlyphArray(const CmapMap& glyphs, std::int16_t idDelta = 0);
    Bytes build() const;
};

/// Format 6.
struct CmapFormat6 {
    std::uint16_t language = 0;
    std::uint16_t firstCode = 0;
    std::vector<std::uint16_t> glyphIdArray{};
    std::optional<std::uint16_t> length{};
    std::optional<std::uint16_t> entryCount{};

    /// From the lowest to the highest code; holes are glyph 0.
    static CmapFormat6 of(const CmapMap& glyphs);
    Bytes build() const;
};

/// Format 10.
struct CmapFormat10 {
    std::uint32_t language = 0;
    std::uint32_t startCharCode = 0;
    std::vector<std::uint16_t> glyphs{};
    std::optional<std::uint32_t> length{};
    std::optional<std::uint32_t> numChars{};

    static CmapFormat10 of(const CmapMap& glyphs);
    Bytes build() const;
};

/// A group of format 8, 12 (glyphs count up from `glyphID`) or 13 (all are `glyphID`).
struct CmapGroup {
    std::uint32_t startCharCode = 0;
    std::uint32_t endCharCode = 0;
    std::uint32_t glyphID = 0;
};

/// Format 8.
struct CmapFormat8 {
    std::uint32_t language = 0;
    std::vector<CmapGroup> groups{};
    std::optional<std::uint32_t> length{};
    std::optional<std::uint32_t> nGroups{};

    static CmapFormat8 of(const CmapMap& glyphs);
    Bytes build() const;
};

/// Format 12.
struct CmapFormat12 {
    std::uint32_t language = 0;
    std::vector<CmapGroup> groups{};
    std::optional<std::uint32_t> length{};
    std::optional<std::uint32_t> nGroups{};

    static CmapFormat12 of(const CmapMap& glyphs);
    Bytes build() const;
};

/// Format 13.
struct CmapFormat13 {
    std::uint32_t language = 0;
    std::vector<CmapGroup> groups{};
    std::optional<std::uint32_t> length{};
    std::optional<std::uint32_t> nGroups{};

    static CmapFormat13 of(const CmapMap& glyphs);
    Bytes build() const;
};

/// Format 14, Unicode variation sequences.
struct CmapFormat14 {
    struct UnicodeRange {
        std::uint32_t startUnicodeValue = 0;
        std::uint8_t additionalCount = 0;
    };
    struct Mapping {
        std::uint32_t unicodeValue = 0;
        std::uint16_t glyphID = 0;
    };
    struct Selector {
        std::uint32_t varSelector = 0xFE00;
        std::vector<UnicodeRange> defaults{}; // answered by the ordinary subtable
        std::vector<Mapping> mappings{};      // answered by a glyph of their own
        std::optional<std::uint32_t> defaultUVSOffset{};
        std::optional<std::uint32_t> nonDefaultUVSOffset{};
        std::optional<std::uint32_t> numUnicodeValueRanges{};
        std::optional<std::uint32_t> numUVSMappings{};
    };

    std::vector<Selector> selectors{};
    std::optional<std::uint32_t> length{};
    std::optional<std::uint32_t> numVarSelectorRecords{};

    Bytes build() const;
};

/// One encoding record of `cmap` with its subtable.
struct CmapRecord {
    std::uint16_t platformID = 3;
    std::uint16_t encodingID = 1;
    Bytes subtable{};
    std::optional<std::uint32_t> subtableOffset{}; // from the start of `cmap`
};

/// `cmap`. Records stand in the order given, each with its own copy of its subtable.
struct Cmap {
    std::uint16_t version = 0;
    std::vector<CmapRecord> records{};
    std::optional<std::uint16_t> numTables{};

    /// One Windows Unicode record of format 4.
    static Cmap unicode(const CmapMap& glyphs);

    Bytes build() const;
};

} // namespace KWTest
