#include "layout/SubTableFilter.h"

#include "layout/LayoutCall.h"
#include "layout/TTI_LookupList.h"

#include <optional>

namespace KWFontService_NS {

bool SubTableFilter::isWorthIt(const TTI_Lookup& lookup, const GlyphMemo& memo) {
    constexpr std::size_t kFew = 2;
    if (lookup.subtables.size() <= kFew || !memo.remembers())
        return false;
    const TTI_SubTable* first = lookup.subtables.front().get();
    return first != nullptr && first->isFilterable();
}

SubTableFilter::SubTableFilter(const TTI_Lookup& lookup, LayoutCall& call)
    : lookup_(lookup), call_(call), size_(lookup.subtables.size()),
      groupSize_((size_ + kGroups - 1) / kGroups) {}

template <class Admits>
void SubTableFilter::rule(GlyphMemo::Kind kind, unsigned short gid, Admits admits) {
    if (candidates_ == 0)
        return;
    const auto* place = reinterpret_cast<const std::uint8_t*>(&lookup_);
    const auto search = [&]() -> std::optional<int> {
        if (!call_.spend(size_))
            return std::nullopt;
        std::uint32_t admitted = 0;
        for (std::size_t i = 0; i < size_; ++i) {
            const TTI_SubTable* subtable = lookup_.subtables[i].get();
            if (subtable != nullptr && admits(*subtable))
                admitted |= std::uint32_t{1} << i / groupSize_;
        }
        return static_cast<int>(admitted);
    };
    const auto admitted = call_.memo().answerIfAny(kind, place, gid, search);
    candidates_ &= static_cast<std::uint32_t>(admitted.value_or(0));
}

void SubTableFilter::startAt(unsigned short gid) {
    rule(GlyphMemo::Kind::LookupStart, gid,
         [gid](const TTI_SubTable& subtable) { return subtable.startsWith(gid); });
}

void SubTableFilter::followWith(unsigned short gid) {
    rule(GlyphMemo::Kind::LookupNext, gid,
         [gid](const TTI_SubTable& subtable) { return subtable.mayGoOnWith(gid); });
}

} // namespace KWFontService_NS
