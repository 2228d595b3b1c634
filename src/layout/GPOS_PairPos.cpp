#include "layout/GPOS_PairPos.h"

#include "layout/LayoutArrays.h"
#include "layout/LayoutBudget.h"
#include "layout/TTI_ClassDef.h"

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

constexpr std::size_t kValueFormat1Field = 4;
constexpr std::size_t kValueFormat2Field = 6;
constexpr std::size_t kPairSetCountField = 8; // format 1
constexpr std::size_t kPairSetOffsets = 10;   // format 1
constexpr std::size_t kClassDef1Field = 8;    // format 2
constexpr std::size_t kClassDef2Field = 10;   // format 2
constexpr std::size_t kClass1CountField = 12; // format 2
constexpr std::size_t kClass2CountField = 14; // format 2
constexpr std::size_t kMatrix = 16;           // format 2

GPOS_PairValue pairValue(ByteView base, std::size_t offset, unsigned int format1,
                         unsigned int format2) {
    return {.first = {base, offset, format1},
            .second = {base, offset + GPOS_ValueRecord::size(format1), format2}};
}

/// The second glyphs of a pair set.
class SecondGlyphs {
public:
    SecondGlyphs(ByteView pairSet, std::size_t recordSize)
        : data_(pairSet.from(2).data()), recordSize_(recordSize),
          size_(heldRecords(pairSet, 2, pairSet.u16(0).value_or(0), recordSize)) {}

    std::size_t size() const { return size_; }
    std::uint16_t operator[](std::size_t i) const {
        return ByteView::loadU16(data_ + i * recordSize_);
    }
    bool ascend() const {
        for (std::size_t i = 1; i < size_; ++i) {
            if ((*this)[i - 1] >= (*this)[i])
                return false;
        }
        return true;
    }
    /// The first place of a glyph, or a place without it.
    std::size_t search(unsigned short gid, bool sorted) const {
        if (!sorted) {
            std::size_t i = 0;
            while (i < size_ && (*this)[i] != gid)
                ++i;
            return i;
        }
        std::size_t low = 0;
        std::size_t high = size_;
        while (low < high) {
            const std::size_t middle = (low + high) / 2;
            if ((*this)[middle] < gid)
                low = middle + 1;
            else
                high = middle;
        }
        return low;
    }

private:
    const std::uint8_t* data_;
    std::size_t recordSize_;
    std::size_t size_;
};

} // namespace

bool GPOS_PairPosFormat1::read(LayoutBudget& budget) {
    if (!table().contains(kPairSetCountField, 2) || !digestCoverage(budget))
        return false;
    const std::size_t count =
        heldRecords(table(), kPairSetOffsets, table().u16(kPairSetCountField).value_or(0), 2);
    for (std::size_t i = 0; i < count && sorted_; ++i) {
        const SecondGlyphs glyphs(pairSet(i), recordSize());
        if (!budget.spend(2 + 2 * glyphs.size()))
            return false;
        sorted_ = glyphs.ascend();
    }
    return true;
}

unsigned int GPOS_PairPosFormat1::valueFormat1() const {
    return table().u16(kValueFormat1Field).value_or(0);
}

unsigned int GPOS_PairPosFormat1::valueFormat2() const {
    return table().u16(kValueFormat2Field).value_or(0);
}

ByteView GPOS_PairPosFormat1::pairSet(std::size_t index) const {
    return offsetTo(table(), kPairSetOffsets + 2 * index);
}

std::size_t GPOS_PairPosFormat1::recordSize() const {
    return 2 + GPOS_ValueRecord::size(valueFormat1()) + GPOS_ValueRecord::size(valueFormat2());
}

std::optional<GPOS_PairValue> GPOS_PairPosFormat1::pair(unsigned short first,
                                                        unsigned short second) const {
    const int index = coverageIndex(first);
    if (index < 0 || index >= table().u16(kPairSetCountField).value_or(0))
        return std::nullopt;
    const ByteView set = pairSet(static_cast<std::size_t>(index));
    const SecondGlyphs glyphs(set, recordSize());
    const std::size_t place = glyphs.search(second, sorted_);
    if (place >= glyphs.size() || glyphs[place] != second)
        return std::nullopt;
    return pairValue(set, 2 + recordSize() * place + 2, valueFormat1(), valueFormat2());
}

bool GPOS_PairPosFormat2::read(LayoutBudget& budget) {
    return table().contains(kClass2CountField, 2) && digestCoverage(budget);
}

unsigned int GPOS_PairPosFormat2::valueFormat1() const {
    return table().u16(kValueFormat1Field).value_or(0);
}

unsigned int GPOS_PairPosFormat2::valueFormat2() const {
    return table().u16(kValueFormat2Field).value_or(0);
}

int GPOS_PairPosFormat2::class1Of(unsigned short gid) const {
    return classByDefinition(table(), kClassDef1Field, gid);
}

int GPOS_PairPosFormat2::class2Of(unsigned short gid) const {
    return classByDefinition(table(), kClassDef2Field, gid);
}

std::optional<GPOS_PairValue> GPOS_PairPosFormat2::pair(int class1, int class2) const {
    const int count1 = table().u16(kClass1CountField).value_or(0);
    const int count2 = table().u16(kClass2CountField).value_or(0);
    if (class1 < 0 || class1 >= count1 || class2 < 0 || class2 >= count2)
        return std::nullopt;
    const unsigned int format1 = valueFormat1();
    const unsigned int format2 = valueFormat2();
    const std::size_t size = GPOS_ValueRecord::size(format1) + GPOS_ValueRecord::size(format2);
    const std::size_t cell = static_cast<std::size_t>(class1) * static_cast<std::size_t>(count2) +
                             static_cast<std::size_t>(class2);
    const std::size_t offset = kMatrix + size * cell;
    if (!table().contains(offset, size))
        return std::nullopt;
    return pairValue(table(), offset, format1, format2);
}

} // namespace KWFontService_NS
