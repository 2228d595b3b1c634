#pragma once

#include "layout/LayoutArrays.h"

#include "common/ByteView.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <vector>

namespace KWFontService_NS {

class LayoutBudget;

/// A feature record with its feature table: which lookups a feature is made of.
struct TTI_Feature {
    std::uint32_t tag = 0;
    U16List lookupIndices;
};

/// A language system.
struct TTI_LangSys {
    class OrderedLookup {
    public:
        OrderedLookup(std::uint32_t tag, std::uint16_t lookupIndex)
            : tagHigh_(static_cast<std::uint16_t>(tag >> 16)),
              tagLow_(static_cast<std::uint16_t>(tag)), lookupIndex_(lookupIndex) {}

        /// Of the feature.
        std::uint32_t tag() const { return std::uint32_t{tagHigh_} << 16 | tagLow_; }
        std::uint16_t lookupIndex() const { return lookupIndex_; }

    private:
        // Halves, so that an entry packs without padding: fonts have a thousand of them.
        std::uint16_t tagHigh_;
        std::uint16_t tagLow_;
        std::uint16_t lookupIndex_;
    };

    /// One entry for each lookup of each feature, ascending by lookup index; of one index, in the
    /// order of the features.
    std::span<const OrderedLookup> lookupOrder;
    /// Ascending by tag; features of one tag stay in the order of the file.
    std::span<const TTI_Feature* const> features;
    /// Kept as in the file; a required feature is not applied by itself.
    std::uint16_t requiredFeatureIndex = 0xFFFF;
    std::uint16_t featureCount = 0;

    /// The features of one tag, in the order of the file.
    std::span<const TTI_Feature* const> featuresOf(std::uint32_t tag) const;
};

/// The language systems of a script.
class TTI_Script {
public:
    struct Language {
        std::uint32_t tag;
        const TTI_LangSys* langSys;
    };

    TTI_Script() = default;
    /// @param languages  ascending by tag
    explicit TTI_Script(std::span<const Language> languages) : languages_(languages) {}

    /// Null when the script does not list the language; the default one is under tag 0.
    const TTI_LangSys* find(std::uint32_t language) const;
    std::size_t size() const { return languages_.size(); }
    auto begin() const { return languages_.begin(); }
    auto end() const { return languages_.end(); }

private:
    std::span<const Language> languages_;
};

/// The scripts of a GSUB or GPOS table. Nothing changes after `read`.
class TTI_ScriptList {
public:
    TTI_ScriptList() = default;
    TTI_ScriptList(TTI_ScriptList&&) = default;
    TTI_ScriptList& operator=(TTI_ScriptList&&) = default;

    /// False when the list lies outside its table or makes it read beyond all measure; what has
    /// been read until then is usable. A bad script or language system is left out.
    /// @param features  of the table, which keeps them
    bool read(KWCommonNS::ByteView list, std::span<const TTI_Feature> features,
              LayoutBudget& budget);

    /// Null when the font does not list the script.
    const TTI_Script* find(std::uint32_t tag) const;

private:
    struct Entry {
        std::uint32_t tag;
        TTI_Script script;
    };
    /// The LangSys tables of a language: more than one when records repeat a tag.
    using LangSysTables = std::vector<KWCommonNS::ByteView>;
    using Tree = std::map<std::uint32_t, std::map<std::uint32_t, LangSysTables>>;
    class LangSysMaker;

    static bool readTree(KWCommonNS::ByteView list, LayoutBudget& budget, Tree& tree);
    static bool readScript(KWCommonNS::ByteView table, LayoutBudget& budget,
                           std::map<std::uint32_t, LangSysTables>& languages);

    std::vector<TTI_LangSys::OrderedLookup> orderedLookups_;
    std::vector<const TTI_Feature*> features_;
    std::vector<TTI_LangSys> langSystems_;
    std::vector<TTI_Script::Language> languages_;
    std::vector<Entry> scripts_;
};

} // namespace KWFontService_NS
