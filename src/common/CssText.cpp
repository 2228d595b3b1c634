#include "common/CssText.h"

#include "common/CssChars.h"

#include <string_view>

namespace KWCommonNS {

namespace {

void appendHexEscape(UnicodeString& out, char16_t unit) {
    constexpr std::u16string_view kHex = u"0123456789abcdef";
    out.append(u'\\');
    if (unit >= 0x10)
        out.append(kHex[(unit >> 4) & 0xF]);
    out.append(kHex[unit & 0xF]).append(u' ');
}

bool isControl(char16_t unit) {
    return (unit >= 1 && unit < 0x20) || unit == 0x7F;
}

void appendNameRest(UnicodeString& out, const UnicodeString& text, std::int32_t from) {
    for (std::int32_t i = from; i < text.length(); ++i) {
        const char16_t unit = text[i];
        if (unit == 0)
            out.append(kReplacement);
        else if (isControl(unit))
            appendHexEscape(out, unit);
        else if (isNameChar(unit))
            out.append(unit);
        else
            out.append(u'\\').append(unit);
    }
}

} // namespace

UnicodeString toCssString(const UnicodeString& text, KWUtil::QuoteMode mode) {
    const char16_t quote = mode == KWUtil::QuoteMode::Single ? u'\'' : u'"';
    UnicodeString out(quote);
    for (std::int32_t i = 0; i < text.length(); ++i) {
        const char16_t unit = text[i];
        if (unit == 0)
            out.append(kReplacement);
        else if (isControl(unit))
            appendHexEscape(out, unit);
        else if (unit == quote || unit == u'\\')
            out.append(u'\\').append(unit);
        else
            out.append(unit);
    }
    return out.append(quote);
}

UnicodeString toCssIdentifier(const UnicodeString& text) {
    UnicodeString out;
    std::int32_t at = 0;
    if (text == UnicodeString(u'-'))
        return out.append(u'\\').append(u'-');
    if (at < text.length() && text[at] == u'-')
        out.append(text[at++]);
    if (at < text.length() && isDigit(text[at]))
        appendHexEscape(out, text[at++]);
    appendNameRest(out, text, at);
    return out;
}

UnicodeString toCssName(const UnicodeString& text) {
    UnicodeString out;
    appendNameRest(out, text, 0);
    return out;
}

UnicodeString toCssUrl(const UnicodeString& text) {
    UnicodeString out(u"url(");
    for (std::int32_t i = 0; i < text.length(); ++i) {
        const char16_t unit = text[i];
        if (unit == 0)
            out.append(kReplacement);
        else if (isControl(unit))
            appendHexEscape(out, unit);
        else if (std::u16string_view(u" \"'()\\").find(unit) != std::u16string_view::npos)
            out.append(u'\\').append(unit);
        else
            out.append(unit);
    }
    return out.append(u')');
}

} // namespace KWCommonNS
