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
    maps().unicodeToCode.emplace(ch, code);
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

unsigned short Type1CodeMap::allocateCode(int ch, std::string_view name) {
    KWMutex mutex(lock_);
    mutex.lock();
    for (; nextCode < kAllCodes; ++nextCode) {
        if (nextCode % kCodesOfAFont == 0)
            continue;
        const auto fontNumber = static_cast<unsigned char>(nextCode / kCodesOfAFont);
        const auto code = static_cast<unsigned char>(nextCode % kCodesOfAFont);
        const FontCMap* const cmap = findCMap(fontNumber);
        if (cmap != nullptr && cmap->names.contains(code))
            continue;
        addCMapEntry(fontNumber, code, name);
        return assignCode(ch, static_cast<unsigned short>(fontNumber << 8 | code));
    }
    return 0;
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
