#include "registry/RegisteredFonts.h"

#include "common/TextView.h"
#include "registry/FontFileLoader.h"

namespace KWFontService_NS {

void readRegistryFonts(FS_FontService& service, const std::vector<std::u16string>& paths) {
    for (const std::u16string& path : paths) {
        const KWUri uri(KWCommonNS::toText(path), KWCommonNS::URISTR_LOCAL);
        if (!uri.isAbsolute() || !uri.isFile() || !uri.isFileExists())
            continue;
        const FS_FontFile file(uri);
        if (!service.fileTypeByExtension.contains(file.extension()))
            continue;
        const FS_FontFolder& folder = folderOfFile(service, uri);
        if (isFontFile(service, folder, file))
            loadFont(service, folder, file, FS_LOAD_REGISTRY);
    }
}

} // namespace KWFontService_NS
