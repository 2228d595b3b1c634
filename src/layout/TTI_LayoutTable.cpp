#include "layout/TTI_LayoutTable.h"

#include "layout/LayoutArrays.h"
#include "layout/LayoutBudget.h"

#include "common/KWLimits.h"
#include "common/TagText.h"

#include <KWFontService17/FS_Types.h>

#include <utility>

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

constexpr std::uint32_t kVertTag = KWCommonNS::sfntTag("vert");

constexpr std::size_t kScriptListField = 4;
constexpr std::size_t kFeatureListField = 6;
constexpr std::size_t kLookupListField = 8;
constexpr std::size_t kFeatureRecordSize = 6; // a tag and a 16-bit offset
constexpr std::size_t kFeatureHeaderSize = 4;

} // namespace

std::vector<TTI_LayoutTable::List> TTI_LayoutTable::read(std::vector<std::uint8_t> bytes,
                                                         Kind kind) {
    LayoutBudget budget(bytes.size());
    return read(std::move(bytes), kind, budget);
}

std::vector<TTI_LayoutTable::List> TTI_LayoutTable::read(std::vector<std::uint8_t> bytes, Kind kind,
                                                         LayoutBudget& budget) {
    bytes_ = std::move(bytes);
    number_ = GlyphMemo::newTableNumber();
    const ByteView table(bytes_.data(), bytes_.size());
    std::vector<List> bad;
    const auto readList = [&](List list, std::size_t field, auto readIt) {
        const std::uint16_t offset = table.u16(field).value_or(0);
        if (offset != 0 && !readIt(table.from(offset)))
            bad.push_back(list);
    };
    readList(List::Features, kFeatureListField,
             [&](ByteView list) { return readFeatures(list, budget); });
    readList(List::Lookups, kLookupListField,
             [&](ByteView list) { return lookups_.read(list, kind, budget); });
    // Scripts come last since they link to the feature records.
    readList(List::Scripts, kScriptListField,
             [&](ByteView list) { return scripts_.read(list, features_, budget); });
    collectVertSubtables();
    return bad;
}

bool TTI_LayoutTable::readFeatures(ByteView list, LayoutBudget& budget) {
    const auto count = list.u16(0);
    if (!count || !list.contains(2, kFeatureRecordSize * *count) ||
        !budget.spend(kFeatureRecordSize * *count))
        return false;
    features_.resize(*count);
    for (std::size_t i = 0; i < *count; ++i) {
        const std::uint8_t* record = list.data() + 2 + i * kFeatureRecordSize;
        TTI_Feature& feature = features_[i];
        feature.tag = ByteView::loadU32(record);
        if (feature.tag == kVertTag && vertFeature_ == kNoFeature)
            vertFeature_ = i;
        const ByteView table = list.from(ByteView::loadU16(record + 4));
        feature.lookupIndices = U16List(table, kFeatureHeaderSize, table.u16(2).value_or(0));
    }
    return true;
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
        for (const auto& subtable : lookup(index)->subtables) {
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
