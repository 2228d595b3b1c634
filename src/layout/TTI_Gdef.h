#pragma once

#include "layout/KeptClassDef.h"

#include "common/ByteView.h"

#include <KWFontService17/FS_Types.h>

namespace KWFontService_NS {

/// The glyph classes of a face (OpenType `GDEF`); either part may be absent. Attachment points,
/// ligature carets and mark glyph sets are not read.
struct TTI_Gdef {
    /// Which part of the table was bad.
    enum class Result { Ok, GlyphClassError, MarkAttachClassError };

    /// Reads both class definitions. A bad glyph class definition ends the reading; a bad mark
    /// attachment one is dropped alone.
    Result read(KWCommonNS::ByteView table);

    /// -1 for glyph id 0xFFFF, without the class definition, and for a glyph it does not list.
    GlyphClassDef classOf(unsigned short gid) const {
        return static_cast<GlyphClassDef>(glyphClass.classOf(gid));
    }
    int markAttachClassOf(unsigned short gid) const { return markAttachClass.classOf(gid); }

    KeptClassDef glyphClass;
    KeptClassDef markAttachClass;
};

} // namespace KWFontService_NS
