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

FS_FontFolder* FS_FontService::addFolder(std::unique_ptr<FS_FontFolder> folder,
                                         std::size_t* position) {
    FS_FontFolder* const added = folder.get();
    if (!folderByPath.emplace(added->pathKey(), added).second)
        return nullptr;
    if (position == nullptr) {
        folders.push_back(std::move(folder));
    } else {
        folders.insert(folders.begin() + static_cast<std::ptrdiff_t>(*position), std::move(folder));
        ++*position;
    }
    return added;
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
    last = std::min(last, kLastCodePoint);
    for (int ch = std::max(first, 0); ch <= last; ++ch) {
        std::uint8_t& byte = eudcBitmap[static_cast<std::size_t>(ch >> 3)];
        byte = static_cast<std::uint8_t>(byte | (1U << (ch & 7)));
    }
}

bool FS_FontService::isEudcCodePoint(int ch) const {
    const auto byte = static_cast<std::size_t>(ch) >> 3;
    return byte < eudcBitmap.size() && (eudcBitmap[byte] >> (ch & 7) & 1) != 0;
}

} // namespace KWFontService_NS
