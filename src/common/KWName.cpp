#include "KWCommon15/KWName.h"

#include "KWCommon15/KWNameTable.h"

namespace KWCommonNS {

KWName::KWName(const UnicodeString& text) : name_(KWNameTable::intern(text)) {}

const UnicodeString& KWName::toString() const {
    return KWNameTable::getSharedNameString(name_);
}

} // namespace KWCommonNS
