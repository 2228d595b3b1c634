#pragma once

#include "layout/GlyphDigest.h"
#include "layout/TTI_SubTable.h"

#include "common/ByteView.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace KWFontService_NS {

class LayoutBudget;

/// A lookup. Its index in the lookup list is what features and context rules name it by.
struct TTI_Lookup {
    /// The glyphs of all subtables.
    GlyphDigest digest;
    /// As in the file, but in GSUB the type that an extension lookup wraps; GPOS keeps 9.
    std::uint16_t type = 0;
    /// Bit 0x0010 has no meaning: mark filtering sets are not read.
    std::uint16_t flag = 0;
    /// As many as the file holds of those it counts; null where the type or format is unknown or
    /// the subtable is bad.
    std::span<const TTI_SubTablePtr> subtables;

    /// False when no subtable can apply at this glyph.
    bool mayApply(unsigned short gid) const { return digest.mayHold(gid); }
};

/// The lookups of a GSUB or GPOS table. All subtables stand in one block of memory and read the
/// table's bytes in place, which the owner keeps. Nothing changes after `read`.
class TTI_LookupList {
public:
    enum class Kind { Gsub, Gpos };

    TTI_LookupList() = default;
    TTI_LookupList(TTI_LookupList&&) = default;
    // Subtables end before the block that they stand in, which assigning would free first.
    TTI_LookupList& operator=(TTI_LookupList&&) = delete;

    /// False when the list lies outside its table or makes it read beyond all measure; what has
    /// been read until then is usable. A bad lookup or subtable keeps its place empty.
    bool read(KWCommonNS::ByteView list, Kind kind, LayoutBudget& budget);

    std::size_t size() const { return lookups_.size(); }
    /// Null when there is no lookup of that index.
    const TTI_Lookup* find(std::size_t index) const {
        return index < lookups_.size() ? &lookups_[index] : nullptr;
    }
    auto begin() const { return lookups_.begin(); }
    auto end() const { return lookups_.end(); }

private:
    struct Found;

    bool findSubTables(KWCommonNS::ByteView list, Kind kind, LayoutBudget& budget, Found& found);
    void makeSubTables(const Found& found, LayoutBudget& budget);

    std::unique_ptr<std::byte[]> block_;
    std::vector<TTI_SubTablePtr> subtables_;
    std::vector<TTI_Lookup> lookups_;
};

} // namespace KWFontService_NS
