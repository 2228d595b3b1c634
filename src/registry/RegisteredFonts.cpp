#include "registry/RegisteredFonts.h"

#include "common/TextView.h"
#include "registry/FontFileLoader.h"

namespace KWFontService_NS {

namespace {

FS_FontFolder* folderOf(FS_FontService& service, const KWUri& file) {
    auto folder =
        std::make_unique<FS_FontFolder>(KWUri(file.getBaseString(), KWCommonNS::URISTR_URI), false);
    if (FS_FontFolder* const known = service.findFolder(folder->pathKey()))
        return known;
    return service.addFolder(std::move(folder));
}

} // namespace

void readRegistryFonts(FS_FontService& service, const std::vector<std::u16string>& paths) {
    for (const std::u16string& path : paths) {
        const KWUri uri(KWCommonNS::toText(path), KWCommonNS::URISTR_LOCAL);
        if (!uri.isAbsolute() || !uri.isFile() || !uri.isFileExists())
            continue;
        const FS_FontFile file(uri);
        if (!service.fileTypeByExtension.contains(file.extension()))
            continue;
        const FS_FontFolder& folder = *folderOf(service, uri);
        if (isFontFile(service, folder, file))
            loadFont(service, folder, file, FS_LOAD_REGISTRY);
    }
}

} // namespace KWFontService_NS
