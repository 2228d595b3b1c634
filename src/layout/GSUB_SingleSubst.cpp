#include "layout/GSUB_SingleSubst.h"

#include "layout/LayoutArrays.h"
#include "layout/SubTableReader.h"

#include <KWFontService17/FS_Types.h>

namespace KWFontService_NS {

using KWCommonNS::ByteView;

std::unique_ptr<TTI_SubTable> GSUB_SingleSubstFormat1::read(SubTableReader& reader,
                                                            ByteView table) {
    const auto delta = table.u16(4);
    auto coverage = reader.coverage(table, 2);
    if (!delta || !coverage)
        return nullptr;
    auto subtable = std::make_unique<GSUB_SingleSubstFormat1>();
    subtable->coverage_ = std::move(coverage);
    subtable->deltaGlyphID_ = *delta;
    return subtable;
}

unsigned short GSUB_SingleSubstFormat1::substituteSingle(unsigned short gid) const {
    if (coverage_->coverageIndex(gid) < 0)
        return FS_NO_GLYPH;
    return static_cast<unsigned short>(gid + deltaGlyphID_);
}

std::unique_ptr<TTI_SubTable> GSUB_SingleSubstFormat2::read(SubTableReader& reader,
                                                            ByteView table) {
    const auto count = table.u16(4);
    auto coverage = reader.coverage(table, 2);
    if (!count || !coverage || !reader.spend(heldRecords(table, 6, *count, 2) * 2))
        return nullptr;
    auto subtable = std::make_unique<GSUB_SingleSubstFormat2>();
    subtable->coverage_ = std::move(coverage);
    subtable->substitutes_ = readU16s(table, 6, *count);
    return subtable;
}

unsigned short GSUB_SingleSubstFormat2::substituteSingle(unsigned short gid) const {
    const int index = coverage_->coverageIndex(gid);
    if (index < 0 || static_cast<std::size_t>(index) >= substitutes_.size())
        return FS_NO_GLYPH;
    return substitutes_[static_cast<std::size_t>(index)];
}

} // namespace KWFontService_NS
