#include "registry/ExtraFontType.h"

#include "registry/FontFileLoader.h"

namespace KWFontService_NS {

namespace {

struct MediaRow {
    const char16_t* mediaType;
    FS_FontFileType type;
};

constexpr MediaRow kMediaTypes[] = {
    {u"application/font-woff", FS_FILETYPE_WOFF},
    {u"application/x-font-ttf", FS_FILETYPE_REQUEST_SFNT},
    {u"application/x-font-truetype", FS_FILETYPE_REQUEST_SFNT},
    {u"application/font-ttf", FS_FILETYPE_REQUEST_SFNT},
    {u"application/font-truetype", FS_FILETYPE_REQUEST_SFNT},
    {u"application/x-font-otf", FS_FILETYPE_REQUEST_OPENTYPE},
    {u"application/x-font-opentype", FS_FILETYPE_REQUEST_OPENTYPE},
    {u"application/font-otf", FS_FILETYPE_REQUEST_OPENTYPE},
    {u"application/font-opentype", FS_FILETYPE_REQUEST_OPENTYPE},
};

bool isRequest(FS_FontFileType type) {
    return type >= FS_FILETYPE_REQUEST_SFNT && type <= FS_FILETYPE_REQUEST_TRUETYPE;
}

/// The request that a type of file stands for; `otherwise` for one that stands for itself.
FS_FontFileType requestFor(FS_FontFileType concrete, FS_FontFileType otherwise) {
    switch (concrete) {
    case FS_FILETYPE_AFM:
    case FS_FILETYPE_PFM:
        return FS_FILETYPE_REQUEST_TYPE1;
    case FS_FILETYPE_TRUETYPE:
    case FS_FILETYPE_COLLECTION:
        return FS_FILETYPE_REQUEST_SFNT;
    case FS_FILETYPE_OPENTYPE:
    case FS_FILETYPE_OPENTYPE_CID:
        return FS_FILETYPE_REQUEST_OPENTYPE;
    default:
        return otherwise;
    }
}

} // namespace

bool ExtraFontType::isWrapped() const {
    return type == FS_FILETYPE_REQUEST_SFNT || type == FS_FILETYPE_REQUEST_OPENTYPE ||
           type == FS_FILETYPE_REQUEST_TYPE1;
}

FS_FontFileType fontTypeOfMedia(const UnicodeString& mediaType) {
    for (const MediaRow& row : kMediaTypes) {
        if (mediaType == row.mediaType)
            return row.type;
    }
    return FS_FILETYPE_UNKNOWN;
}

ExtraFontType settleExtraFontType(const FS_FontService& service, FS_FontFileType asked,
                                  const UnicodeString& mediaType, const UnicodeString& extension,
                                  std::istream& stream) {
    ExtraFontType settled;
    settled.type = asked != FS_FILETYPE_UNKNOWN ? asked : fontTypeOfMedia(mediaType);
    if (settled.type != FS_FILETYPE_UNKNOWN && !isRequest(settled.type)) {
        settled.concrete = settled.type;
        return settled;
    }
    settled.concrete = fontFileType(service, extension, settled.type, &stream);
    if (settled.type == FS_FILETYPE_UNKNOWN || settled.type == FS_FILETYPE_REQUEST_TRUETYPE)
        settled.type = requestFor(settled.concrete, settled.type);
    return settled;
}

} // namespace KWFontService_NS
