#include "fonts/FontTyping.h"

#include "fonts/FS_DFont.h"
#include "fonts/FS_OpenType.h"
#include "fonts/FS_TrueType.h"
#include "fonts/FS_TrueTypeCollection.h"
#include "fonts/FS_Type1AFM.h"
#include "fonts/FS_Type1PFM.h"
#include "fonts/FS_WOFF.h"

#include <array>

namespace KWFontService_NS {

using KWCommonNS::KWPtr;

FS_FontFileType sfntTypeOf(std::istream& stream) {
    stream.clear();
    const std::streampos start = stream.tellg();
    std::array<char, 4> signature{};
    stream.read(signature.data(), signature.size());
    stream.clear();
    stream.seekg(start);
    const bool cff = std::string_view(signature.data(), signature.size()) == "OTTO";
    return cff ? FS_FILETYPE_OPENTYPE : FS_FILETYPE_TRUETYPE;
}

KWPtr<FS_BaseFont> createFontObject(const KWUri& uri, FS_FontFileType type) {
    switch (type) {
    case FS_FILETYPE_AFM:
        return KWPtr<FS_BaseFont>(new FS_Type1AFM(uri));
    case FS_FILETYPE_PFM:
        return KWPtr<FS_BaseFont>(new FS_Type1PFM(uri));
    case FS_FILETYPE_TRUETYPE:
        return KWPtr<FS_BaseFont>(new FS_TrueType(uri));
    case FS_FILETYPE_OPENTYPE:
    case FS_FILETYPE_OPENTYPE_CID:
        return KWPtr<FS_BaseFont>(new FS_OpenType(uri));
    case FS_FILETYPE_COLLECTION:
        return KWPtr<FS_BaseFont>(new FS_TrueTypeCollection(uri));
    case FS_FILETYPE_DFONT:
        return KWPtr<FS_BaseFont>(new FS_DFont(uri));
    case FS_FILETYPE_WOFF:
        return KWPtr<FS_BaseFont>(new FS_WOFF(uri));
    default:
        return {};
    }
}

} // namespace KWFontService_NS
