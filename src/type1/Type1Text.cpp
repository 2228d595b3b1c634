#include "type1/Type1Text.h"

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

double leadingNumber(std::string_view text) {
    text = withoutLeadingSeparators(text);
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    double value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() && std::isfinite(value) ? value : 0;
}

std::optional<Type1Box> readType1Box(std::string_view text) {
    Type1Box box;
    for (float* const corner : {&box.left, &box.bottom, &box.right, &box.top}) {
        const std::string_view word = cutWord(text);
        if (word.empty())
            return std::nullopt;
        *corner = static_cast<float>(leadingNumber(word));
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
