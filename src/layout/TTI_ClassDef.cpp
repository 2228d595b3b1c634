#include "layout/TTI_ClassDef.h"

#include "layout/LayoutArrays.h"

namespace KWFontService_NS {

using KWCommonNS::ByteView;

std::unique_ptr<TTI_ClassDef> TTI_ClassDef::read(ByteView table) {
    switch (table.u16(0).value_or(0)) {
    case 1:
        return std::make_unique<TTI_ClassDefFormat1>(table);
    case 2:
        return std::make_unique<TTI_ClassDefFormat2>(table);
    default:
        return nullptr;
    }
}

TTI_ClassDefFormat1::TTI_ClassDefFormat1(ByteView table)
    : startGlyph_(table.u16(2).value_or(0)),
      classes_(readU16s(table, 6, table.u16(4).value_or(0))) {}

int TTI_ClassDefFormat1::classOf(unsigned short) const {
    return -1;
}

TTI_ClassDefFormat2::TTI_ClassDefFormat2(ByteView table) {
    const std::size_t count = heldRecords(table, 4, table.u16(2).value_or(0), 6);
    ranges_.reserve(count);
    const std::uint8_t* p = table.from(4).data();
    for (std::size_t i = 0; i < count; ++i, p += 6)
        ranges_.push_back(
            {ByteView::loadU16(p), ByteView::loadU16(p + 2), ByteView::loadU16(p + 4)});
}

int TTI_ClassDefFormat2::classOf(unsigned short gid) const {
    const Range* range = findGlyphRange(ranges_, gid);
    return range ? range->glyphClass : -1;
}

} // namespace KWFontService_NS
