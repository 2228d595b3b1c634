#include "embed/SfntWriter.h"

#include <algorithm>
#include <array>
#include <vector>

namespace KWFontService_NS {

using KWCommonNS::ByteView;
using KWCommonNS::KWMemStreamBuf;

namespace {

constexpr std::uint32_t kGdir = sfntTag("gdir");

constexpr std::size_t kCheckSumInRecord = 4;
constexpr std::size_t kCheckSumAdjustmentInHead = 8;

constexpr std::uint64_t alignUp(std::uint64_t offset) {
    return (offset + 3) & ~std::uint64_t{3};
}

/// One table to be written: its new record, and its contents where they are not the source's.
struct OutputTable {
    TTI_TableRecord record;
    std::uint32_t sourceOffset = 0;
    const TableContents* contents = nullptr;
    bool recordOnly = false; ///< all zero but for its tag
};

/// Lays tables out behind the directory, each from a multiple of four on, and answers where they
/// end. Nothing past 4 GiB.
std::optional<std::uint64_t> layOut(std::vector<OutputTable>& tables) {
    std::uint64_t running = TTI_Directory::kHeaderSize + TTI_Directory::kRecordSize * tables.size();
    for (OutputTable& table : tables) {
        if (table.recordOnly)
            continue;
        const std::uint64_t offset = alignUp(running);
        running = offset + table.record.length;
        if (running > 0xFFFFFFFF)
            return std::nullopt;
        table.record.offset = static_cast<std::uint32_t>(offset);
    }
    return running;
}

void writeDirectory(KWMemStream& output, const TableSet& fields, std::uint16_t numTables,
                    const std::vector<OutputTable>& tables) {
    std::vector<std::uint8_t> bytes(TTI_Directory::kHeaderSize +
                                    TTI_Directory::kRecordSize * tables.size());
    std::uint8_t* p = bytes.data();
    ByteView::storeU32(p, fields.version);
    ByteView::storeU16(p + 4, numTables);
    ByteView::storeU16(p + 6, fields.searchRange);
    ByteView::storeU16(p + 8, fields.entrySelector);
    ByteView::storeU16(p + 10, fields.rangeShift);
    p += TTI_Directory::kHeaderSize;
    for (const OutputTable& table : tables) {
        ByteView::storeU32(p, table.record.tag);
        ByteView::storeU32(p + 4, table.record.checkSum);
        ByteView::storeU32(p + 8, table.record.offset);
        ByteView::storeU32(p + 12, table.record.length);
        p += TTI_Directory::kRecordSize;
    }
    output.append(bytes.data(), bytes.size());
}

void writePadding(KWMemStream& output, std::uint64_t count) {
    static constexpr char kZeros[3] = {};
    output.write(kZeros, static_cast<std::streamsize>(count));
}

/// Writes the tables from where the directory ends.
bool writeTables(EmbedSource& source, KWMemStream& output, const std::vector<OutputTable>& tables) {
    std::uint64_t running = TTI_Directory::kHeaderSize + TTI_Directory::kRecordSize * tables.size();
    for (const OutputTable& table : tables) {
        if (table.recordOnly)
            continue;
        writePadding(output, table.record.offset - running);
        const bool written = table.contents != nullptr
                                 ? table.contents->write(output)
                                 : source.copy(table.sourceOffset, table.record.length, output);
        if (!written)
            return false;
        running = std::uint64_t{table.record.offset} + table.record.length;
    }
    return output.good();
}

/// Puts the check sums of new contents into their records, now that the contents are there.
/// @param start  where the sfnt begins in `output`
bool storeCheckSums(KWMemStream& output, std::size_t start,
                    const std::vector<OutputTable>& tables) {
    for (std::size_t i = 0; i < tables.size(); ++i) {
        if (tables[i].contents == nullptr)
            continue;
        const ByteView table =
            ByteView(reinterpret_cast<const std::uint8_t*>(output.data()), output.size())
                .sub(start + tables[i].record.offset, tables[i].record.length);
        std::uint32_t sum = KWMemStreamBuf::calcOTFTableChecksum(table.data(), table.size());
        if (tables[i].record.tag == sfntTag("head"))
            sum -= table.u32(kCheckSumAdjustmentInHead).value_or(0);
        std::array<std::uint8_t, 4> bytes;
        ByteView::storeU32(bytes.data(), sum);
        const std::size_t record =
            start + TTI_Directory::kHeaderSize + i * TTI_Directory::kRecordSize;
        output.seekp(static_cast<std::streamoff>(record + kCheckSumInRecord));
        output.write(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    }
    return static_cast<bool>(output.seekp(0, std::ios::end));
}

} // namespace

TableContents TableContents::of(ByteView bytes) {
    return {static_cast<std::uint32_t>(bytes.size()), [bytes](KWMemStream& output) {
                output.write(reinterpret_cast<const char*>(bytes.data()),
                             static_cast<std::streamsize>(bytes.size()));
                return true;
            }};
}

bool writeSfnt(EmbedSource& source, KWMemStream& output, const ReplacedTables& replaced,
               const TableSet& tables) {
    std::vector<OutputTable> written;
    written.reserve(tables.records.size());
    const auto contentsOf = [&replaced](std::uint32_t tag) -> const TableContents* {
        const auto ifAny = [](const auto& contents) { return contents ? &*contents : nullptr; };
        if (tag == sfntTag("glyf"))
            return ifAny(replaced.glyf);
        if (tag == sfntTag("loca"))
            return ifAny(replaced.loca);
        if (tag == sfntTag("head"))
            return ifAny(replaced.head);
        return tag == sfntTag("CFF ") ? ifAny(replaced.cff) : nullptr;
    };
    for (const TTI_TableRecord& record : tables.records) {
        OutputTable table{record, record.offset, contentsOf(record.tag)};
        if (table.contents != nullptr)
            table.record.length = table.contents->length;
        written.push_back(table);
    }
    const auto size = layOut(written);
    if (!size)
        return false;
    const std::size_t start = output.size();
    // No more than the new tables and the file justify: a directory may claim anything.
    std::uint64_t most = source.size();
    for (const OutputTable& table : written)
        most += table.contents != nullptr ? table.record.length : 0;
    output.rdbuf()->reserve(start + static_cast<std::size_t>(std::min(*size, most)));
    writeDirectory(output, tables, tables.numTables, written);
    return writeTables(source, output, written) && storeCheckSums(output, start, written);
}

bool writeWholeSfnt(std::istream& stream, const TTI_Directory& directory, KWMemStream& output) {
    EmbedSource source(stream);
    TableSet tables;
    return selectTables(directory, nullptr, tables) && writeSfnt(source, output, {}, tables);
}

bool writePSSfnt(EmbedSource& source, GlyphReader& reader, std::span<const std::uint16_t> closure,
                 KWMemStream& output, FS_TTGlyphMap& glyphMap, const TableSet& tables) {
    std::vector<OutputTable> written;
    for (const TTI_TableRecord& record : tables.records)
        if (std::find(kPostScriptTables.begin(), kPostScriptTables.end() - 1, record.tag) !=
            kPostScriptTables.end() - 1)
            written.push_back({record, record.offset, nullptr});
    const auto place = std::find_if(written.begin(), written.end(), [](const OutputTable& table) {
        return table.record.tag > kGdir;
    });
    written.insert(place, OutputTable{{.tag = kGdir}, 0, nullptr, true});

    const auto end = layOut(written);
    if (!end)
        return false;
    // The search fields stay those of the whole set: only the count is that of this file.
    writeDirectory(output, tables, static_cast<std::uint16_t>(written.size()), written);
    if (!writeTables(source, output, written))
        return false;
    writePadding(output, alignUp(*end) - *end);

    bool allGiven = output.good();
    const auto give = [&](std::uint16_t gid, ByteView glyph) {
        if (KWMemStream* stream = glyphMap.getGlyphStream(gid))
            allGiven = stream->append(glyph.data(), glyph.size()).good() && allGiven;
    };
    return allGiven && reader.visit(closure, GlyphReader::kWorthwhileGap, [&](const GlyphRun& run) {
        reader.split(run, give);
    }) && allGiven;
}

} // namespace KWFontService_NS
