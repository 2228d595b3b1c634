#include "KWCommon15/KWMessage.h"

namespace KWCommonNS {

KWMessage::KWMessage(const UnicodeString& messageTemplate, const UnicodeString& argument0,
                     const UnicodeString& argument1, const UnicodeString& argument2,
                     const UnicodeString& argument3, const UnicodeString& argument4) {
    const UnicodeString* const arguments[] = {&argument0, &argument1, &argument2, &argument3,
                                              &argument4};
    std::int32_t copied = 0;
    for (std::int32_t at = 0; at + 2 < messageTemplate.length(); ++at) {
        const char16_t digit = messageTemplate[at + 1];
        if (messageTemplate[at] != u'{' || digit < u'0' || digit > u'4' ||
            messageTemplate[at + 2] != u'}')
            continue;
        message_.append(messageTemplate, copied, at - copied).append(*arguments[digit - u'0']);
        copied = at + 3;
    }
    message_.append(messageTemplate, copied, messageTemplate.length() - copied);
}

} // namespace KWCommonNS
