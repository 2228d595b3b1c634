#include "KWCommon15/KWEmptyString.h"

#include <new>

namespace KWCommonNS {

const UnicodeString& KWEmptyString::getEmptyString() {
    // Never destroyed, so that clean-up code of statics may still use it; it owns no memory.
    alignas(UnicodeString) static unsigned char storage[sizeof(UnicodeString)];
    static const UnicodeString* const empty = ::new (storage) UnicodeString();
    return *empty;
}

const UnicodeString& getEmptyString() {
    return KWEmptyString::getEmptyString();
}

} // namespace KWCommonNS
