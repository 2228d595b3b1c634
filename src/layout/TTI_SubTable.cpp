#include "layout/TTI_SubTable.h"

#include "layout/LayoutArrays.h"
#include "layout/LayoutBudget.h"
#include "layout/TTI_Coverage.h"

#include <KWFontService17/FS_Types.h>

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

constexpr std::size_t kCoverageField = 2;

} // namespace

TTI_SubTable::~TTI_SubTable() = default;

bool TTI_SubTable::isFilterable() const {
    return false;
}

bool TTI_SubTable::startsWith(unsigned short gid) const {
    return mayApply(gid);
}

bool TTI_SubTable::mayGoOnWith(unsigned short) const {
    return true;
}

unsigned short TTI_SubTable::substituteSingle(unsigned short) const {
    return FS_NO_GLYPH;
}

unsigned short TTI_SubTable::substituteAlternate(unsigned short, int) const {
    return FS_NO_GLYPH;
}

unsigned short TTI_SubTable::substituteLigature(LayoutCall&, const GlyphIDArray&, int&,
                                                unsigned int, std::vector<int>&) const {
    return FS_NO_GLYPH;
}

int TTI_SubTable::matchContext(LayoutCall&, TTI_LookupRecords&, const GlyphIDArray&, int,
                               unsigned int, std::vector<int>&) const {
    return 0;
}

unsigned short TTI_SubTable::substituteReverse(LayoutCall&, const GlyphIDArray&, int,
                                               unsigned int) const {
    return FS_NO_GLYPH;
}

bool TTI_SubTable::position(LayoutCall&, const TTI_LookupList&, const TTI_Lookup&,
                            std::vector<GlyphIDPosition>&, int&, bool) const {
    return false;
}

int TTI_SubTable::coverageIndex(unsigned short gid, GlyphMemo* memo) const {
    return mayApply(gid) ? coverageIndexIn(offsetTo(table(), kCoverageField), gid, memo) : -1;
}

bool TTI_SubTable::hasCoverage() const {
    return TTI_Coverage::read(offsetTo(table(), kCoverageField)).has_value();
}

bool TTI_SubTable::digestCoverage(LayoutBudget& budget) {
    return digestCoverage(budget, offsetTo(table(), kCoverageField));
}

bool TTI_SubTable::digestCoverage(LayoutBudget& budget, ByteView coverage) {
    const auto found = TTI_Coverage::read(coverage);
    if (!found || !budget.spend(found->byteSize()))
        return false;
    digest_ = found->digest();
    return true;
}

} // namespace KWFontService_NS
