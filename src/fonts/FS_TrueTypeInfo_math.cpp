#include "fonts/FS_TrueTypeInfo.h"

namespace KWFontService_NS {

bool FS_TrueTypeInfo::hasMATHInfo() const {
    return tables().math.hasInfo();
}

KWLength FS_TrueTypeInfo::getMATHConstant(FS_MATHConstants constant) const {
    return tables().math.constant(constant, headerTables_.unitsPerEm);
}

KWLength FS_TrueTypeInfo::getItalicsCorrection(unsigned short gid) const {
    return tables().math.italicsCorrection(gid, headerTables_.unitsPerEm);
}

unsigned short FS_TrueTypeInfo::getMATHVariantV(unsigned short gid, int size) const {
    return tables().math.variant(gid, size, true);
}

unsigned short FS_TrueTypeInfo::getMATHVariantH(unsigned short gid, int size) const {
    return tables().math.variant(gid, size, false);
}

} // namespace KWFontService_NS
