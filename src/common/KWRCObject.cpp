#include "KWCommon15/KWRCObject.h"

namespace KWCommonNS {

KWRCObject::KWRCObject(const KWRCObject& other) : KWObjectBase(other) {}

KWRCObject& KWRCObject::operator=(const KWRCObject& other) {
    KWObjectBase::operator=(other);
    return *this;
}

KWRCObject::~KWRCObject() = default;

unsigned int KWRCObject::getClassId() const {
    return kClassId;
}

bool KWRCObject::isKindOf(unsigned int id) const {
    return id == kClassId || KWObjectBase::isKindOf(id);
}

UnicodeString KWRCObject::getClassName() const {
    return UnicodeString(u"KWRCObject");
}

int KWRCObject::addRef() const {
    return refCount_.fetch_add(1, std::memory_order_relaxed) + 1;
}

int KWRCObject::release() const {
    // Release orders this thread's use before the drop, acquire orders all uses before the end.
    const int left = refCount_.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (left > 0)
        return left;
    delete this;
    return 0;
}

int KWRCObject::getRefCount() const {
    return refCount_.load(std::memory_order_relaxed);
}

} // namespace KWCommonNS
