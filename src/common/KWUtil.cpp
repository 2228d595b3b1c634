#include "KWCommon15/KWUtil.h"

#include "common/CssChars.h"
#include "common/NumberText.h"
#include "common/TextView.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace KWCommonNS {

namespace {

UnicodeString fromAscii(std::string_view text) {
    return UnicodeString(text.data(), static_cast<std::int32_t>(text.size()), US_INV);
}

bool isPlaceholder(char16_t unit) {
    return unit == u'#' || unit == u'0';
}

} // namespace

double KWUtil::parseNumber(const UnicodeString& text, std::int32_t& end, bool& ok) {
    std::int32_t start = 0;
    while (start < text.length() && isCssSpace(text[start]))
        ++start;
    const std::u16string_view rest = toView(text).substr(static_cast<std::size_t>(start));
    const NumberSpan number = scanNumber(rest, {.exponent = true});
    ok = number.length > 0;
    end = ok ? start + static_cast<std::int32_t>(number.length) : 0;
    return ok ? numberValue(rest.substr(0, number.length)) : 0;
}

UnicodeString KWUtil::toString(double value) {
    return fromAscii(numberText(value));
}

bool KWUtil::formatNumber(int value, const UnicodeString& pattern, UnicodeString& text,
                          int minimumDigits, KWLang /*lang*/, KWNameEnum style) {
    if (style != KWNameEnum::None && style != KWNameEnum::Normal)
        return false;
    std::int32_t runStart = 0;
    while (runStart < pattern.length() && !isPlaceholder(pattern[runStart]))
        ++runStart;
    constexpr int kMostDigits = 64;
    std::size_t digits = static_cast<std::size_t>(std::clamp(minimumDigits, 0, kMostDigits));
    std::size_t patternDigits = 0;
    std::int32_t runEnd = runStart;
    for (; runEnd < pattern.length() && isPlaceholder(pattern[runEnd]); ++runEnd)
        patternDigits += pattern[runEnd] == u'0' ? 1U : 0U;
    digits = std::max(digits, patternDigits);

    std::string number = std::to_string(value);
    const std::size_t sign = value < 0 ? 1U : 0U;
    if (number.size() - sign < digits)
        number.insert(sign, digits - (number.size() - sign), '0');
    UnicodeString result(pattern, 0, runStart);
    result.append(fromAscii(number)).append(pattern, runEnd, pattern.length() - runEnd);
    text = result;
    return true;
}

float KWUtil::getNaNf() {
    return std::numeric_limits<float>::quiet_NaN();
}

} // namespace KWCommonNS
