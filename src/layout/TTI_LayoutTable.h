#pragma once

#include "layout/GlyphMemo.h"
#include "layout/TTI_LookupList.h"
#include "layout/TTI_ScriptList.h"

#include "common/ByteView.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace KWFontService_NS {

class LayoutBudget;

/// A GSUB or GPOS table (OpenType, Common Table Formats). It keeps the bytes of the table and small
/// objects over them, which read in place: nothing per glyph is copied. It does not change after
/// `read` and is shared between threads.
class TTI_LayoutTable {
public:
    using Kind = TTI_LookupList::Kind;
    enum class List { Features, Lookups, Scripts };

    TTI_LayoutTable() = default;
    TTI_LayoutTable(TTI_LayoutTable&&) = default;

    /// Reads features, lookups and scripts, in this order; a list whose offset is 0 is absent.
    /// Answers the bad lists in the same order: those outside the table, and those that make it
    /// read beyond all measure. The others are usable all the same. Inside a list a bad feature
    /// table, lookup, subtable or language system is left out, and the places of the others stay.
    /// To be called once.
    std::vector<List> read(std::vector<std::uint8_t> bytes, Kind kind);
    /// The same with a budget of the caller's.
    std::vector<List> read(std::vector<std::uint8_t> bytes, Kind kind, LayoutBudget& budget);

    const std::vector<TTI_Feature>& features() const { return features_; }
    const TTI_LookupList& lookups() const { return lookups_; }
    /// Null when there is no lookup of that index.
    const TTI_Lookup* lookup(std::size_t index) const { return lookups_.find(index); }
    /// Null when the font does not list the script.
    const TTI_Script* script(std::uint32_t tag) const { return scripts_.find(tag); }

    /// What the running thread has searched for in this table.
    GlyphMemo memo() const { return GlyphMemo(number_); }

    /// The first feature record `vert`; null when there is none.
    const TTI_Feature* vertFeature() const;
    bool hasVertFeature() const { return vertFeature_ != kNoFeature; }
    /// What the single substitutions of the `vert` feature make of a glyph, 0xFFFF when nothing.
    unsigned short substituteVertical(unsigned short gid) const;

private:
    static constexpr std::size_t kNoFeature = ~std::size_t{0};

    bool readFeatures(KWCommonNS::ByteView list, LayoutBudget& budget);
    void collectVertSubtables();

    std::vector<std::uint8_t> bytes_;
    std::uint32_t number_ = 0;
    std::vector<TTI_Feature> features_;
    TTI_LookupList lookups_;
    TTI_ScriptList scripts_;
    std::size_t vertFeature_ = kNoFeature;
    /// The single substitutions of the `vert` feature, in the order they are tried.
    std::vector<const TTI_SubTable*> vertSubtables_;
};

} // namespace KWFontService_NS
