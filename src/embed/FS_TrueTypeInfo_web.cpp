#include "embed/WoffWriter.h"
#include "fonts/FS_TrueTypeInfo.h"

#include <KWCommon15/KWMemStream.h>

namespace KWFontService_NS {

namespace {
constexpr std::size_t kScratchSize = 8192;
}

bool FS_TrueTypeInfo::makeWebFont(const std::vector<unsigned short>& glyphs, KWMemStream& output,
                                  std::istream* stream) {
    KWMemStream sfnt(nullptr, kScratchSize);
    return makeSubsetFont(glyphs, sfnt, stream) && makeWOFF(output, sfnt);
}

} // namespace KWFontService_NS
