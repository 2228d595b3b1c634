#pragma once

#include "layout/TTI_SubTable.h"

#include "common/ByteView.h"

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

namespace KWFontService_NS {

class LayoutBudget;

/// A feature record with its feature table: which lookups a feature is made of.
struct TTI_Feature {
    std::uint32_t tag = 0;
    std::vector<std::uint16_t> lookupIndices;
};

/// A lookup. Its index in the lookup list is what features and context rules name it by.
struct TTI_Lookup {
    /// As in the file, but in GSUB the type that an extension lookup wraps; GPOS keeps 9.
    std::uint32_t type = 0;
    std::uint32_t flag = 0;
    /// As many as the file holds of those it counts; null where the type or format is unknown or
    /// the subtable is bad.
    std::vector<std::unique_ptr<TTI_SubTable>> subtables;
};

/// A language system.
struct TTI_LangSys {
    struct OrderedLookup {
        std::uint32_t tag;
        std::uint32_t lookupIndex;
    };
    /// One entry for each lookup of each feature, ascending by lookup index; of one index, in the
    /// order of the features.
    std::vector<OrderedLookup> lookupOrder;
    /// Kept as in the file; a required feature is not applied by itself.
    std::uint16_t requiredFeatureIndex = 0xFFFF;
    std::uint16_t featureCount = 0;
    /// By tag; features of one tag stay in the order of the file.
    std::multimap<std::uint32_t, const TTI_Feature*> features;
};

/// The language systems of a script by language tag; the default one is under tag 0.
using TTI_Script = std::map<std::uint32_t, TTI_LangSys>;

/// A GSUB or GPOS table (OpenType, Common Table Formats), read into objects of our own: nothing in
/// it points back to the file. It does not change after `read` and is shared between threads.
class TTI_LayoutTable {
public:
    enum class Kind { Gsub, Gpos };
    enum class List { Features, Lookups, Scripts };

    TTI_LayoutTable() = default;
    TTI_LayoutTable(TTI_LayoutTable&&) = default;
    TTI_LayoutTable& operator=(TTI_LayoutTable&&) = default;

    /// Reads features, lookups and scripts, in this order; a list whose offset is 0 is absent.
    /// Answers the bad lists in the same order: those outside the table, and those that make it
    /// read beyond all measure. The others are usable all the same. Inside a list a bad feature
    /// table, lookup, subtable or language system is left out, and the places of the others stay.
    std::vector<List> read(KWCommonNS::ByteView table, Kind kind);

    const std::vector<TTI_Feature>& features() const { return features_; }
    const std::vector<TTI_Lookup>& lookups() const { return lookups_; }
    /// Null when there is no lookup of that index.
    const TTI_Lookup* lookup(std::size_t index) const;
    /// Null when the font does not list the script.
    const TTI_Script* script(std::uint32_t tag) const;

    /// The first feature record `vert`; null when there is none.
    const TTI_Feature* vertFeature() const;
    bool hasVertFeature() const { return vertFeature_ != kNoFeature; }
    /// What the single substitutions of the `vert` feature make of a glyph, 0xFFFF when nothing.
    unsigned short substituteVertical(unsigned short gid) const;

private:
    static constexpr std::size_t kNoFeature = ~std::size_t{0};

    bool readFeatures(KWCommonNS::ByteView list, LayoutBudget& budget);
    bool readLookups(KWCommonNS::ByteView list, Kind kind, LayoutBudget& budget);
    bool readScripts(KWCommonNS::ByteView list, LayoutBudget& budget);
    bool readScriptRecords(KWCommonNS::ByteView list, LayoutBudget& budget);
    bool readScript(KWCommonNS::ByteView table, TTI_Script& script, LayoutBudget& budget);
    bool readLangSys(KWCommonNS::ByteView table, TTI_LangSys& langSys, LayoutBudget& budget);
    void collectVertSubtables();

    std::vector<TTI_Feature> features_;
    std::vector<TTI_Lookup> lookups_;
    std::map<std::uint32_t, TTI_Script> scripts_;
    std::size_t vertFeature_ = kNoFeature;
    /// The single substitutions of the `vert` feature, in the order they are tried.
    std::vector<const TTI_SubTable*> vertSubtables_;
};

} // namespace KWFontService_NS
