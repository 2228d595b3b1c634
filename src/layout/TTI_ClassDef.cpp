#include "layout/TTI_ClassDef.h"

namespace KWFontService_NS {

using KWCommonNS::ByteView;

TTI_ClassDefFormat1::TTI_ClassDefFormat1(ByteView table)
    : startGlyph_(table.u16(2).value_or(0)), classes_(table, 6, table.u16(4).value_or(0)) {}

int TTI_ClassDefFormat1::classOf(unsigned short) const {
    return -1;
}

TTI_ClassDefFormat2::TTI_ClassDefFormat2(ByteView table)
    : ranges_(table, 4, table.u16(2).value_or(0)) {}

int TTI_ClassDefFormat2::classOf(unsigned short gid) const {
    const auto range = ranges_.find(gid);
    return range ? range->value : -1;
}

std::optional<TTI_ClassDef> TTI_ClassDef::read(ByteView table) {
    switch (table.u16(0).value_or(0)) {
    case 1:
        return TTI_ClassDef(TTI_ClassDefFormat1(table));
    case 2:
        return TTI_ClassDef(TTI_ClassDefFormat2(table));
    default:
        return std::nullopt;
    }
}

int TTI_ClassDef::classOf(unsigned short gid) const {
    return std::visit([gid](const auto& format) { return format.classOf(gid); }, format_);
}

int classByDefinition(ByteView base, std::size_t field, unsigned short gid, GlyphMemo* memo) {
    const ByteView table = offsetTo(base, field);
    const auto search = [&] {
        const auto definition = TTI_ClassDef::read(table);
        return definition ? definition->classOf(gid) : -1;
    };
    return memo != nullptr ? memo->answer(GlyphMemo::Kind::ClassDef, table.data(), gid, search)
                           : search();
}

} // namespace KWFontService_NS
