#include <KWFontService17/FS_FontFeatureSettings.h>

#include "common/TagText.h"

#include <KWCommon15/KWTokenizer.h>

namespace KWFontService_NS {

using KWCommonNS::KWName;
using KWCommonNS::KWNameEnum;
using KWCommonNS::KWTokenizer;
using KWCommonNS::KWValue;

namespace {

/// Ends a list; a quoted string without text does so as well.
bool isEmptyToken(const KWValue& token) {
    return token.isNull() || (token.isString() && token.getStringValue().isEmpty());
}

} // namespace

bool FS_FontFeatureSettings::setValue(unsigned int tag, int value) {
    return tag != 0 && features_.try_emplace(tag, value).second;
}

bool FS_FontFeatureSettings::setValue(const UnicodeString& name, int value) {
    return setValue(KWCommonNS::tagOfText(name), value);
}

bool FS_FontFeatureSettings::setValue(const KWValue& value) {
    if (value.getNameValue() == KWNameEnum::Normal)
        return true;
    KWTokenizer tokens(value.toString());
    bool valid = true;
    KWValue token = tokens.nextTokenValue();
    while (valid && !isEmptyToken(token)) {
        const UnicodeString name = token.toString();
        int setting = 1;
        token = tokens.nextTokenValue();
        if (token.isName()) {
            const KWName word = token.getNameValue();
            setting = word == KWNameEnum::Off ? 0 : 1;
            valid = word == KWNameEnum::Off || word == KWNameEnum::On;
            token = tokens.nextTokenValue();
        } else if (token.isNumber()) {
            setting = token.getIntegerValue();
            token = tokens.nextTokenValue();
        }
        if (!setValue(name, setting))
            valid = false;
        if (isEmptyToken(token))
            break;
        if (tokens.getDelimiter() != u',')
            return false;
        token = tokens.nextTokenValue();
    }
    return valid;
}

int FS_FontFeatureSettings::getValue(unsigned int tag) const {
    const auto found = features_.find(tag);
    return found == features_.end() ? -1 : found->second;
}

} // namespace KWFontService_NS
