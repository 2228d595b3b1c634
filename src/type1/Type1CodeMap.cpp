#include "type1/Type1CodeMap.h"

#include <algorithm>

namespace KWFontService_NS {

using KWCommonNS::KWMutex;

Type1CodeMap::Type1CodeMap() = default;
Type1CodeMap::~Type1CodeMap() = default;

Type1CodeMap::Maps& Type1CodeMap::maps() {
    if (!maps_)
        maps_ = std::make_unique<Maps>();
    return *maps_;
}

const Type1CodeMap::FontCMap* Type1CodeMap::findCMap(unsigned char fontNumber) const {
    if (!maps_)
        return nullptr;
    const auto found = maps_->fontCMaps.find(fontNumber);
    return found != maps_->fontCMaps.end() ? &found->second : nullptr;
}

unsigned short Type1CodeMap::unicodeCode(int ch) const {
    KWMutex mutex(lock_);
    mutex.lock();
    if (!maps_)
        return 0;
    const auto found = maps_->unicodeToCode.find(ch);
    return found != maps_->unicodeToCode.end() ? found->second : static_cast<unsigned short>(0);
}

unsigned short Type1CodeMap::assignCode(int ch, unsigned short code) {
    KWMutex mutex(lock_);
    mutex.lock();
    if (maps().unicodeToCode.emplace(ch, code).second)
        maps().characterCodes.insert(code);
    return code;
}

void Type1CodeMap::addCMapEntry(unsigned char fontNumber, unsigned char code,
                                std::string_view name) {
    KWMutex mutex(lock_);
    mutex.lock();
    FontCMap& cmap = maps().fontCMaps[fontNumber];
    if (cmap.names.emplace(code, name).second)
        cmap.array.emplace_back(code, name);
}

void Type1CodeMap::raiseNextCode(int least) {
    KWMutex mutex(lock_);
    mutex.lock();
    nextCode = std::min(std::max(nextCode, least), kAllCodes - 1) + 1;
}

bool Type1CodeMap::isTaken(unsigned short code) const {
    if (!maps_)
        return false;
    const FontCMap* const cmap = findCMap(static_cast<unsigned char>(code >> 8));
    return maps_->codeToGlyph.contains(code) || maps_->characterCodes.contains(code) ||
           (cmap != nullptr && cmap->names.contains(static_cast<unsigned char>(code & 0xFF)));
}

unsigned short Type1CodeMap::takeNextCode(std::string_view name) {
    for (; nextCode < kAllCodes; ++nextCode) {
        if (nextCode % kCodesOfAFont == 0)
            continue;
        const auto fontNumber = static_cast<unsigned char>(nextCode / kCodesOfAFont);
        const auto code = static_cast<unsigned char>(nextCode % kCodesOfAFont);
        const auto both = static_cast<unsigned short>(fontNumber << 8 | code);
        if (isTaken(both))
            continue;
        addCMapEntry(fontNumber, code, name);
        return both;
    }
    return 0;
}

unsigned short Type1CodeMap::allocateCode(int ch, std::string_view name) {
    KWMutex mutex(lock_);
    mutex.lock();
    const unsigned short code = takeNextCode(name);
    return code != 0 ? assignCode(ch, code) : code;
}

unsigned short Type1CodeMap::glyphCode(unsigned short gid) const {
    KWMutex mutex(lock_);
    mutex.lock();
    if (!maps_)
        return 0;
    const auto found = maps_->glyphToCode.find(gid);
    return found != maps_->glyphToCode.end() ? found->second : static_cast<unsigned short>(0);
}

unsigned short Type1CodeMap::glyphOfCode(unsigned short code) const {
    KWMutex mutex(lock_);
    mutex.lock();
    if (!maps_)
        return FS_NO_GLYPH;
    const auto found = maps_->codeToGlyph.find(code);
    return found != maps_->codeToGlyph.end() ? found->second : FS_NO_GLYPH;
}

bool Type1CodeMap::assignGlyphCode(unsigned short gid, unsigned short code) {
    KWMutex mutex(lock_);
    mutex.lock();
    if (isTaken(code))
        return false;
    maps().glyphToCode.emplace(gid, code);
    maps().codeToGlyph.emplace(code, gid);
    return true;
}

unsigned short Type1CodeMap::allocateGlyphCode(unsigned short gid, std::string_view name) {
    KWMutex mutex(lock_);
    mutex.lock();
    const unsigned short code = takeNextCode(name);
    if (code != 0) {
        maps().glyphToCode.emplace(gid, code);
        maps().codeToGlyph.emplace(code, gid);
    }
    return code;
}

const FS_BaseFont::Type1CMapArray* Type1CodeMap::getType1CMapArray(unsigned char fontNumber) const {
    KWMutex mutex(lock_);
    mutex.lock();
    const FontCMap* const cmap = findCMap(fontNumber);
    return cmap != nullptr ? &cmap->array : nullptr;
}

bool Type1CodeMap::getType1CMapPair(unsigned char fontNumber, int index, unsigned char& code,
                                    std::string& name) const {
    KWMutex mutex(lock_);
    mutex.lock();
    const FontCMap* const cmap = findCMap(fontNumber);
    if (cmap == nullptr || index < 0 || static_cast<std::size_t>(index) >= cmap->array.size())
        return false;
    const auto& [pairCode, pairName] = cmap->array[static_cast<std::size_t>(index)];
    code = pairCode;
    name = pairName;
    return true;
}

bool Type1CodeMap::getType1GlyphName(unsigned char fontNumber, unsigned char code,
                                     std::string& name) const {
    KWMutex mutex(lock_);
    mutex.lock();
    const FontCMap* const cmap = findCMap(fontNumber);
    if (cmap == nullptr)
        return false;
    const auto found = cmap->names.find(code);
    if (found == cmap->names.end())
        return false;
    name = found->second;
    return true;
}

} // namespace KWFontService_NS
