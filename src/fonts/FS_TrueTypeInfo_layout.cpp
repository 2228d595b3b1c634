#include "fonts/FS_TrueTypeInfo.h"

#include "layout/FS_GSUBGPOSInfo.h"

namespace KWFontService_NS {

FS_GSUBGPOSInfo* FS_TrueTypeInfo::getGSUBGPOSInfo(unsigned int script,
                                                  unsigned int language) const {
    const LoadedTables& loadedNow = tables();
    return new FS_GSUBGPOSInfo(
        findLayout(script, language, &loadedNow.gdef, loadedNow.gsub, loadedNow.gpos));
}

} // namespace KWFontService_NS
