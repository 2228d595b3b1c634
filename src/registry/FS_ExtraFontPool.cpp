#include "registry/FS_ExtraFontPool.h"

#include "common/KWLimits.h"
#include "fonts/FS_LocalFont.h"
#include "fonts/FontErrors.h"
#include "fonts/FontStream.h"
#include "registry/ExtraFontType.h"
#include "registry/FontFileLoader.h"

#include <algorithm>
#include <utility>

namespace KWFontService_NS {

namespace {

/// Throws what a font complained of; where it did not, the error with this code.
[[noreturn]] void refuse(const FS_BaseFont& font, const KWError& said, FS_ERROR code) {
    if (said.isError())
        throw said;
    KWError error;
    font.fontError(error, code, UnicodeString());
    throw error;
}

/// Loads each face while the stream is at hand, so that nobody has to open the font later. A face
/// that refuses in silence is left as it is.
void loadFaces(FS_BaseFont& font, std::istream& stream) {
    for (int face = 0; face < font.getFontCount(); ++face) {
        KWError error;
        if (!font.loadFont(error, face, &stream) && error.isError())
            throw error;
    }
}

} // namespace

FS_ExtraFontPool::FS_ExtraFontPool() = default;
FS_ExtraFontPool::~FS_ExtraFontPool() = default;

FS_ExtraFontPool::FS_ExtraFontPool(const FS_ExtraFontPool& other) : FS_FontPool() {
    // A search in the other pool may be filling gaps of a family.
    KWCommonNS::KWMutex mutex(g_fontServiceLock);
    mutex.lock();
    fonts = std::vector(other.fonts);
    byFileName = other.byFileName;
    byName = other.byName;
    byUri = other.byUri;
}

void FS_ExtraFontPool::registerFont(KWPtr<FS_BaseFont> font) {
    font->registerFileName(*this, font->getUri());
    font->registerFontNames(*this);
}

void FS_ExtraFontPool::registerNamedFont(FS_BaseFont&, const UnicodeString&) {}

FS_BaseFont* FS_ExtraFontPool::fontAt(int index) const {
    const auto i = static_cast<std::size_t>(index);
    return index >= 0 && i < fonts.size() ? fonts[i].get() : nullptr;
}

int FS_ExtraFontPool::appendFile(const KWUri& uri, const Face& face, FS_FontFileType type) {
    KWCommonNS::KWMutex mutex(g_fontServiceLock);
    mutex.lock();
    const auto addKnown = [&](const auto& known) {
        addFace(*fonts[static_cast<std::size_t>(known->second)], face);
        return known->second;
    };
    if (const auto known = byUri.find(uri.getString()); known != byUri.end())
        return addKnown(known);
    const KWPtr<FS_BaseFont> font = readFile(uri, face, type);
    // A fetcher may have appended it to this very document.
    if (const auto known = byUri.find(uri.getString()); known != byUri.end())
        return addKnown(known);
    return takeIn(font, uri.getString(), face.family);
}

int FS_ExtraFontPool::appendLocal(KWPtr<FS_BaseFont> local, const Face& face) {
    const KWPtr<FS_LocalFont> font(new FS_LocalFont(std::move(local)));
    std::istream noStream(nullptr);
    KWError error;
    // The wrapper stands for the first face, and the caller may have loaded another one.
    if (!font->scanNamedFont(error, noStream, face.family, face.weight, face.italic) ||
        font->depth() > KWCommonNS::kMaxLocalFontDepth || !font->loadFont(error, 0, nullptr))
        refuse(*font, error, FS_ERROR_FONT_FACE_CREATE);
    return takeIn(font, UnicodeString(), face.family);
}

KWPtr<FS_BaseFont> FS_ExtraFontPool::readFile(const KWUri& uri, const Face& face,
                                              FS_FontFileType type) const {
    KWUri::ContentInfo info;
    const std::unique_ptr<std::istream> stream = openFontStream(uri, &info);
    if (!stream)
        throw makeFontError(FS_ERROR_FONT_FACE_OPEN, UnicodeString(), uri.getLocalPath());

    KWPtr<FS_BaseFont> font;
    const FS_FontFile file(uri);
    ExtraFontType settled;
    if (const FS_FontService* const service = getFontService(nullptr, nullptr, nullptr)) {
        settled = settleExtraFontType(*service, type, info.mediaType, file.extension(), *stream);
        font = createFontObject(nullptr, file, settled.concrete);
    }
    if (!font)
        throw makeFontError(FS_ERROR_FONT_FACE_CREATE, UnicodeString(), uri.getLocalPath());
    if (settled.isWrapped())
        font = KWPtr<FS_BaseFont>(new FS_ExtraFont(std::move(font)));

    KWError error;
    if (!font->scanNamedFont(error, *stream, face.family, face.weight, face.italic))
        refuse(*font, error, FS_ERROR_FONT_FACE_INFORMATION);
    loadFaces(*font, *stream);
    return font;
}

int FS_ExtraFontPool::takeIn(const KWPtr<FS_BaseFont>& font, const UnicodeString& uriText,
                             const UnicodeString& family) {
    const auto index = static_cast<std::int32_t>(fonts.size());
    fonts.push_back(font);
    try {
        if (!uriText.isEmpty())
            byUri.emplace(uriText, index);
        if (!family.isEmpty())
            font->addFontAlias(family);
        registerFont(font);
    } catch (...) {
        forgetLast();
        throw;
    }
    return index;
}

void FS_ExtraFontPool::addFace(FS_BaseFont& font, const Face& face) {
    if (face.family.isEmpty())
        return;
    const KWPtr<FS_BaseFont> known(&font);
    if (!knows(font, face.family)) {
        const std::set<UnicodeString>& names = font.getFontAliases();
        if (!names.contains(face.family) && names.size() >= KWCommonNS::kMaxFontFaceNames)
            refuse(font, KWError(), FS_ERROR_FONT_FACE_CREATE);
        font.addFontAlias(face.family);
        registerFont(known);
    }
    if (!font.isKindOf(FS_CLASSID_EXTRA_FONT))
        return;
    auto& wrapper = static_cast<FS_ExtraFont&>(font);
    const FS_ExtraFont::Style former = wrapper.declaredStyle();
    const FS_ExtraFont::Style declared{face.weight, face.italic};
    if (declared == former)
        return;
    wrapper.declareStyle(declared);
    try {
        registerFont(known);
    } catch (...) {
        wrapper.declareStyle(former); // or the next try would take it for done
        throw;
    }
}

/// A font of several managers may have a name that was given to it in another one.
bool FS_ExtraFontPool::knows(const FS_BaseFont& font, const UnicodeString& family) const {
    const auto entries = byName.find(normaliseFontName(family));
    return font.getFontAliases().contains(family) && entries != byName.end() &&
           std::ranges::any_of(entries->second,
                               [&](const auto& entry) { return entry.second.font == &font; });
}

void FS_ExtraFontPool::forgetLast() {
    const auto index = static_cast<std::int32_t>(fonts.size()) - 1;
    const FS_BaseFont* const font = fonts.back().get();
    for (FS_TextMap<FS_FontFamilyMap>* const names : {&byFileName, &byName}) {
        for (auto& name : *names)
            std::erase_if(name.second,
                          [font](const auto& entry) { return entry.second.font == font; });
        std::erase_if(*names, [](const auto& name) { return name.second.empty(); });
    }
    std::erase_if(byUri, [index](const auto& entry) { return entry.second == index; });
    fonts.pop_back();
}

} // namespace KWFontService_NS
