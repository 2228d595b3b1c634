#include "embed/GlyphSubset.h"

#include "embed/GlyphClosure.h"
#include "embed/LocaWriter.h"
#include "embed/SfntWriter.h"

namespace KWFontService_NS {

using KWCommonNS::ByteView;

bool subsetGlyphTables(EmbedSource& source, GlyphReader& reader,
                       const std::vector<unsigned short>& glyphs, KWMemStream& output,
                       const TableSet& tables) {
    const auto closure = collectGlyphClosure(reader, glyphs);
    if (!closure)
        return false;

    const GlyphLocator& locator = reader.locator();
    std::vector<std::uint8_t> loca(locator.locaSize());
    LocaWriter entries(loca, locator.isLong());
    std::uint64_t running = 0;
    for (const std::uint16_t gid : *closure) {
        const std::uint32_t length = locator.length(gid);
        if (length == 0)
            continue;
        entries.fillTo(gid + std::size_t{1}, static_cast<std::uint32_t>(running));
        running += length;
        // Only glyphs that overlap add up to more than a table can hold.
        if (running > LocaWriter::kMostLong)
            return false;
    }
    entries.fillTo(locator.entryCount(), static_cast<std::uint32_t>(running));

    const auto writeGlyf = [&](KWMemStream& stream) {
        return reader.visit(*closure, GlyphReader::kWorthwhileGap, [&](const GlyphRun& run) {
            stream.write(reinterpret_cast<const char*>(run.bytes.data()),
                         static_cast<std::streamsize>(run.bytes.size()));
        });
    };
    ReplacedTables replaced;
    replaced.glyf = TableContents{static_cast<std::uint32_t>(running), writeGlyf};
    replaced.loca = TableContents::of(ByteView(loca.data(), loca.size()));
    return writeSfnt(source, output, replaced, tables);
}

} // namespace KWFontService_NS
