#include "layout/GPOS_PairPos.h"

#include "layout/GlyphPlacement.h"
#include "layout/LayoutArrays.h"
#include "layout/LayoutBudget.h"
#include "layout/PositionWalk.h"
#include "layout/TTI_ClassDef.h"
#include "layout/TTI_LookupList.h"

#include <algorithm>

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

/// Index of the second glyph of the pair that starts at `index`, -1 when there is none. Without
/// strict mode it is the next one, whatever that is.
int secondOfPair(LayoutCall& call, const TTI_Lookup& lookup,
                 const std::vector<GlyphIDPosition>& positions, int index) {
    const auto next = static_cast<std::size_t>(index) + 1;
    if (next >= positions.size())
        return -1;
    if (!GlyphPlacement::isStrict(positions[next - 1]))
        return static_cast<int>(next);
    return nearestPosition(
        call, positions, static_cast<int>(next), 1, [&](const GlyphIDPosition& candidate) {
            return !call.passesOver(lookup.flag, candidate.getGlyphIDClassPair());
        });
}

/// Moves both glyphs of a pair; false when there is nothing to apply.
/// @param index  in strict mode set to the last glyph that was taken, which the second one is not
///               when its value format is 0
bool movePair(const GPOS_PairValue& value, std::vector<GlyphIDPosition>& positions, int& index,
              int second, unsigned int valueFormat2) {
    GlyphIDPosition& glyph = positions[static_cast<std::size_t>(index)];
    const bool firstMoved = value.first.applyTo(glyph);
    const bool secondMoved = value.second.applyTo(positions[static_cast<std::size_t>(second)]);
    if (!firstMoved && !secondMoved)
        return false;
    if (GlyphPlacement::isStrict(glyph))
        index = valueFormat2 == 0 ? second - 1 : second;
    return true;
}

} // namespace

bool GPOS_PairPosFormat1::read(LayoutBudget& budget) {
    if (!table().contains(kPairSetCountField, 2) || !digestCoverage(budget))
        return false;
    const std::size_t count =
        heldRecords(table(), kPairSetOffsets, table().u16(kPairSetCountField).value_or(0), 2);
    for (std::size_t i = 0; i < count && sorted_; ++i) {
        const SecondGlyphs glyphs(pairSet(static_cast<int>(i)), recordSize());
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

ByteView GPOS_PairPosFormat1::pairSet(int index) const {
    if (index < 0 || index >= table().u16(kPairSetCountField).value_or(0))
        return {};
    return offsetTo(table(), kPairSetOffsets + 2 * static_cast<std::size_t>(index));
}

std::size_t GPOS_PairPosFormat1::recordSize() const {
    return 2 + GPOS_ValueRecord::size(valueFormat1()) + GPOS_ValueRecord::size(valueFormat2());
}

std::optional<GPOS_PairValue> GPOS_PairPosFormat1::pair(unsigned short first,
                                                        unsigned short second) const {
    return pairIn(pairSet(coverageIndex(first)), second);
}

std::optional<GPOS_PairValue> GPOS_PairPosFormat1::pairIn(ByteView set,
                                                          unsigned short second) const {
    const SecondGlyphs glyphs(set, recordSize());
    const std::size_t place = glyphs.search(second, sorted_);
    if (place >= glyphs.size() || glyphs[place] != second)
        return std::nullopt;
    return pairValue(set, 2 + recordSize() * place + 2, valueFormat1(), valueFormat2());
}

bool GPOS_PairPosFormat1::position(LayoutCall& call, const TTI_LookupList&,
                                   const TTI_Lookup& lookup,
                                   std::vector<GlyphIDPosition>& positions, int& index,
                                   bool) const {
    const ByteView set = pairSet(
        coverageIndex(positions[static_cast<std::size_t>(index)].getGlyphID(), &call.memo()));
    if (set.empty())
        return false;
    const int second = secondOfPair(call, lookup, positions, index);
    // Only where the glyphs of a set are out of order is it read from its start.
    if (second < 0 || (!sorted_ && !call.spendReads(set.u16(0).value_or(0))))
        return false;
    const auto value = pairIn(set, positions[static_cast<std::size_t>(second)].getGlyphID());
    return value && movePair(*value, positions, index, second, valueFormat2());
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

int GPOS_PairPosFormat2::class1Of(unsigned short gid, GlyphMemo* memo) const {
    return classByDefinition(table(), kClassDef1Field, gid, memo);
}

int GPOS_PairPosFormat2::class2Of(unsigned short gid, GlyphMemo* memo) const {
    return classByDefinition(table(), kClassDef2Field, gid, memo);
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

bool GPOS_PairPosFormat2::position(LayoutCall& call, const TTI_LookupList&,
                                   const TTI_Lookup& lookup,
                                   std::vector<GlyphIDPosition>& positions, int& index,
                                   bool) const {
    const GlyphIDPosition& glyph = positions[static_cast<std::size_t>(index)];
    GlyphMemo* const memo = &call.memo();
    if (!covers(glyph.getGlyphID(), memo))
        return false;
    const int second = secondOfPair(call, lookup, positions, index);
    if (second < 0)
        return false;
    int class1 = class1Of(glyph.getGlyphID(), memo);
    int class2 = class2Of(positions[static_cast<std::size_t>(second)].getGlyphID(), memo);
    if (GlyphPlacement::isStrict(glyph)) {
        class1 = std::max(class1, 0);
        class2 = std::max(class2, 0);
    }
    const auto value = pair(class1, class2);
    return value && movePair(*value, positions, index, second, valueFormat2());
}

} // namespace KWFontService_NS
