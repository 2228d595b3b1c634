// The value grammar: tokens in both grammars, separated items, whole values, unicode ranges,
// numbers.

#include "FuzzTarget.h"

#include <KWCommon15/KWParser.h>
#include <KWCommon15/KWTokenizer.h>
#include <KWCommon15/KWUnicodeRange.h>
#include <KWCommon15/KWUtil.h>
#include <KWCommon15/KWValue.h>

using namespace KWCommonNS;

namespace {

void readAll(const icu::UnicodeString& text, TokenizerType type) {
    KWTokenizer tokens(text, type);
    while (!tokens.nextTokenValue().isNull())
        tokens.getDelimiter();
    KWTokenizer numbers(text, type);
    for (KWValue value = numbers.nextTokenValueExp(); !value.isNull();
         value = numbers.nextTokenValueExp()) {
        value.toString();
        value.getIntegerValue();
        value.getStringValue();
    }
    for (const bool trim : {false, true}) {
        KWTokenizer items(text, type);
        while (!items.nextSeparatedValue(L',', trim).isNull())
            items.isAtEnd();
    }
    KWParser::parse(text, type).toString();
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto text = icu::UnicodeString::fromUTF8(
        icu::StringPiece(reinterpret_cast<const char*>(data), static_cast<std::int32_t>(size)));
    readAll(text, TokenizerType::CSS);
    readAll(text, TokenizerType::Plain);
    KWUnicodeRange range;
    if (range.parseUnicodeRange(KWValue(text)))
        for (const int ch : {-1, 0, 0x41, 0xFFFF, 0x10FFFF, 0x110000})
            range.inRange(ch);
    return 0;
}
