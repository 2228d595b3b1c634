#include "registry/FS_FontPool.h"

#include "registry/FS_ServiceLock.h"
#include "registry/FontSelection.h"

#include <KWCommon15/KWLang.h>

#include <string>

namespace KWFontService_NS {

namespace {

UnicodeString withNumber(const UnicodeString& name, unsigned int number) {
    return name + UnicodeString::fromUTF8(std::to_string(number));
}

} // namespace

FS_FontKey FS_FontKey::ofRequest(int weight, bool italic, int stretch) {
    return {weight != 0 ? weight : kNormalWeight, italic, stretch != 0 ? stretch : kNormalStretch};
}

FS_FontKey FS_FontKey::ofFace(const FS_BaseFont& font, int faceIndex) {
    return ofRequest(font.getWeight(faceIndex), font.isItalic(faceIndex), font.getWidth(faceIndex));
}

FS_FontPool::FS_FontPool()
    : byFileName(kTextMapBuckets), byName(kTextMapBuckets), byUri(kTextMapBuckets) {}

FS_FontPool::~FS_FontPool() = default;

void FS_FontPool::registerFont(KWPtr<FS_BaseFont> font) {
    const KWUri uri = font->getUri();
    font->registerFileName(*this, uri);
    KWUri withoutExtension = uri;
    withoutExtension.setExtension(UnicodeString());
    if (!withoutExtension.isEmpty())
        font->registerFileName(*this, withoutExtension);
    font->registerFontNames(*this);
}

void FS_FontPool::registerNamedFont(FS_BaseFont& font, const UnicodeString& prefix) {
    UnicodeString name = font.getPostScriptName(0, 0);
    if (name == u"00") // the name of a font that has none to speak of
        name = font.getFamilyName(0, 0);
    name.insert(0, prefix);

    // Held until the name is entered, so that no other thread finds the same one free.
    KWCommonNS::KWMutex mutex(g_fontServiceLock);
    mutex.lock();
    UnicodeString freeName = name;
    FS_FontFamilyMap* taken = nullptr;
    for (unsigned int number = 0; findName(freeName, taken); ++number)
        freeName = withNumber(name, number);
    font.setPostScriptName(freeName, 0);
    addName(byName, normaliseFontName(freeName), {&font, 0}, FS_FontKey::ofFace(font, 0));
}

bool FS_FontPool::findName(const UnicodeString& name, FS_FontFamilyMap*& out) {
    if (const auto found = byName.find(normaliseFontName(name)); found != byName.end()) {
        out = &found->second;
        return true;
    }
    if (const auto found = byFileName.find(lowerFileName(name)); found != byFileName.end()) {
        out = &found->second;
        return true;
    }
    return false;
}

FS_FontRef FS_FontPool::findFont(const UnicodeString& name, const FS_FontKey& key) {
    KWCommonNS::KWMutex mutex(g_fontServiceLock);
    mutex.lock();
    FS_FontFamilyMap* family = nullptr;
    return findName(name, family) ? selectFont(*family, key) : FS_FontRef();
}

void FS_FontPool::addName(FS_TextMap<FS_FontFamilyMap>& map, const UnicodeString& name,
                          const FS_FontRef& ref, const FS_FontKey& key) {
    if (!name.isEmpty())
        map[name].emplace(key, ref);
}

void FS_FontPool::addFileName(const KWUri& uri, const FS_FontRef& ref, const FS_FontKey& key) {
    // The empty URI and `data:` have no file name.
    addName(byFileName, lowerFileName(uri.getFileName()), ref, key);
}

void FS_FontPool::addExtraFamilies(const std::set<UnicodeString>& names, const FS_FontRef& ref,
                                   const FS_FontKey& key) {
    for (const UnicodeString& name : names)
        addName(byName, normaliseFontName(name), ref, key);
}

} // namespace KWFontService_NS
