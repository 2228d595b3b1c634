#include "service/ConfigValues.h"

#include "type1/FS_Keyword.h"

#include <KWCommon15/KWNameEnum.h>
#include <KWCommon15/KWParser.h>
#include <KWCommon15/KWUtil.h>

#include <unicode/locid.h>

#include <algorithm>
#include <limits>

namespace KWFontService_NS {

namespace {

using KWCommonNS::KWNameEnum;
using KWCommonNS::KWValue;

UnicodeString lowerCase(const UnicodeString& text) {
    return UnicodeString(text).toLower(icu::Locale::getRoot());
}

bool holds(const UnicodeString& text, FS_Word word) {
    return text.indexOf(FS_Keyword::text(word)) >= 0;
}

struct StretchRow {
    FS_Word degree;
    int condensed;
    int expanded;
};
/// The first degree that a text holds counts.
constexpr StretchRow kStretches[] = {
    {FS_Word::ultra, 1, 9},
    {FS_Word::extra, 2, 8},
    {FS_Word::semi, 4, 6},
};
constexpr StretchRow kPlainStretch = {FS_Word::none, 3, 7};

} // namespace

std::optional<bool> booleanOf(const UnicodeString& text) {
    switch (FS_Keyword::find(lowerCase(text))) {
    case FS_Word::true_:
    case FS_Word::yes:
        return true;
    case FS_Word::false_:
    case FS_Word::no:
        return false;
    default:
        return std::nullopt;
    }
}

std::optional<bool> switchOf(const UnicodeString& text) {
    switch (FS_Keyword::find(text)) {
    case FS_Word::enable:
        return true;
    case FS_Word::disable:
        return false;
    default:
        return std::nullopt;
    }
}

std::optional<bool> metricModeOf(const UnicodeString& text) {
    switch (FS_Keyword::find(text)) {
    case FS_Word::windows:
        return true;
    case FS_Word::typographic:
        return false;
    default:
        return std::nullopt;
    }
}

bool isAffirmative(const UnicodeString& text) {
    const KWNameEnum name = KWCommonNS::KWParser::parse(text).getNameValue();
    return name == KWNameEnum::True || name == KWNameEnum::Yes;
}

std::optional<int> integerOf(const UnicodeString& text) {
    const KWValue value = KWCommonNS::KWParser::parse(text);
    return value.isInteger() ? std::optional(value.getIntegerValue()) : std::nullopt;
}

std::optional<float> numberOf(const UnicodeString& text) {
    std::int32_t end = 0;
    bool found = false;
    double number = KWCommonNS::KWUtil::parseNumber(text, end, found);
    if (!found)
        return std::nullopt;
    if (end < text.length() && text.charAt(end) == u'%')
        number /= 100;
    constexpr double kLargest = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(number, -kLargest, kLargest));
}

int weightOfWord(const UnicodeString& text) {
    const UnicodeString lower = lowerCase(text);
    return holds(lower, FS_Word::bold) || holds(lower, FS_Word::demi) ? 700 : 400;
}

int stretchOf(const UnicodeString& text) {
    const bool condensed = holds(text, FS_Word::condensed);
    if (!condensed && !holds(text, FS_Word::expanded))
        return 0;
    const auto found = std::ranges::find_if(
        kStretches, [&text](const StretchRow& row) { return holds(text, row.degree); });
    const StretchRow& row = found != std::end(kStretches) ? *found : kPlainStretch;
    return condensed ? row.condensed : row.expanded;
}

} // namespace KWFontService_NS
