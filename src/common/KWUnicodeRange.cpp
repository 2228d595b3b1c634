#include "KWCommon15/KWUnicodeRange.h"

#include "KWCommon15/KWTokenizer.h"
#include "common/CssChars.h"

#include <algorithm>

namespace KWCommonNS {

namespace {

constexpr std::int32_t kLastCodePoint = 0x10FFFF;

} // namespace

bool KWUnicodeRange::parseUnicodeRange(const KWValue& value) {
    ranges_.clear();
    KWTokenizer tokenizer(value.getStringValue(), TokenizerType::CSS);
    std::vector<Range> ranges;
    do {
        const KWValue token = tokenizer.nextTokenValue();
        Range range{};
        if (token.getUnitType() != KWUnitType::UnicodeRange ||
            !readRange(token.getStringValue(), range))
            return false;
        ranges.push_back(range);
        if (tokenizer.nextTokenValue().isNull()) {
            ranges_ = std::move(ranges);
            mergeRanges();
            return true;
        }
    } while (tokenizer.getDelimiter() == ',');
    return false;
}

/// Reads one unicode-range token, whose form the tokenizer has checked.
bool KWUnicodeRange::readRange(const UnicodeString& token, Range& range) {
    bool interval = false;
    for (std::int32_t i = 2; i < token.length(); ++i) { // behind "U+"
        const char16_t unit = token[i];
        if (unit == u'-') {
            interval = true;
            range.last = 0;
            continue;
        }
        range.last = range.last * 16 + (unit == u'?' ? 0xF : hexValue(unit));
        if (!interval)
            range.first = range.first * 16 + (unit == u'?' ? 0 : hexValue(unit));
    }
    return range.last <= kLastCodePoint && range.first <= range.last;
}

void KWUnicodeRange::mergeRanges() {
    std::ranges::sort(ranges_, {}, &Range::first);
    std::size_t merged = 0;
    for (const Range& range : ranges_) {
        if (merged > 0 && range.first <= ranges_[merged - 1].last + 1)
            ranges_[merged - 1].last = std::max(ranges_[merged - 1].last, range.last);
        else
            ranges_[merged++] = range;
    }
    ranges_.resize(merged);
    ranges_.shrink_to_fit();
}

bool KWUnicodeRange::inRange(int ch) const {
    const auto behind = std::ranges::upper_bound(ranges_, ch, {}, &Range::first);
    return behind != ranges_.begin() && ch <= std::prev(behind)->last;
}

} // namespace KWCommonNS
