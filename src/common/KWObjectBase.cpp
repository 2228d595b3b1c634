#include "KWCommon15/KWObjectBase.h"

namespace KWCommonNS {

KWObjectBase::~KWObjectBase() = default;

unsigned int KWObjectBase::getClassId() const {
    return kClassId;
}

bool KWObjectBase::isKindOf(unsigned int id) const {
    return id == kClassId;
}

UnicodeString KWObjectBase::getClassName() const {
    return UnicodeString(u"KWObjectBase");
}

} // namespace KWCommonNS
