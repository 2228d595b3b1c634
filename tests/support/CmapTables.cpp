#include "CmapTables.h"

#include "BinarySearchFields.h"

#include <stdexcept>

namespace KWTest {

namespace {

std::uint16_t low16(std::size_t size) {
    return static_cast<std::uint16_t>(size & 0xFFFF);
}

std::uint32_t size32(std::size_t size) {
    return static_cast<std::uint32_t>(size);
}

/// The low 16 bits, as the signed number that a font stores.
std::int16_t delta16(std::size_t value) {
    return static_cast<std::int16_t>(low16(value));
}

struct Run {
    std::uint32_t first;
    std::uint32_t last;
    std::uint16_t firstGlyph;
};

/// Runs of consecutive codes whose glyphs count up by `glyphStep`.
std::vector<Run> runsOf(const CmapMap& glyphs, std::uint32_t glyphStep) {
    std::vector<Run> runs;
    for (const auto& [code, glyph] : glyphs) {
        if (!runs.empty()) {
            Run& run = runs.back();
            const std::uint32_t next = run.firstGlyph + glyphStep * (code - run.first);
            if (code == run.last + 1 && glyph == next) {
                run.last = code;
                continue;
            }
        }
        runs.push_back({code, code, glyph});
    }
    return runs;
}

std::vector<CmapGroup> groupsOf(const CmapMap& glyphs, std::uint32_t glyphStep) {
    std::vector<CmapGroup> groups;
    for (const Run& run : runsOf(glyphs, glyphStep))
        groups.push_back({run.first, run.last, run.firstGlyph});
    return groups;
}

/// The array from the lowest to the highest code, holes being glyph 0.
std::vector<std::uint16_t> trimmedArray(const CmapMap& glyphs) {
    if (glyphs.empty())
        return {};
    const std::uint32_t first = glyphs.begin()->first;
    std::vector<std::uint16_t> array(glyphs.rbegin()->first - first + 1);
    for (const auto& [code, glyph] : glyphs)
        array[code - first] = glyph;
    return array;
}

std::uint32_t lowestCode(const CmapMap& glyphs) {
    return glyphs.empty() ? 0 : glyphs.begin()->first;
}

/// Formats 8, 12 and 13: a 32-bit header, for format 8 a bit per 16-bit code, and the groups.
Bytes groupedSubtable(int format, std::uint32_t language, const std::vector<CmapGroup>& groups,
                      std::optional<std::uint32_t> length, std::optional<std::uint32_t> nGroups) {
    Bytes table;
    table.u16(format, "format").u16(0).u32(0, "length").u32(language);
    if (format == 8) {
        constexpr std::size_t kIs32Size = 8192;
        table.label("is32").zero(kIs32Size);
        for (const CmapGroup& group : groups) {
            const std::uint32_t high = group.startCharCode >> 16;
            if (high == 0)
                continue;
            const std::size_t place = table.offsetOf("is32") + high / 8;
            table.patchU8At(place, table.u8At(place) | (0x80 >> (high % 8)));
        }
    }
    table.u32(nGroups.value_or(size32(groups.size())), "nGroups").label("groups");
    for (const CmapGroup& group : groups)
        table.u32(group.startCharCode).u32(group.endCharCode).u32(group.glyphID);
    table.patchU32At("length", length.value_or(size32(table.size())));
    return table;
}

} // namespace

CmapFormat0 CmapFormat0::of(const CmapMap& glyphs) {
    CmapFormat0 table;
    for (const auto& [code, glyph] : glyphs)
        table.glyphIdArray.at(code) = static_cast<std::uint8_t>(glyph);
    return table;
}

Bytes CmapFormat0::build() const {
    return Bytes()
        .u16(0, "format")
        .u16(length.value_or(262), "length")
        .u16(language)
        .label("glyphIdArray")
        .bytes(glyphIdArray);
}

CmapFormat2 CmapFormat2::of(const CmapMap& glyphs) {
    std::map<std::uint32_t, CmapMap> rows; // by first byte; row 0 holds the one-byte codes
    rows[0];
    for (const auto& [code, glyph] : glyphs)
        rows[code >> 8][code & 0xFF] = glyph;

    CmapFormat2 table;
    for (const auto& [high, row] : rows) {
        const std::size_t index = table.subHeaders.size();
        const std::size_t headersAfter = rows.size() - 1 - index;
        const std::vector<std::uint16_t> array = trimmedArray(row);
        table.subHeaderKeys.at(high) = low16(index * 8);
        // idRangeOffset counts from its own place, the last two bytes of its subheader.
        table.subHeaders.push_back(
            {.firstCode = low16(lowestCode(row)),
             .entryCount = low16(array.size()),
             .idRangeOffset = low16(2 + headersAfter * 8 + 2 * table.glyphIndexArray.size())});
        table.glyphIndexArray.insert(table.glyphIndexArray.end(), array.begin(), array.end());
    }
    for (const auto& [code, glyph] : rows[0]) {
        if (table.subHeaderKeys.at(code) != 0)
            throw std::invalid_argument("a byte is a code of its own and the first of two");
    }
    return table;
}

Bytes CmapFormat2::build() const {
    Bytes table;
    table.u16(2, "format").u16(0, "length").u16(language);
    for (const std::uint16_t key : subHeaderKeys)
        table.u16(key);
    table.label("subHeaders");
    for (const SubHeader& header : subHeaders) {
        table.u16(header.firstCode)
            .u16(header.entryCount)
            .i16(header.idDelta)
            .u16(header.idRangeOffset);
    }
    table.label("glyphIndexArray").u16s(glyphIndexArray);
    return table.patchU16At("length", length.value_or(low16(table.size())));
}

CmapFormat4 CmapFormat4::of(const CmapMap& glyphs) {
    CmapFormat4 table;
    for (const Run& run : runsOf(glyphs, 1)) {
        table.segments.push_back({.startCode = low16(run.first),
                                  .endCode = low16(run.last),
                                  .idDelta = delta16(run.firstGlyph - run.first),
                                  .idRangeOffset = 0});
    }
    table.segments.push_back({});
    return table;
}

CmapFormat4 CmapFormat4::withGlyphArray(const CmapMap& glyphs, std::int16_t idDelta) {
    CmapFormat4 table;
    const std::vector<Run> runs = runsOf(glyphs, 1);
    for (std::size_t i = 0; i < runs.size(); ++i) {
        const Run& run = runs[i];
        const std::size_t segmentsFromHere = runs.size() + 1 - i;
        table.segments.push_back(
            {.startCode = low16(run.first),
             .endCode = low16(run.last),
             .idDelta = idDelta,
             .idRangeOffset = low16(2 * (segmentsFromHere + table.glyphIdArray.size()))});
        for (std::uint32_t code = run.first; code <= run.last; ++code) {
            const std::uint32_t glyph = run.firstGlyph + (code - run.first);
            table.glyphIdArray.push_back(
                static_cast<std::uint16_t>(glyph - static_cast<std::uint16_t>(idDelta)));
        }
    }
    table.segments.push_back({});
    return table;
}

Bytes CmapFormat4::build() const {
    Bytes table;
    table.u16(4, "format").u16(0, "length").u16(language);
    table.u16(segCountX2.value_or(low16(2 * segments.size())), "segCountX2");
    writeBinarySearchFields(table, segments.size(), 2);
    table.label("endCode");
    for (const Segment& segment : segments)
        table.u16(segment.endCode);
    table.u16(0, "reservedPad").label("startCode");
    for (const Segment& segment : segments)
        table.u16(segment.startCode);
    table.label("idDelta");
    for (const Segment& segment : segments)
        table.i16(segment.idDelta);
    table.label("idRangeOffset");
    for (const Segment& segment : segments)
        table.u16(segment.idRangeOffset);
    table.label("glyphIdArray").u16s(glyphIdArray);
    return table.patchU16At("length", length.value_or(low16(table.size())));
}

CmapFormat6 CmapFormat6::of(const CmapMap& glyphs) {
    return {.firstCode = low16(lowestCode(glyphs)), .glyphIdArray = trimmedArray(glyphs)};
}

Bytes CmapFormat6::build() const {
    Bytes table;
    table.u16(6, "format")
        .u16(0, "length")
        .u16(language)
        .u16(firstCode)
        .u16(entryCount.value_or(low16(glyphIdArray.size())), "entryCount")
        .u16s(glyphIdArray);
    return table.patchU16At("length", length.value_or(low16(table.size())));
}

CmapFormat10 CmapFormat10::of(const CmapMap& glyphs) {
    return {.startCharCode = lowestCode(glyphs), .glyphs = trimmedArray(glyphs)};
}

Bytes CmapFormat10::build() const {
    Bytes table;
    table.u16(10, "format")
        .u16(0)
        .u32(0, "length")
        .u32(language)
        .u32(startCharCode)
        .u32(numChars.value_or(size32(glyphs.size())), "numChars")
        .u16s(glyphs);
    return table.patchU32At("length", length.value_or(size32(table.size())));
}

CmapFormat8 CmapFormat8::of(const CmapMap& glyphs) {
    return {.groups = groupsOf(glyphs, 1)};
}

Bytes CmapFormat8::build() const {
    return groupedSubtable(8, language, groups, length, nGroups);
}

CmapFormat12 CmapFormat12::of(const CmapMap& glyphs) {
    return {.groups = groupsOf(glyphs, 1)};
}

Bytes CmapFormat12::build() const {
    return groupedSubtable(12, language, groups, length, nGroups);
}

CmapFormat13 CmapFormat13::of(const CmapMap& glyphs) {
    return {.groups = groupsOf(glyphs, 0)};
}

Bytes CmapFormat13::build() const {
    return groupedSubtable(13, language, groups, length, nGroups);
}

Bytes CmapFormat14::build() const {
    constexpr std::size_t kHeaderSize = 10;
    constexpr std::size_t kSelectorSize = 11;
    const std::size_t tailStart = kHeaderSize + kSelectorSize * selectors.size();

    Bytes table;
    Bytes tail;
    const auto offsetHere = [&] { return size32(tailStart + tail.size()); };
    table.u16(14, "format")
        .u32(0, "length")
        .u32(numVarSelectorRecords.value_or(size32(selectors.size())), "numVarSelectorRecords");
    for (const Selector& selector : selectors) {
        table.u24(selector.varSelector);

        const std::uint32_t defaultsAt = selector.defaults.empty() ? 0 : offsetHere();
        table.u32(selector.defaultUVSOffset.value_or(defaultsAt));
        if (!selector.defaults.empty()) {
            tail.u32(selector.numUnicodeValueRanges.value_or(size32(selector.defaults.size())));
            for (const UnicodeRange& range : selector.defaults)
                tail.u24(range.startUnicodeValue).u8(range.additionalCount);
        }

        const std::uint32_t mappingsAt = selector.mappings.empty() ? 0 : offsetHere();
        table.u32(selector.nonDefaultUVSOffset.value_or(mappingsAt));
        if (!selector.mappings.empty()) {
            tail.u32(selector.numUVSMappings.value_or(size32(selector.mappings.size())));
            for (const Mapping& mapping : selector.mappings)
                tail.u24(mapping.unicodeValue).u16(mapping.glyphID);
        }
    }
    table.bytes(tail);
    return table.patchU32At("length", length.value_or(size32(table.size())));
}

Cmap Cmap::unicode(const CmapMap& glyphs) {
    return {.records = {
                {.platformID = 3, .encodingID = 1, .subtable = CmapFormat4::of(glyphs).build()}}};
}

Bytes Cmap::build() const {
    constexpr std::size_t kHeaderSize = 4;
    constexpr std::size_t kRecordSize = 8;
    const std::size_t tailStart = kHeaderSize + kRecordSize * records.size();

    Bytes table;
    Bytes tail;
    table.u16(version, "version").u16(numTables.value_or(low16(records.size())), "numTables");
    for (const CmapRecord& record : records) {
        table.u16(record.platformID)
            .u16(record.encodingID)
            .u32(record.subtableOffset.value_or(size32(tailStart + tail.size())));
        tail.bytes(record.subtable);
    }
    return table.bytes(tail);
}

} // namespace KWTest
