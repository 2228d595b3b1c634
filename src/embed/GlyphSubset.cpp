#include "embed/GlyphSubset.h"

#include "embed/GlyphClosure.h"
#include "embed/SfntWriter.h"

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

/// Fills `loca` entry by entry.
class LocaWriter {
public:
    LocaWriter(std::span<std::uint8_t> loca, bool isLong) : loca_(loca), isLong_(isLong) {}

    /// Stores `offset` in every entry from the next one up to but not including `end`.
    void fillTo(std::size_t end, std::uint32_t offset) {
        if (isLong_) {
            for (; entry_ < end; ++entry_)
                ByteView::storeU32(&loca_[entry_ * 4], offset);
        } else {
            const auto half = static_cast<std::uint16_t>(offset / 2);
            for (; entry_ < end; ++entry_)
                ByteView::storeU16(&loca_[entry_ * 2], half);
        }
    }

private:
    std::span<std::uint8_t> loca_;
    bool isLong_;
    std::size_t entry_ = 0;
};

} // namespace

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
        if (running > std::numeric_limits<std::uint32_t>::max())
            return false;
    }
    entries.fillTo(locator.entryCount(), static_cast<std::uint32_t>(running));

    const auto writeGlyf = [&](KWMemStream& stream) {
        return reader.visit(*closure, GlyphReader::kWorthwhileGap, [&](const GlyphRun& run) {
            stream.write(reinterpret_cast<const char*>(run.bytes.data()),
                         static_cast<std::streamsize>(run.bytes.size()));
        });
    };
    return writeSfnt(source, output,
                     {.glyf = TableContents{static_cast<std::uint32_t>(running), writeGlyf},
                      .loca = TableContents::of(ByteView(loca.data(), loca.size())),
                      .cff = std::nullopt},
                     tables);
}

} // namespace KWFontService_NS
