#include "layout/SubTableFilter.h"

#include "layout/GlyphMemo.h"
#include "layout/TTI_LookupList.h"

#include <algorithm>

namespace KWFontService_NS {

namespace {

const std::uint8_t* addressOf(const void* object) {
    return static_cast<const std::uint8_t*>(object);
}

} // namespace

bool SubTableFilter::isWorthIt(const TTI_Lookup& lookup, const GlyphMemo& memo) {
    constexpr std::size_t kFew = 2;
    if (lookup.subtables.size() <= kFew || !memo.remembers())
        return false;
    const TTI_SubTable* first = lookup.subtables.front().get();
    return first != nullptr && first->isFilterable();
}

SubTableFilter::SubTableFilter(const TTI_Lookup& lookup, GlyphMemo& memo)
    : lookup_(lookup), memo_(memo), size_(lookup.subtables.size()),
      groups_(std::min(size_, kGroups)) {}

template <class Admits>
std::uint32_t SubTableFilter::groupsOf(Admits admits) const {
    std::uint32_t found = 0;
    for (std::size_t i = 0; i < size_; ++i) {
        const TTI_SubTable* subtable = lookup_.subtables[i].get();
        if (subtable != nullptr && admits(*subtable))
            found |= std::uint32_t{1} << groupOf(i);
    }
    return found;
}

void SubTableFilter::startAt(unsigned short gid) {
    candidates_ &=
        static_cast<std::uint32_t>(memo_.answer(addressOf(lookup_.subtables.data()), gid, [&] {
            return static_cast<int>(
                groupsOf([gid](const TTI_SubTable& subtable) { return subtable.startsWith(gid); }));
        }));
}

void SubTableFilter::followWith(unsigned short gid) {
    candidates_ &= static_cast<std::uint32_t>(memo_.answer(addressOf(&lookup_), gid, [&] {
        return static_cast<int>(
            groupsOf([gid](const TTI_SubTable& subtable) { return subtable.mayGoOnWith(gid); }));
    }));
}

} // namespace KWFontService_NS
