#include "layout/TTI_Gdef.h"

namespace KWFontService_NS {

TTI_Gdef::Result TTI_Gdef::read(KWCommonNS::ByteView table) {
    if (const auto offset = table.u16(4).value_or(0)) {
        glyphClass = KeptClassDef(table.from(offset));
        if (!glyphClass)
            return Result::GlyphClassError;
    }
    if (const auto offset = table.u16(10).value_or(0)) {
        markAttachClass = KeptClassDef(table.from(offset));
        if (!markAttachClass)
            return Result::MarkAttachClassError;
    }
    return Result::Ok;
}

} // namespace KWFontService_NS
