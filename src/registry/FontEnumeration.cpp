#include "registry/FontEnumeration.h"

#include "registry/FS_ServiceLock.h"

#include <KWFontService17/FS_LogFont.h>
#include <KWFontService17/FS_NewTextMetricEx.h>

#include <algorithm>
#include <vector>

namespace KWFontService_NS {

namespace {

class EnumeratedFont final : public FS_EnumLogFontEx {
public:
    void setOrigin(const FS_BaseFont& font, int face) {
        fileType = font.getFontFileType(0);
        embedding = font.getEmbedStatus(face);
        flags = static_cast<std::int32_t>(font.getMarks());
    }
};

FS_FontResourceType typeByMarks(const FS_BaseFont& font) {
    if ((font.getMarks() & FS_FONTMARK_REGISTRY) != 0)
        return FS_RESOURCE_REGISTRY;
    return (font.getMarks() & FS_FONTMARK_EUDC) != 0 ? FS_RESOURCE_EUDC : FS_RESOURCE_FONT;
}

bool isVerticalFace(FS_BaseFont& font, int face) {
    KWError dropped;
    return font.loadFont(dropped, face, nullptr) && font.hasVerticalGlyph(face);
}

} // namespace

/// The records of one face.
struct FontEnumeration::Face {
    /// False for a face that has not both records.
    bool fill(const FS_BaseFont& from, int index) {
        return from.getLogFont(font, index) && from.getNewTextMetricEx(metric, index);
    }

    EnumeratedFont font;
    FS_NewTextMetricEx metric;
};

FontEnumeration::FontEnumeration(const UnicodeString& family, FS_EnumFontFamiliesCallback callback,
                                 void* userData)
    : isVertical_(family.startsWith(u"@")), isOfAll_(family.isEmpty()), name_(family),
      callback_(callback), userData_(userData) {
    if (isVertical_)
        name_.remove(0, 1);
}

int FontEnumeration::walk(FS_FontPool& pool, FS_FontResourceType type) const {
    KWCommonNS::KWMutex mutex(g_fontServiceLock);
    mutex.lock();
    return isOfAll_ ? walkAll(pool, type) : walkName(pool, type);
}

int FontEnumeration::walkAll(const FS_FontPool& pool, FS_FontResourceType type) const {
    const std::size_t count = pool.fonts.size();
    // The list may grow and move under the callback, and lose what a failed append put there.
    for (std::size_t i = 0; i < std::min(count, pool.fonts.size()); ++i) {
        const KWPtr<FS_BaseFont> font = pool.fonts[i];
        for (int index = 0; index < font->getFontCount(); ++index) {
            Face face;
            if (!face.fill(*font, index))
                continue;
            face.font.setOrigin(*font, index);
            const int result = report(type != FS_RESOURCE_FONT ? type : typeByMarks(*font), face);
            if (result != 0)
                return result;
        }
    }
    return 0;
}

int FontEnumeration::walkName(FS_FontPool& pool, FS_FontResourceType type) const {
    FS_FontFamilyMap* family = nullptr;
    if (!pool.findName(name_, family))
        return 0;
    // A callback that looks fonts up adds entries to the map.
    std::vector<FS_FontRef> refs;
    refs.reserve(family->size());
    for (const auto& [key, ref] : *family)
        refs.push_back(ref);
    for (const FS_FontRef& ref : refs) {
        Face face;
        if (!face.fill(*ref.font, ref.face))
            continue;
        if (isVertical_ && !isVerticalFace(*ref.font, ref.face))
            continue;
        face.font.setOrigin(*ref.font, ref.face);
        const bool isWoff = face.font.getFileType() == FS_FILETYPE_WOFF;
        if (const int result = report(isWoff ? FS_RESOURCE_WOFF : type, face))
            return result;
    }
    return 0;
}

int FontEnumeration::report(FS_FontResourceType type, const Face& face) const {
    return callback_(type, &face.font, &face.metric, userData_);
}

} // namespace KWFontService_NS
