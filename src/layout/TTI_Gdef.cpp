#include "layout/TTI_Gdef.h"

namespace KWFontService_NS {

namespace {

int classIn(const KeptTable<TTI_ClassDef>& classes, unsigned short gid) {
    return gid != FS_NO_GLYPH && classes ? classes->classOf(gid) : -1;
}

} // namespace

TTI_Gdef::Result TTI_Gdef::read(KWCommonNS::ByteView table) {
    if (const auto offset = table.u16(4).value_or(0)) {
        glyphClass = KeptTable<TTI_ClassDef>(table.from(offset));
        if (!glyphClass)
            return Result::GlyphClassError;
    }
    if (const auto offset = table.u16(10).value_or(0)) {
        markAttachClass = KeptTable<TTI_ClassDef>(table.from(offset));
        if (!markAttachClass)
            return Result::MarkAttachClassError;
    }
    return Result::Ok;
}

GlyphClassDef TTI_Gdef::classOf(unsigned short gid) const {
    return static_cast<GlyphClassDef>(classIn(glyphClass, gid));
}

int TTI_Gdef::markAttachClassOf(unsigned short gid) const {
    return classIn(markAttachClass, gid);
}

} // namespace KWFontService_NS
