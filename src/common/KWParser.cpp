#include "KWCommon15/KWParser.h"

#include "common/CssChars.h"
#include "common/TextView.h"

namespace KWCommonNS {

KWValue KWParser::parse(const UnicodeString& text, TokenizerType type) {
    KWTokenizer tokenizer(text, type);
    KWValue first = tokenizer.nextTokenValueExp();
    if (tokenizer.isAtEnd())
        return first;
    return KWValue(toText(trimCssSpace(toView(text))), KWUnitType::List);
}

} // namespace KWCommonNS
