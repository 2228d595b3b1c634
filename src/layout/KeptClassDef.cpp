#include "layout/KeptClassDef.h"

#include "layout/TTI_ClassDef.h"

namespace KWFontService_NS {

KeptClassDef::KeptClassDef(KWCommonNS::ByteView source) {
    const auto found = TTI_ClassDef::read(source);
    if (!found)
        return;
    isThere_ = true;
    const TTI_ClassDefFormat2* format2 = found->format2();
    if (format2 == nullptr)
        return; // format 1 deliberately matches nothing
    const GlyphRangeList& ranges = format2->ranges();
    ranges_.reserve(ranges.size());
    for (std::size_t i = 0; i < ranges.size(); ++i) {
        const GlyphRange range = ranges[i];
        sorted_ = sorted_ && range.start <= range.end &&
                  (ranges_.empty() || ranges_.back().end < range.start);
        ranges_.push_back(range);
    }
    if (!sorted_ || ranges_.empty())
        return;
    const std::size_t pageCount = ranges_.back().end / kPageGlyphs + 1;
    pages_.reserve(pageCount);
    std::size_t first = 0;
    for (std::size_t page = 0; page < pageCount; ++page) {
        while (ranges_[first].end < page * kPageGlyphs)
            ++first;
        pages_.push_back(static_cast<std::uint16_t>(first));
    }
}

int KeptClassDef::searchedClassOf(unsigned short gid) const {
    if (gid == kNoGlyph)
        return -1;
    const std::size_t place = searchEntry(ranges_.size(), [&](std::size_t i) {
        return compareToRange(gid, ranges_[i].start, ranges_[i].end);
    });
    return place < ranges_.size() ? ranges_[place].value : -1;
}

} // namespace KWFontService_NS
