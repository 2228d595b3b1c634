#include "layout/TTI_LookupList.h"

#include "layout/LayoutArrays.h"
#include "layout/LayoutBudget.h"
#include "layout/SubTableFormats.h"

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

constexpr std::size_t kLookupHeaderSize = 6;

} // namespace

/// What the lookups name, in their order.
struct TTI_LookupList::Found {
    std::vector<SubTableSource> sources;
    /// For each lookup, where its sources end.
    std::vector<std::size_t> ends;
};

bool TTI_LookupList::read(ByteView list, Kind kind, LayoutBudget& budget) {
    const auto count = list.u16(0);
    if (!count || !list.contains(2, std::size_t{2} * *count))
        return false;
    lookups_.resize(*count);
    Found found;
    // Finding may use up its budget; what it has found until then is usable all the same.
    LayoutBudget making = budget;
    const bool ok = findSubTables(list, kind, budget, found);
    const std::size_t before = making.left();
    makeSubTables(found, making);
    return budget.spend(before - making.left()) && ok && !making.exhausted();
}

bool TTI_LookupList::findSubTables(ByteView list, Kind kind, LayoutBudget& budget, Found& found) {
    found.ends.reserve(lookups_.size());
    for (std::size_t i = 0; i < lookups_.size(); ++i) {
        const ByteView table = list.from(ByteView::loadU16(list.data() + 2 + 2 * i));
        if (table.contains(0, kLookupHeaderSize)) {
            TTI_Lookup& lookup = lookups_[i];
            const std::uint16_t type = ByteView::loadU16(table.data());
            lookup.type = type;
            lookup.flag = ByteView::loadU16(table.data() + 2);
            const U16List offsets(table, kLookupHeaderSize, ByteView::loadU16(table.data() + 4));
            if (!budget.spend(kLookupHeaderSize + 2 * offsets.size()))
                return false;
            for (const std::uint16_t offset : offsets) {
                if (!budget.spendObject(0))
                    return false;
                const ByteView subtable = table.from(offset);
                found.sources.push_back(kind == Kind::Gsub
                                            ? findGsubSubTable(subtable, type, lookup.type)
                                            : findGposSubTable(subtable, type));
            }
        }
        found.ends.push_back(found.sources.size());
    }
    return true;
}

void TTI_LookupList::makeSubTables(const Found& found, LayoutBudget& budget) {
    const std::size_t made = found.ends.empty() ? 0 : found.ends.back();
    std::size_t blockSize = 0;
    for (std::size_t i = 0; i < made; ++i)
        blockSize += found.sources[i].format ? found.sources[i].format->size : 0;
    block_ = std::make_unique_for_overwrite<std::byte[]>(blockSize);
    subtables_.reserve(made);
    std::byte* place = block_.get();
    for (std::size_t i = 0; i < made; ++i) {
        const auto& [format, table] = found.sources[i];
        subtables_.push_back(format ? format->make(place, table, budget) : nullptr);
        if (subtables_.back())
            place += format->size;
    }
    std::vector<GlyphDigest> digests;
    std::size_t start = 0;
    for (std::size_t i = 0; i < found.ends.size(); ++i) {
        TTI_Lookup& lookup = lookups_[i];
        lookup.subtables =
            std::span<const TTI_SubTablePtr>(subtables_).subspan(start, found.ends[i] - start);
        start = found.ends[i];
        digests.clear();
        for (const TTI_SubTablePtr& subtable : lookup.subtables) {
            if (subtable)
                digests.push_back(subtable->digest());
        }
        lookup.digest = GlyphDigest::unionOf(digests);
    }
}

} // namespace KWFontService_NS
