#include "type1/Type1Text.h"

#include "common/AsciiChars.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

namespace KWFontService_NS {

namespace {

std::string_view withoutLeadingSeparators(std::string_view text) {
    const auto first = std::ranges::find_if_not(text, isType1Separator);
    return text.substr(static_cast<std::size_t>(first - text.begin()));
}

/// The reader of numbers takes no plus sign.
std::string_view withoutPlus(std::string_view text) {
    return text.starts_with('+') && !text.starts_with("+-") ? text.substr(1) : text;
}

} // namespace

std::string_view trimSeparators(std::string_view text) {
    text = withoutLeadingSeparators(text);
    while (!text.empty() && isType1Separator(text.back()))
        text.remove_suffix(1);
    return text;
}

std::string_view cutWord(std::string_view& text) {
    text = withoutLeadingSeparators(text);
    const auto end = std::ranges::find_if(text, isType1Separator);
    const std::string_view word = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(word.size());
    return word;
}

float leadingNumber(std::string_view text) {
    text = withoutPlus(withoutLeadingSeparators(text));
    float value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() && std::isfinite(value) ? value : 0;
}

int leadingInteger(std::string_view text, int base) {
    text = withoutPlus(withoutLeadingSeparators(text));
    int value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (result.ec != std::errc::result_out_of_range)
        return value;
    return text.starts_with('-') ? std::numeric_limits<int>::min()
                                 : std::numeric_limits<int>::max();
}

bool holdsTrue(std::string_view text) {
    constexpr std::string_view kTrue = "true";
    const auto isSame = [](char a, char b) { return KWCommonNS::toAsciiLower(a) == b; };
    return std::search(text.begin(), text.end(), kTrue.begin(), kTrue.end(), isSame) != text.end();
}

std::optional<Type1Box> readType1Box(std::string_view text) {
    Type1Box box;
    for (float* const corner : {&box.left, &box.bottom, &box.right, &box.top}) {
        const std::string_view word = cutWord(text);
        if (word.empty())
            return std::nullopt;
        *corner = leadingNumber(word);
    }
    if (!trimSeparators(text).empty())
        return std::nullopt;
    return box;
}

UnicodeString textOfBytes(std::string_view bytes) {
    std::u16string units;
    units.reserve(bytes.size());
    for (const char byte : bytes)
        units.push_back(static_cast<unsigned char>(byte));
    // A text counts its units in 31 bits.
    constexpr std::size_t kMost = std::numeric_limits<std::int32_t>::max() / 2;
    return UnicodeString(units.data(), static_cast<std::int32_t>(std::min(units.size(), kMost)));
}

UnicodeString type1SubFamilyName(const UnicodeString& fullName, const UnicodeString& familyName,
                                 const UnicodeString& weightName) {
    if (fullName == familyName)
        return weightName;
    if (!fullName.startsWith(familyName))
        return {};
    return UnicodeString(fullName, familyName.length()).trim();
}

} // namespace KWFontService_NS
