#pragma once

#include <KWCommon15/KWUnicodeRange.h>
#include <KWCommon15/KWUri.h>

#include <memory>

namespace KWFontService_NS {

/// What the configuration says of one font file.
struct FS_FontFileOptions {
    KWCommonNS::KWUri glyphList;
    bool skipGlyphNameMapping = false;
    bool fontExclude = false;
    bool useZeroGlyphId = false;
    float fontSizeAdjust = 1.0F;
    float baselineAdjust = 0.0F;
    std::unique_ptr<KWCommonNS::KWUnicodeRange> unicodeRange;
};

} // namespace KWFontService_NS
