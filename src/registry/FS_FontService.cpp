#include "registry/FS_FontService.h"

#include <algorithm>
#include <tuple>

namespace KWFontService_NS {

FS_FontService::FS_FontService() : fileTypeByExtension(kTextMapBuckets) {}

FS_FontService::~FS_FontService() {
    fontPool.byFileName.clear();
    fontPool.byName.clear();
    fontPool.byUri.clear();
    // Fonts close their FreeType faces, so they go before the library.
    defaultEudcFont = {};
    defaultEudcFontVertical = {};
    aliasPool.fonts.clear();
    fontPool.fonts.clear();
    keptFonts.clear();
    freeTypeLibrary.reset();
}

FS_FontFolder* FS_FontService::findFolder(const UnicodeString& pathKey) const {
    const auto found = folderByPath.find(pathKey);
    return found != folderByPath.end() ? found->second : nullptr;
}

FS_FontFolder* FS_FontService::addFolder(std::unique_ptr<FS_FontFolder> folder) {
    const UnicodeString key = folder->pathKey();
    if (findFolder(key) != nullptr)
        return nullptr;
    // In this order nothing dangles when memory runs out between the two.
    folders.push_back(std::move(folder));
    folderByPath.emplace(key, folders.back().get());
    return folders.back().get();
}

FS_FontRef FS_FontService::findFont(const UnicodeString& name, const FS_FontKey& key,
                                    bool& foundInAlias, bool skipAliases) {
    if (!skipAliases) {
        if (const FS_FontRef found = aliasPool.findFont(name, key)) {
            foundInAlias = true;
            return found;
        }
    }
    return fontPool.findFont(name, key);
}

void FS_FontService::addEudcRange(int first, int last) {
    constexpr int kLastCodePoint =
        static_cast<int>(8 * std::tuple_size_v<decltype(eudcBitmap)>) - 1;
    first = std::max(first, 0);
    last = std::min(last, kLastCodePoint);
    if (first > last)
        return;
    const auto firstByte = static_cast<std::size_t>(first >> 3);
    const auto lastByte = static_cast<std::size_t>(last >> 3);
    const unsigned int fromFirst = 0xFFU << (first & 7);
    const unsigned int upToLast = 0xFFU >> (7 - (last & 7));
    const auto add = [this](std::size_t index, unsigned int bits) {
        eudcBitmap[index] = static_cast<std::uint8_t>(eudcBitmap[index] | bits);
    };
    if (firstByte == lastByte) {
        add(firstByte, fromFirst & upToLast);
        return;
    }
    add(firstByte, fromFirst);
    add(lastByte, upToLast);
    // A configuration may name the whole plane over and over.
    std::fill(&eudcBitmap[firstByte + 1], &eudcBitmap[lastByte], std::uint8_t{0xFF});
}

bool FS_FontService::isEudcCodePoint(int ch) const {
    const auto byte = static_cast<std::size_t>(ch) >> 3;
    return byte < eudcBitmap.size() && (eudcBitmap[byte] >> (ch & 7) & 1) != 0;
}

} // namespace KWFontService_NS
