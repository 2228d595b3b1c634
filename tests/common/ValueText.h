#pragma once

#include "KWCommon15/KWTokenizer.h"
#include "KWCommon15/KWUnitType.h"
#include "KWCommon15/KWValue.h"

#include <string>

namespace KWTest {

/// UTF-8, where a lone surrogate shows.
inline std::string utf8(const icu::UnicodeString& text) {
    std::string out;
    for (std::int32_t at = 0; at < text.length(); at = text.moveIndex32(at, 1)) {
        const UChar32 ch = text.char32At(at);
        if (ch >= 0xD800 && ch <= 0xDFFF)
            out += "(lone surrogate)";
        else
            icu::UnicodeString(ch).toUTF8String(out);
    }
    return out;
}

/// A text of `count` times the same part.
inline icu::UnicodeString repeated(const icu::UnicodeString& part, int count) {
    icu::UnicodeString out;
    for (int i = 0; i < count; ++i)
        out.append(part);
    return out;
}

inline std::string sortOf(KWCommonNS::KWUnitType unit) {
    using KWCommonNS::KWUnitType;
    switch (unit) {
    case KWUnitType::None:
        return "text";
    case KWUnitType::Ident:
        return "ident";
    case KWUnitType::Function:
        return "function";
    case KWUnitType::AtKeyword:
        return "at";
    case KWUnitType::Hash:
        return "hash";
    case KWUnitType::Url:
        return "url";
    case KWUnitType::UnicodeRange:
        return "range";
    case KWUnitType::Dimension:
        return "dimension";
    case KWUnitType::Delimiter:
        return "delim";
    case KWUnitType::Bad:
        return "bad";
    case KWUnitType::List:
        return "list";
    default:
        return "?";
    }
}

/// Kind and text of a value: "int:12", "real:12.5px", "name:yes", "ident:x", "text:", "null".
inline std::string describe(const KWCommonNS::KWValue& value) {
    const std::string text = utf8(value.toString());
    if (value.isNull())
        return "null";
    if (value.isBool())
        return "bool:" + text;
    if (value.isInteger())
        return "int:" + text;
    if (value.isReal())
        return "real:" + text;
    if (value.isName())
        return "name:" + text;
    if (value.isCompound())
        return "compound:" + text;
    return sortOf(value.getUnitType()) + ":" + text;
}

/// All tokens of a text, described, with " | " between them.
inline std::string tokensOf(const icu::UnicodeString& text,
                            KWCommonNS::TokenizerType type = KWCommonNS::TokenizerType::CSS,
                            bool exponent = false) {
    KWCommonNS::KWTokenizer tokenizer(text, type);
    std::string out;
    for (;;) {
        const auto token = exponent ? tokenizer.nextTokenValueExp() : tokenizer.nextTokenValue();
        if (token.isNull())
            return out;
        if (!out.empty())
            out += " | ";
        out += describe(token);
    }
}

} // namespace KWTest
