#include "KWCommon15/KWChar.h"

#include <unicode/uchar.h>

namespace KWCommonNS {

int KWChar::getCategory(int ch) {
    return u_charType(ch);
}

bool KWChar::isNoVerticalChar(int ch) {
    if (ch < UCHAR_MIN_VALUE || ch > UCHAR_MAX_VALUE)
        return false;
    return u_getIntPropertyValue(ch, UCHAR_VERTICAL_ORIENTATION) == U_VO_ROTATED;
}

} // namespace KWCommonNS
