#include "embed/GlyphTableMerge.h"

#include "embed/GlyphLocator.h"
#include "embed/LocaWriter.h"
#include "embed/SfntWriter.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

using TableBytes = std::optional<std::vector<std::uint8_t>>;

/// A whole table; nothing where the face has none or the file is short.
TableBytes readTable(const MergeFace& from, std::uint32_t tag) {
    const TTI_TableRecord* const record = from.face.getTableEntry(tag);
    if (record == nullptr || !from.source.contains(record->offset, record->length) ||
        !from.source.charge(record->length))
        return std::nullopt;
    std::vector<std::uint8_t> bytes(record->length);
    if (!from.source.read(record->offset, bytes))
        return std::nullopt;
    return bytes;
}

bool areEqual(const MergeFace& a, const MergeFace& b, std::uint32_t tag) {
    const TTI_TableRecord* const recordA = a.face.getTableEntry(tag);
    const TTI_TableRecord* const recordB = b.face.getTableEntry(tag);
    if (recordA == nullptr || recordB == nullptr || recordA->length != recordB->length)
        return false;
    const TableBytes bytes = readTable(a, tag);
    return bytes && bytes == readTable(b, tag);
}

bool haveNeither(const MergeFace& a, const MergeFace& b, std::uint32_t tag) {
    return a.face.getTableEntry(tag) == nullptr && b.face.getTableEntry(tag) == nullptr;
}

/// `head` of OpenType, as far as it matters here.
struct Head {
    static constexpr std::size_t kSize = 54;
    static constexpr std::size_t kVersionEnd = 4;
    static constexpr std::size_t kMagicNumber = 12;
    static constexpr std::size_t kIndexToLocFormat = 50;
    static constexpr std::size_t kGlyphDataFormat = 52;

    std::vector<std::uint8_t> bytes;

    bool read(const MergeFace& from) {
        TableBytes table = readTable(from, sfntTag("head"));
        if (!table || table->size() != kSize)
            return false;
        bytes = std::move(*table);
        return true;
    }
    std::int16_t indexToLocFormat() const { return ByteView::loadI16(&bytes[kIndexToLocFormat]); }
    bool isLong() const { return indexToLocFormat() == 1; }
    void makeLong() { ByteView::storeU16(&bytes[kIndexToLocFormat], 1); }

    bool isLike(const Head& other) const {
        const auto same = [&](std::size_t begin, std::size_t end) {
            const auto at = [](const Head& head, std::size_t offset) {
                return head.bytes.begin() + static_cast<std::ptrdiff_t>(offset);
            };
            return std::equal(at(*this, begin), at(*this, end), at(other, begin));
        };
        return same(0, kVersionEnd) && same(kMagicNumber, kIndexToLocFormat) &&
               same(kGlyphDataFormat, kSize);
    }
};

/// `glyf` and `loca` of a face, in memory.
struct Outlines {
    std::vector<std::uint8_t> glyf;
    std::vector<std::uint8_t> loca;
    std::optional<GlyphLocator> locator;

    bool read(const MergeFace& from, const Head& head) {
        TableBytes glyphs = readTable(from, sfntTag("glyf"));
        TableBytes offsets = readTable(from, sfntTag("loca"));
        if (!glyphs || !offsets)
            return false;
        glyf = std::move(*glyphs);
        loca = std::move(*offsets);
        locator.emplace(ByteView(loca.data(), loca.size()), head.indexToLocFormat(),
                        static_cast<std::uint32_t>(glyf.size()), from.face.header().maxp.numGlyphs);
        return true;
    }
};

/// As `writeSfnt` with `glyf` and `loca`, and with `head` where there is one.
bool writeSfntWithCmap(const MergeFace& from, KWMemStream& output, TableContents glyf,
                       ByteView loca, const Head* head, const TableSet& tables) {
    ReplacedTables replaced;
    replaced.glyf = std::move(glyf);
    replaced.loca = TableContents::of(loca);
    if (head != nullptr)
        replaced.head = TableContents::of(ByteView(head->bytes.data(), head->bytes.size()));
    return writeSfnt(from.source, output, replaced, tables);
}

} // namespace

bool mergeGlyphTables(const MergeFace& a, const MergeFace& b, const TableSet& tables,
                      bool changeHead, KWMemStream& output) {
    Head head;
    Head other;
    if (!head.read(a) || !other.read(b) || !head.isLike(other))
        return false;
    for (const std::uint32_t tag : {sfntTag("hhea"), sfntTag("hmtx"), sfntTag("maxp")})
        if (!areEqual(a, b, tag))
            return false;
    for (const std::uint32_t tag : {sfntTag("cvt "), sfntTag("fpgm"), sfntTag("prep")})
        if (!haveNeither(a, b, tag) && !areEqual(a, b, tag))
            return false;
    Outlines ofA;
    Outlines ofB;
    if (!ofA.read(a, head) || !ofB.read(b, other))
        return false;

    const bool isLong = head.isLong() || other.isLong();
    const bool becomesLong = isLong && !(head.isLong() && other.isLong());
    if (becomesLong)
        head.makeLong();
    // `maxp` may claim more glyphs than either `loca` has.
    const std::size_t glyphs =
        std::min<std::size_t>(a.face.header().maxp.numGlyphs,
                              std::max(ofA.locator->entryCount(), ofB.locator->entryCount()));
    const std::uint64_t most = std::min<std::uint64_t>(
        ofA.glyf.size() + ofB.glyf.size(), isLong ? LocaWriter::kMostLong : LocaWriter::kMostShort);
    std::vector<std::uint8_t> loca((glyphs + 1) * (isLong ? 4U : 2U));
    LocaWriter entries(loca, isLong);
    std::vector<ByteView> pieces;
    std::uint64_t running = 0;
    for (std::size_t gid = 0; gid < glyphs; ++gid) {
        entries.fillTo(gid + 1, static_cast<std::uint32_t>(running));
        const Outlines& from = ofA.locator->length(gid) != 0 ? ofA : ofB;
        const std::uint32_t length = from.locator->length(gid);
        if (length == 0)
            continue;
        const ByteView bytes =
            ByteView(from.glyf.data(), from.glyf.size()).sub(from.locator->offset(gid), length);
        running += length;
        // Only glyphs that overlap, or that the tables together do not hold, add up to more.
        if (bytes.empty() || running > most)
            return false;
        pieces.push_back(bytes);
    }
    entries.fillTo(glyphs + 1, static_cast<std::uint32_t>(running));

    const auto writeGlyf = [&pieces](KWMemStream& to) {
        for (const ByteView piece : pieces)
            to.append(piece.data(), piece.size());
        return to.good();
    };
    return writeSfntWithCmap(
        a, output, TableContents{static_cast<std::uint32_t>(running), writeGlyf},
        ByteView(loca.data(), loca.size()), changeHead && becomesLong ? &head : nullptr, tables);
}

} // namespace KWFontService_NS
