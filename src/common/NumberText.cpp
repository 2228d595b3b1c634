#include "common/NumberText.h"

#include "common/CssChars.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <system_error>

namespace KWCommonNS {

namespace {

std::size_t skipDigits(std::u16string_view text, std::size_t at) {
    while (at < text.size() && isDigit(text[at]))
        ++at;
    return at;
}

bool isSign(char16_t unit) {
    return unit == u'+' || unit == u'-';
}

/// Whether a number that no double holds is too large rather than too small.
bool isHuge(std::string_view number) {
    const std::size_t exponentAt = number.find_first_of("eE");
    const std::string_view mantissa = number.substr(0, exponentAt);
    std::int64_t exponent = 0;
    if (exponentAt != std::string_view::npos) {
        constexpr std::int64_t kSaturated = std::numeric_limits<std::int64_t>::max() / 16;
        std::string_view digits = number.substr(exponentAt + 1);
        const bool negative = digits.front() == '-';
        if (negative || digits.front() == '+')
            digits.remove_prefix(1);
        for (const char digit : digits)
            exponent = exponent < kSaturated / 16 ? exponent * 10 + (digit - '0') : kSaturated;
        if (negative)
            exponent = -exponent;
    }
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    const std::size_t leading = mantissa.find_first_of("123456789");
    const auto magnitude = leading < point ? static_cast<std::int64_t>(point - leading)
                                           : -static_cast<std::int64_t>(leading - point - 1);
    return magnitude + exponent > 0;
}

} // namespace

NumberSpan scanNumber(std::u16string_view text, NumberGrammar grammar) {
    const std::size_t start = !text.empty() && isSign(text.front()) ? 1 : 0;
    std::size_t at = skipDigits(text, start);
    const bool hasWhole = at > start;
    NumberSpan span{.length = at, .isWhole = true};
    if (at < text.size() && text[at] == u'.') {
        const std::size_t behind = skipDigits(text, at + 1);
        if (behind > at + 1 || (hasWhole && grammar.trailingPoint)) {
            at = behind;
            span = {.length = at, .isWhole = false};
        }
    }
    if (!hasWhole && span.isWhole)
        return {};
    if (grammar.exponent && at < text.size() && (text[at] == u'e' || text[at] == u'E')) {
        std::size_t digits = at + 1;
        if (digits < text.size() && isSign(text[digits]))
            ++digits;
        const std::size_t behind = skipDigits(text, digits);
        if (behind > digits)
            span = {.length = behind, .isWhole = false};
    }
    return span;
}

double numberValue(std::u16string_view number) {
    const bool negative = number.front() == u'-';
    if (isSign(number.front()))
        number.remove_prefix(1);
    std::string ascii;
    ascii.reserve(number.size());
    for (const char16_t unit : number)
        ascii.push_back(static_cast<char>(unit));
    double value = 0;
    const auto result = std::from_chars(ascii.data(), ascii.data() + ascii.size(), value);
    // Libraries differ in what they leave in `value` here.
    if (result.ec == std::errc::result_out_of_range)
        value = isHuge(ascii) ? std::numeric_limits<double>::max() : 0;
    else if (std::isinf(value))
        value = std::numeric_limits<double>::max();
    return negative ? -value : value;
}

std::optional<int> wholeNumberValue(std::u16string_view number) {
    const bool negative = number.front() == u'-';
    if (isSign(number.front()))
        number.remove_prefix(1);
    constexpr std::int64_t kMost = std::numeric_limits<int>::max();
    std::int64_t magnitude = 0;
    for (const char16_t unit : number) {
        magnitude = magnitude * 10 + (unit - u'0');
        if (magnitude > kMost + 1)
            return std::nullopt;
    }
    if (!negative && magnitude > kMost)
        return std::nullopt;
    return static_cast<int>(negative ? -magnitude : magnitude);
}

std::string numberText(double value) {
    if (std::isnan(value))
        return "NaN";
    if (std::isinf(value))
        return value < 0 ? "-Infinity" : "Infinity";
    if (value == 0)
        return "0";
    char buffer[64];
    const double magnitude = std::fabs(value);
    const auto format = magnitude >= 1e-6 && magnitude < 1e21 ? std::chars_format::fixed
                                                              : std::chars_format::scientific;
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, format);
    std::string text(buffer, result.ptr);
    // The exponent comes as "e+21" or "e-07".
    if (const std::size_t at = text.find('e'); at != std::string::npos) {
        const std::size_t digits = text.find_first_not_of("+-0", at + 1);
        return text.substr(0, at + 1) + (text[at + 1] == '-' ? "-" : "") + text.substr(digits);
    }
    return text;
}

} // namespace KWCommonNS
