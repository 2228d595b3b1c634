#include "layout/TTI_LayoutTable.h"

#include "layout/LayoutArrays.h"
#include "layout/LayoutBudget.h"
#include "layout/SubTableReader.h"

#include "common/KWLimits.h"

#include <KWFontService17/FS_Types.h>

#include <algorithm>
#include <optional>

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

constexpr std::uint32_t kVertTag = 0x76657274; // 'vert'

constexpr std::size_t kTaggedRecordSize = 6; // a tag and a 16-bit offset
constexpr std::size_t kFeatureHeaderSize = 4;
constexpr std::size_t kLookupHeaderSize = 6;
constexpr std::size_t kScriptHeaderSize = 4;
constexpr std::size_t kLangSysHeaderSize = 6;
/// More than the two bytes that are read for it.
constexpr std::size_t kOrderedLookupCost = sizeof(TTI_LangSys::OrderedLookup);

/// The number of records of a list; nothing when the list lies outside its table.
std::optional<std::size_t> listCount(ByteView list, std::size_t recordSize) {
    const auto count = list.u16(0);
    if (!count || !list.contains(2, *count * recordSize))
        return std::nullopt;
    return *count;
}

} // namespace

std::vector<TTI_LayoutTable::List> TTI_LayoutTable::read(ByteView table, Kind kind) {
    LayoutBudget budget(table.size());
    std::vector<List> bad;
    const auto readList = [&](List list, std::size_t field, auto readIt) {
        const std::uint16_t offset = table.u16(field).value_or(0);
        if (offset != 0 && !readIt(table.from(offset)))
            bad.push_back(list);
    };
    readList(List::Features, 6, [&](ByteView list) { return readFeatures(list, budget); });
    readList(List::Lookups, 8, [&](ByteView list) { return readLookups(list, kind, budget); });
    // Scripts come last since they link to the feature records.
    readList(List::Scripts, 4, [&](ByteView list) { return readScripts(list, budget); });
    collectVertSubtables();
    return bad;
}

bool TTI_LayoutTable::readFeatures(ByteView list, LayoutBudget& budget) {
    const auto count = listCount(list, kTaggedRecordSize);
    if (!count)
        return false;
    features_.resize(*count);
    for (std::size_t i = 0; i < *count; ++i) {
        const std::uint8_t* record = list.data() + 2 + i * kTaggedRecordSize;
        TTI_Feature& feature = features_[i];
        feature.tag = ByteView::loadU32(record);
        if (feature.tag == kVertTag && vertFeature_ == kNoFeature)
            vertFeature_ = i;
        const ByteView table = list.from(ByteView::loadU16(record + 4));
        const std::size_t lookupCount = table.u16(2).value_or(0);
        if (!budget.spend(kFeatureHeaderSize +
                          2 * heldRecords(table, kFeatureHeaderSize, lookupCount, 2)))
            return false;
        feature.lookupIndices = readU16s(table, kFeatureHeaderSize, lookupCount);
    }
    return true;
}

bool TTI_LayoutTable::readLookups(ByteView list, Kind kind, LayoutBudget& budget) {
    const auto count = listCount(list, 2);
    if (!count)
        return false;
    lookups_.resize(*count);
    SubTableReader reader(budget);
    for (std::size_t i = 0; i < *count; ++i) {
        const ByteView table = list.from(ByteView::loadU16(list.data() + 2 + 2 * i));
        if (!table.contains(0, kLookupHeaderSize))
            continue;
        TTI_Lookup& lookup = lookups_[i];
        const std::uint32_t type = ByteView::loadU16(table.data());
        lookup.type = type;
        lookup.flag = ByteView::loadU16(table.data() + 2);
        const std::vector<std::uint16_t> offsets =
            readU16s(table, kLookupHeaderSize, ByteView::loadU16(table.data() + 4));
        if (!budget.spend(kLookupHeaderSize + 2 * offsets.size()))
            return false;
        lookup.subtables.reserve(offsets.size());
        for (const std::uint16_t offset : offsets) {
            if (!budget.spendObject(0))
                return false;
            lookup.subtables.push_back(kind == Kind::Gsub
                                           ? reader.readGsub(table.from(offset), type, lookup.type)
                                           : reader.readGpos(table.from(offset), type));
        }
        if (budget.exhausted())
            return false;
    }
    return true;
}

bool TTI_LayoutTable::readScripts(ByteView list, LayoutBudget& budget) {
    const bool ok = readScriptRecords(list, budget);
    // Only now: a tag may be repeated thousands of times, and adds to its language system each
    // time.
    for (auto& [script, languages] : scripts_) {
        for (auto& [language, langSys] : languages) {
            std::ranges::stable_sort(langSys.lookupOrder, {},
                                     &TTI_LangSys::OrderedLookup::lookupIndex);
            langSys.lookupOrder.shrink_to_fit();
        }
    }
    return ok;
}

bool TTI_LayoutTable::readScriptRecords(ByteView list, LayoutBudget& budget) {
    const auto count = listCount(list, kTaggedRecordSize);
    if (!count)
        return false;
    for (std::size_t i = 0; i < *count; ++i) {
        const std::uint8_t* record = list.data() + 2 + i * kTaggedRecordSize;
        const ByteView table = list.from(ByteView::loadU16(record + 4));
        if (!table.contains(0, kScriptHeaderSize))
            continue;
        // A repeated tag adds its languages to the script that is there.
        if (!readScript(table, scripts_[ByteView::loadU32(record)], budget))
            return false;
    }
    return true;
}

bool TTI_LayoutTable::readScript(ByteView table, TTI_Script& script, LayoutBudget& budget) {
    const std::size_t count = heldRecords(table, kScriptHeaderSize,
                                          ByteView::loadU16(table.data() + 2), kTaggedRecordSize);
    if (!budget.spendObject(kScriptHeaderSize + count * kTaggedRecordSize))
        return false;
    const auto readLanguage = [&](std::uint32_t tag, std::uint16_t offset) {
        const ByteView langSys = table.from(offset);
        return !langSys.contains(0, kLangSysHeaderSize) ||
               readLangSys(langSys, script[tag], budget);
    };
    const std::uint16_t defaultOffset = ByteView::loadU16(table.data());
    if (defaultOffset != 0 && !readLanguage(0, defaultOffset))
        return false;
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint8_t* record = table.data() + kScriptHeaderSize + i * kTaggedRecordSize;
        if (!readLanguage(ByteView::loadU32(record), ByteView::loadU16(record + 4)))
            return false;
    }
    return true;
}

bool TTI_LayoutTable::readLangSys(ByteView table, TTI_LangSys& langSys, LayoutBudget& budget) {
    langSys.requiredFeatureIndex = ByteView::loadU16(table.data() + 2);
    langSys.featureCount = ByteView::loadU16(table.data() + 4);
    const std::vector<std::uint16_t> indices =
        readU16s(table, kLangSysHeaderSize, langSys.featureCount);
    if (!budget.spendObject(kLangSysHeaderSize + 2 * indices.size()))
        return false;
    for (const std::uint16_t index : indices) {
        if (index >= features_.size())
            continue;
        const TTI_Feature& feature = features_[index];
        if (!budget.spendObject(kOrderedLookupCost * feature.lookupIndices.size()))
            return false;
        langSys.features.emplace(feature.tag, &feature);
        for (const std::uint16_t lookupIndex : feature.lookupIndices)
            langSys.lookupOrder.push_back({feature.tag, lookupIndex});
    }
    return true;
}

const TTI_Lookup* TTI_LayoutTable::lookup(std::size_t index) const {
    return index < lookups_.size() ? &lookups_[index] : nullptr;
}

const TTI_Script* TTI_LayoutTable::script(std::uint32_t tag) const {
    const auto it = scripts_.find(tag);
    return it == scripts_.end() ? nullptr : &it->second;
}

const TTI_Feature* TTI_LayoutTable::vertFeature() const {
    return hasVertFeature() ? &features_[vertFeature_] : nullptr;
}

void TTI_LayoutTable::collectVertSubtables() {
    const TTI_Feature* vert = vertFeature();
    if (!vert)
        return;
    std::vector<bool> taken(lookups_.size());
    for (const std::uint16_t index : vert->lookupIndices) {
        // A lookup that is named again has nothing new to say.
        if (index >= lookups_.size() || taken[index])
            continue;
        taken[index] = true;
        for (const auto& subtable : lookups_[index].subtables) {
            if (!subtable || subtable->lookupType() != kGsubSingle)
                continue;
            if (vertSubtables_.size() == KWCommonNS::kMaxVertSubtables)
                return;
            vertSubtables_.push_back(subtable.get());
        }
    }
}

unsigned short TTI_LayoutTable::substituteVertical(unsigned short gid) const {
    for (const TTI_SubTable* subtable : vertSubtables_) {
        const unsigned short substitute = subtable->substituteSingle(gid);
        if (substitute != FS_NO_GLYPH)
            return substitute;
    }
    return FS_NO_GLYPH;
}

} // namespace KWFontService_NS
