#include "layout/TTI_Mort.h"

#include "layout/LayoutArrays.h"

#include <KWFontService17/FS_Types.h>

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

constexpr std::size_t kChainHeaderSize = 12;
constexpr std::size_t kFeatureEntrySize = 12;
constexpr std::size_t kPairsOffset = 20; // behind the subtable's header and its search header

constexpr unsigned int kVertical = 0x8000;
constexpr unsigned int kTypeMask = 7;
constexpr unsigned int kNonContextual = 4;
constexpr unsigned int kSingleTableFormat = 6;

} // namespace

void TTI_Mort::read(ByteView table) {
    const std::uint32_t chainCount = table.u32(4).value_or(0);
    ByteView chain = table.from(8);
    for (std::uint32_t i = 0; i < chainCount && chain.contains(0, kChainHeaderSize); ++i) {
        const std::size_t entries = ByteView::loadU16(chain.data() + 8);
        const std::size_t subtables = ByteView::loadU16(chain.data() + 10);
        const ByteView subtable = chain.from(kChainHeaderSize + kFeatureEntrySize * entries);
        const unsigned int coverage = subtable.u16(2).value_or(0);
        if (subtables != 0 && (coverage & kVertical) && (coverage & kTypeMask) == kNonContextual) {
            if (subtable.u16(8) == kSingleTableFormat) {
                const std::size_t count =
                    heldRecords(subtable, kPairsOffset, subtable.u16(12).value_or(0), 4);
                const std::uint8_t* p = subtable.from(kPairsOffset).data();
                pairs_.reserve(count);
                for (std::size_t k = 0; k < count; ++k, p += 4)
                    pairs_.push_back({ByteView::loadU16(p), ByteView::loadU16(p + 2)});
            }
            return;
        }
        const std::uint32_t length = ByteView::loadU32(chain.data() + 4);
        if (length == 0)
            return; // the same chain over and over
        chain = chain.from(length);
    }
}

unsigned short TTI_Mort::substitute(unsigned short gid) const {
    std::size_t low = 0;
    std::size_t high = pairs_.size();
    while (low < high) {
        const std::size_t middle = (low + high) / 2;
        if (gid < pairs_[middle].gid)
            high = middle;
        else if (gid > pairs_[middle].gid)
            low = middle + 1;
        else
            return pairs_[middle].substitute;
    }
    return FS_NO_GLYPH;
}

} // namespace KWFontService_NS
