#pragma once

#include "layout/TTI_ClassDef.h"

#include "common/ByteView.h"

#include <memory>

namespace KWFontService_NS {

/// The glyph classes of a face (OpenType `GDEF`); either part may be absent.
struct TTI_Gdef {
    /// Which part of the table was bad.
    enum class Result { Ok, GlyphClassError, MarkAttachClassError };

    /// Reads both class definitions. A bad glyph class definition ends the reading; a bad mark
    /// attachment one is dropped alone.
    Result read(KWCommonNS::ByteView table);

    std::unique_ptr<TTI_ClassDef> glyphClass;
    std::unique_ptr<TTI_ClassDef> markAttachClass;
};

} // namespace KWFontService_NS
