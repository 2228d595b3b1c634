#include "layout/TTI_ScriptList.h"

#include "layout/LayoutBudget.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <unordered_map>

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

constexpr std::size_t kTaggedRecordSize = 6; // a tag and a 16-bit offset
constexpr std::size_t kScriptHeaderSize = 4;
constexpr std::size_t kLangSysHeaderSize = 6;

std::uint32_t tagOf(const TTI_Feature* feature) {
    return feature->tag;
}

} // namespace

std::span<const TTI_Feature* const> TTI_LangSys::featuresOf(std::uint32_t tag) const {
    const auto first = std::ranges::lower_bound(features, tag, {}, tagOf);
    const auto last = std::ranges::upper_bound(features, tag, {}, tagOf);
    return {first, last};
}

const TTI_LangSys* TTI_Script::find(std::uint32_t language) const {
    const auto it = std::ranges::lower_bound(languages_, language, {}, &Language::tag);
    return it != languages_.end() && it->tag == language ? it->langSys : nullptr;
}

const TTI_Script* TTI_ScriptList::find(std::uint32_t tag) const {
    const auto it = std::ranges::lower_bound(scripts_, tag, {}, &Entry::tag);
    return it != scripts_.end() && it->tag == tag ? &it->script : nullptr;
}

/// Makes language systems of their tables. Languages whose tables are one or equal share one
/// system, as most languages of a font do.
class TTI_ScriptList::LangSysMaker {
public:
    LangSysMaker(TTI_ScriptList& list, std::span<const TTI_Feature> features, LayoutBudget& budget)
        : list_(list), features_(features), budget_(budget) {}

    /// The place of a language system among all; nothing when it is beyond the budget.
    std::optional<std::size_t> make(const LangSysTables& tables) {
        std::string_view content;
        if (tables.size() == 1) {
            if (const auto known = byPlace_.find(tables[0].data()); known != byPlace_.end())
                return known->second;
            content = contentOf(tables[0]);
            if (!budget_.spend(content.size()))
                return std::nullopt;
            if (const auto known = byContent_.find(content); known != byContent_.end())
                return byPlace_[tables[0].data()] = known->second;
        }
        Extent extent{.firstLookup = list_.orderedLookups_.size(),
                      .firstFeature = list_.features_.size()};
        TTI_LangSys langSys;
        for (const ByteView table : tables) {
            if (!add(table, langSys)) {
                // None is better than half of one.
                list_.orderedLookups_.erase(list_.orderedLookups_.begin() +
                                                static_cast<std::ptrdiff_t>(extent.firstLookup),
                                            list_.orderedLookups_.end());
                list_.features_.resize(extent.firstFeature);
                return std::nullopt;
            }
        }
        const auto lookups = std::span(list_.orderedLookups_).subspan(extent.firstLookup);
        std::ranges::stable_sort(lookups, {}, [](const TTI_LangSys::OrderedLookup& entry) {
            return entry.lookupIndex();
        });
        const auto features = std::span(list_.features_).subspan(extent.firstFeature);
        std::ranges::stable_sort(features, {}, tagOf);
        extent.lookups = lookups.size();
        extent.features = features.size();
        extents_.push_back(extent);
        const std::size_t place = list_.langSystems_.size();
        list_.langSystems_.push_back(langSys);
        if (tables.size() == 1)
            byPlace_[tables[0].data()] = byContent_[content] = place;
        return place;
    }

    /// Ends the making: the arrays grow no more, and the systems learn where their parts are.
    void link() {
        list_.orderedLookups_.shrink_to_fit();
        list_.features_.shrink_to_fit();
        list_.langSystems_.shrink_to_fit();
        for (std::size_t i = 0; i < extents_.size(); ++i) {
            const Extent& extent = extents_[i];
            TTI_LangSys& langSys = list_.langSystems_[i];
            langSys.lookupOrder = std::span<const TTI_LangSys::OrderedLookup>(list_.orderedLookups_)
                                      .subspan(extent.firstLookup, extent.lookups);
            langSys.features = std::span<const TTI_Feature* const>(list_.features_)
                                   .subspan(extent.firstFeature, extent.features);
        }
    }

private:
    struct Extent {
        std::size_t firstLookup = 0;
        std::size_t firstFeature = 0;
        std::size_t lookups = 0;
        std::size_t features = 0;
    };

    /// All but the field that is reserved.
    static std::string_view contentOf(ByteView table) {
        const std::size_t indices =
            heldRecords(table, kLangSysHeaderSize, ByteView::loadU16(table.data() + 4), 2);
        return {reinterpret_cast<const char*>(table.data()) + 2,
                kLangSysHeaderSize - 2 + 2 * indices};
    }

    bool add(ByteView table, TTI_LangSys& langSys) {
        langSys.requiredFeatureIndex = ByteView::loadU16(table.data() + 2);
        langSys.featureCount = ByteView::loadU16(table.data() + 4);
        const U16List indices(table, kLangSysHeaderSize, langSys.featureCount);
        if (!budget_.spendObject(kLangSysHeaderSize + 2 * indices.size()))
            return false;
        for (const std::uint16_t index : indices) {
            if (index >= features_.size())
                continue;
            const TTI_Feature& feature = features_[index];
            // What is kept is more than the bytes that are read for it.
            if (!budget_.spend(sizeof(void*) +
                               sizeof(TTI_LangSys::OrderedLookup) * feature.lookupIndices.size()))
                return false;
            list_.features_.push_back(&feature);
            for (const std::uint16_t lookupIndex : feature.lookupIndices)
                list_.orderedLookups_.emplace_back(feature.tag, lookupIndex);
        }
        return true;
    }

    TTI_ScriptList& list_;
    std::span<const TTI_Feature> features_;
    LayoutBudget& budget_;
    std::vector<Extent> extents_;
    std::unordered_map<const std::uint8_t*, std::size_t> byPlace_;
    std::unordered_map<std::string_view, std::size_t> byContent_;
};

bool TTI_ScriptList::read(ByteView list, std::span<const TTI_Feature> features,
                          LayoutBudget& budget) {
    Tree tree;
    // Finding may use up its budget; what it has found until then is usable all the same.
    LayoutBudget making = budget;
    bool ok = readTree(list, budget, tree);
    const std::size_t before = making.left();
    LangSysMaker maker(*this, features, making);
    struct Place {
        std::uint32_t tag;
        std::size_t langSys;
    };
    std::vector<Place> places;
    std::vector<std::size_t> ends;
    for (const auto& [scriptTag, languages] : tree) {
        for (const auto& [language, tables] : languages) {
            if (const auto langSys = maker.make(tables))
                places.push_back({language, *langSys});
            else
                ok = false;
        }
        ends.push_back(places.size());
    }
    maker.link();
    languages_.reserve(places.size());
    for (const Place& place : places)
        languages_.push_back({place.tag, &langSystems_[place.langSys]});
    scripts_.reserve(tree.size());
    std::size_t start = 0;
    for (const auto& [scriptTag, languages] : tree) {
        const std::size_t end = ends[scripts_.size()];
        scripts_.push_back({scriptTag, TTI_Script(std::span<const TTI_Script::Language>(languages_)
                                                      .subspan(start, end - start))});
        start = end;
    }
    return budget.spend(before - making.left()) && ok;
}

bool TTI_ScriptList::readTree(ByteView list, LayoutBudget& budget, Tree& tree) {
    const auto count = list.u16(0);
    if (!count || !list.contains(2, kTaggedRecordSize * *count))
        return false;
    for (std::size_t i = 0; i < *count; ++i) {
        const std::uint8_t* record = list.data() + 2 + i * kTaggedRecordSize;
        const ByteView table = list.from(ByteView::loadU16(record + 4));
        if (!table.contains(0, kScriptHeaderSize))
            continue;
        // A repeated tag adds its languages to the script that is there.
        if (!readScript(table, budget, tree[ByteView::loadU32(record)]))
            return false;
    }
    return true;
}

bool TTI_ScriptList::readScript(ByteView table, LayoutBudget& budget,
                                std::map<std::uint32_t, LangSysTables>& languages) {
    const std::size_t count = heldRecords(table, kScriptHeaderSize,
                                          ByteView::loadU16(table.data() + 2), kTaggedRecordSize);
    if (!budget.spendObject(kScriptHeaderSize + count * kTaggedRecordSize))
        return false;
    const auto addLanguage = [&](std::uint32_t tag, std::uint16_t offset) {
        const ByteView langSys = table.from(offset);
        if (!langSys.contains(0, kLangSysHeaderSize))
            return true;
        if (!budget.spendObject(0))
            return false;
        languages[tag].push_back(langSys);
        return true;
    };
    const std::uint16_t defaultOffset = ByteView::loadU16(table.data());
    if (defaultOffset != 0 && !addLanguage(0, defaultOffset))
        return false;
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint8_t* record = table.data() + kScriptHeaderSize + i * kTaggedRecordSize;
        if (!addLanguage(ByteView::loadU32(record), ByteView::loadU16(record + 4)))
            return false;
    }
    return true;
}

} // namespace KWFontService_NS
