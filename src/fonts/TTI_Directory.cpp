#include "fonts/TTI_Directory.h"

#include <algorithm>

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

/// A sum past 32 bits would come back to the start of the file; it is past every file instead.
std::uint32_t sumOrEnd(std::uint32_t offset, std::uint32_t rebase) {
    constexpr std::uint32_t kEnd = 0xFFFFFFFF;
    return offset > kEnd - rebase ? kEnd : offset + rebase;
}

} // namespace

TTI_Directory::TTI_Directory(std::uint32_t version, ByteView records, std::uint32_t rebase)
    : version_(version) {
    const std::size_t count = records.size() / kRecordSize;
    records_.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint8_t* p = records.data() + i * kRecordSize;
        records_.push_back({ByteView::loadU32(p), ByteView::loadU32(p + 4),
                            sumOrEnd(ByteView::loadU32(p + 8), rebase), ByteView::loadU32(p + 12)});
    }
    const auto byTag = [](const TTI_TableRecord& a, const TTI_TableRecord& b) {
        return a.tag < b.tag;
    };
    const auto sameTag = [](const TTI_TableRecord& a, const TTI_TableRecord& b) {
        return a.tag == b.tag;
    };
    // Stable, so that the first record of a repeated tag stays.
    std::stable_sort(records_.begin(), records_.end(), byTag);
    records_.erase(std::unique(records_.begin(), records_.end(), sameTag), records_.end());
}

const TTI_TableRecord* TTI_Directory::find(std::uint32_t tag) const {
    const auto it = std::lower_bound(
        records_.begin(), records_.end(), tag,
        [](const TTI_TableRecord& record, std::uint32_t t) { return record.tag < t; });
    return it != records_.end() && it->tag == tag ? &*it : nullptr;
}

} // namespace KWFontService_NS
