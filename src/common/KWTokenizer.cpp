#include "KWCommon15/KWTokenizer.h"

#include "KWCommon15/KWNameTable.h"
#include "common/CssChars.h"
#include "common/NumberText.h"
#include "common/TextView.h"
#include "common/UnitTable.h"

#include <unicode/utf16.h>

#include <string>
#include <string_view>

namespace KWCommonNS {

namespace {

KWValue wordValue(const UnicodeString& word) {
    const KWNameEnum name = KWNameTable::findKeyword(word);
    return name == KWNameEnum::None ? KWValue(word, KWUnitType::Ident) : KWValue(name);
}

KWValue numberTokenValue(std::u16string_view number, bool isWhole) {
    if (isWhole) {
        if (const auto whole = wholeNumberValue(number))
            return *whole;
    }
    return numberValue(number);
}

bool isPlainDelimiter(std::int32_t ch) {
    return ch == ',' || ch == ';';
}

} // namespace

KWTokenizer::KWTokenizer(const UnicodeString& text, TokenizerType type)
    : text_(text), type_(type), buffer_(text_.getBuffer()), length_(buffer_ ? text_.length() : 0) {}

KWValue KWTokenizer::nextTokenValue() {
    return nextToken(false);
}

KWValue KWTokenizer::nextTokenValueExp() {
    return nextToken(true);
}

KWValue KWTokenizer::nextToken(bool exponent) {
    delimiter_ = 0;
    if (isAtEnd())
        return {};
    return type_ == TokenizerType::CSS ? nextCssToken(exponent) : nextPlainToken(exponent);
}

bool KWTokenizer::isAtEnd() {
    skipFiller();
    return position_ >= length_;
}

UnicodeString KWTokenizer::slice(std::int32_t from, std::int32_t to) const {
    return UnicodeString(buffer_ + from, to - from);
}

std::u16string_view KWTokenizer::rest() const {
    return {buffer_ + position_, static_cast<std::size_t>(length_ - position_)};
}

std::int32_t KWTokenizer::rawCodePointAt(std::int32_t at) const {
    const char16_t unit = buffer_[at];
    if (U16_IS_LEAD(unit) && at + 1 < length_ && U16_IS_TRAIL(buffer_[at + 1]))
        return U16_GET_SUPPLEMENTARY(unit, buffer_[at + 1]);
    return unit;
}

std::int32_t KWTokenizer::codePointAt(std::int32_t at) const {
    const std::int32_t ch = rawCodePointAt(at);
    return ch == 0 || isSurrogate(ch) ? kReplacement : ch;
}

std::int32_t KWTokenizer::takeCodePoint() {
    const std::int32_t ch = codePointAt(position_);
    position_ += U16_LENGTH(ch);
    return ch;
}

void KWTokenizer::skipSpace() {
    while (position_ < length_ && isCssSpace(buffer_[position_]))
        ++position_;
}

void KWTokenizer::skipFiller() {
    skipSpace();
    while (type_ == TokenizerType::CSS && isComment(position_)) {
        position_ = commentEnd(position_);
        skipSpace();
    }
}

bool KWTokenizer::isComment(std::int32_t at) const {
    return unitAt(at) == u'/' && unitAt(at + 1) == u'*';
}

std::int32_t KWTokenizer::commentEnd(std::int32_t at) const {
    const std::u16string_view all(buffer_, static_cast<std::size_t>(length_));
    const std::size_t end = all.find(u"*/", static_cast<std::size_t>(at) + 2);
    return end == std::u16string_view::npos ? length_ : static_cast<std::int32_t>(end) + 2;
}

bool KWTokenizer::isEscape(std::int32_t at) const {
    return unitAt(at) == u'\\' && !isNewline(unitAt(at + 1));
}

bool KWTokenizer::startsIdentifier(std::int32_t at) const {
    if (unitAt(at) == u'-') {
        ++at;
        if (unitAt(at) == u'-')
            return true;
    }
    return at < length_ && (isNameStart(codePointAt(at)) || isEscape(at));
}

KWValue KWTokenizer::nextCssToken(bool exponent) {
    const char16_t unit = buffer_[position_];
    if (unit == u'"' || unit == u'\'')
        return takeString();
    constexpr std::size_t kNumberBeginning = 3; // sign, point, digit
    if (scanNumber(rest().substr(0, kNumberBeginning), {}).length > 0)
        return takeNumber(exponent);
    if (unit == u'u' || unit == u'U') {
        if (const std::int32_t end = unicodeRangeEnd(); end > position_) {
            KWValue range(slice(position_, end), KWUnitType::UnicodeRange);
            position_ = end;
            return range;
        }
    }
    if (startsIdentifier(position_))
        return takeIdentLike();
    const std::int32_t next = position_ + 1;
    if (unit == u'#' && next < length_ && (isNameChar(codePointAt(next)) || isEscape(next)))
        return takePrefixedName(KWUnitType::Hash);
    if (unit == u'@' && startsIdentifier(next))
        return takePrefixedName(KWUnitType::AtKeyword);
    return takeDelimiter();
}

KWValue KWTokenizer::nextPlainToken(bool exponent) {
    if (isPlainDelimiter(buffer_[position_]))
        return takeDelimiter();
    std::int32_t end = position_;
    while (end < length_ && !isCssSpace(buffer_[end]) && !isPlainDelimiter(buffer_[end]))
        ++end;
    const std::u16string_view run = rest().substr(0, static_cast<std::size_t>(end - position_));
    const NumberSpan number = scanNumber(run, {.exponent = exponent, .trailingPoint = true});
    if (number.length == run.size()) {
        position_ = end;
        return numberTokenValue(run, number.isWhole);
    }
    UnicodeString word;
    while (position_ < end)
        word.append(takeCodePoint());
    return wordValue(word);
}

KWValue KWTokenizer::takeDelimiter() {
    delimiter_ = takeCodePoint();
    return KWValue(UnicodeString(delimiter_), KWUnitType::Delimiter);
}

/// At the character behind a backslash.
std::int32_t KWTokenizer::takeEscape() {
    if (position_ >= length_)
        return kReplacement;
    if (hexValue(buffer_[position_]) < 0)
        return takeCodePoint();
    constexpr int kMostDigits = 6;
    std::int32_t ch = 0;
    for (int digits = 0; digits < kMostDigits && hexValue(unitAt(position_)) >= 0; ++digits)
        ch = ch * 16 + hexValue(buffer_[position_++]);
    if (unitAt(position_) == u'\r' && unitAt(position_ + 1) == u'\n')
        ++position_;
    if (isCssSpace(unitAt(position_)))
        ++position_;
    return ch == 0 || ch > 0x10FFFF || isSurrogate(ch) ? kReplacement : ch;
}

UnicodeString KWTokenizer::takeName() {
    UnicodeString name;
    while (position_ < length_) {
        if (isEscape(position_)) {
            ++position_;
            name.append(takeEscape());
        } else if (isNameChar(codePointAt(position_))) {
            name.append(takeCodePoint());
        } else {
            break;
        }
    }
    return name;
}

KWValue KWTokenizer::takePrefixedName(KWUnitType sort) {
    UnicodeString text(buffer_[position_++]);
    return KWValue(text.append(takeName()), sort);
}

KWValue KWTokenizer::takeString() {
    const char16_t quote = buffer_[position_++];
    UnicodeString text;
    while (position_ < length_) {
        const char16_t unit = buffer_[position_];
        if (unit == quote) {
            ++position_;
            break;
        }
        if (isNewline(unit))
            return KWValue(text, KWUnitType::Bad);
        if (unit != u'\\') {
            text.append(takeCodePoint());
            continue;
        }
        ++position_;
        if (!isNewline(unitAt(position_))) {
            if (position_ < length_)
                text.append(takeEscape());
            continue;
        }
        position_ += unitAt(position_) == u'\r' && unitAt(position_ + 1) == u'\n' ? 2 : 1;
    }
    return KWValue(text);
}

KWValue KWTokenizer::takeNumber(bool exponent) {
    const std::int32_t start = position_;
    const NumberSpan span = scanNumber(rest(), {.exponent = exponent});
    const std::u16string_view number = rest().substr(0, span.length);
    position_ += static_cast<std::int32_t>(span.length);
    if (unitAt(position_) == u'%') {
        ++position_;
        return KWValue(numberValue(number), KWUnitType::Percent);
    }
    if (!startsIdentifier(position_))
        return numberTokenValue(number, span.isWhole);
    if (const auto unit = findUnit(toView(takeName())))
        return KWValue(numberValue(number), *unit);
    return KWValue(slice(start, position_), KWUnitType::Dimension);
}

KWValue KWTokenizer::takeIdentLike() {
    UnicodeString name = takeName();
    if (unitAt(position_) != u'(')
        return wordValue(name);
    ++position_;
    if (equalsWord(toView(name), u"url")) {
        skipSpace();
        const char16_t unit = unitAt(position_);
        if (unit != u'"' && unit != u'\'')
            return takeUrl();
    }
    return KWValue(name.append(u'('), KWUnitType::Function);
}

KWValue KWTokenizer::takeUrl() {
    UnicodeString url;
    while (position_ < length_) {
        const char16_t unit = buffer_[position_];
        if (unit == u')') {
            ++position_;
            break;
        }
        if (isCssSpace(unit)) {
            skipSpace();
            if (position_ < length_ && buffer_[position_] != u')')
                return takeBadUrl(url);
        } else if (unit == u'\\') {
            if (!isEscape(position_))
                return takeBadUrl(url);
            ++position_;
            url.append(takeEscape());
        } else if (unit == u'"' || unit == u'\'' || unit == u'(' ||
                   (unit != 0 && isNonPrintable(unit))) {
            return takeBadUrl(url);
        } else {
            url.append(takeCodePoint());
        }
    }
    return KWValue(url, KWUnitType::Url);
}

KWValue KWTokenizer::takeBadUrl(const UnicodeString& readable) {
    while (position_ < length_ && buffer_[position_] != u')')
        position_ += buffer_[position_] == u'\\' && position_ + 1 < length_ ? 2 : 1;
    if (position_ < length_)
        ++position_;
    return KWValue(readable, KWUnitType::Bad);
}

/// The end of the unicode-range token here; the position itself when there is none.
std::int32_t KWTokenizer::unicodeRangeEnd() const {
    constexpr std::int32_t kMostDigits = 6;
    if (unitAt(position_ + 1) != u'+')
        return position_;
    const std::int32_t start = position_ + 2;
    std::int32_t at = start;
    while (at - start < kMostDigits && hexValue(unitAt(at)) >= 0)
        ++at;
    const std::int32_t wildcards = at;
    while (at - start < kMostDigits && unitAt(at) == u'?')
        ++at;
    if (at == start)
        return position_;
    if (at > wildcards || unitAt(at) != u'-' || hexValue(unitAt(at + 1)) < 0)
        return at;
    const std::int32_t upper = ++at;
    while (at - upper < kMostDigits && hexValue(unitAt(at)) >= 0)
        ++at;
    return at;
}

KWValue KWTokenizer::nextSeparatedValue(wchar_t separator, bool trim) {
    delimiter_ = 0;
    if (position_ >= length_)
        return {};
    const auto wanted = static_cast<std::int32_t>(static_cast<char32_t>(separator));
    const bool css = type_ == TokenizerType::CSS;
    const std::int32_t end = css ? findCssSeparator(wanted) : findSeparator(wanted);
    std::u16string_view item = rest().substr(0, static_cast<std::size_t>(end - position_));
    if (trim)
        item = trimCssSpace(item);
    position_ = end < length_ ? end + U16_LENGTH(wanted) : end;
    return KWValue(toText(item), css ? KWUnitType::List : KWUnitType::None);
}

std::int32_t KWTokenizer::findSeparator(std::int32_t separator) const {
    std::int32_t at = position_;
    while (at < length_) {
        const std::int32_t ch = rawCodePointAt(at);
        if (ch == separator)
            return at;
        at += U16_LENGTH(ch);
    }
    return length_;
}

std::int32_t KWTokenizer::findCssSeparator(std::int32_t separator) const {
    std::u16string closers;
    std::int32_t at = position_;
    while (at < length_) {
        const std::int32_t ch = rawCodePointAt(at);
        if (ch == separator && closers.empty())
            return at;
        if (isComment(at)) {
            at = commentEnd(at);
            continue;
        }
        if (ch == '"' || ch == '\'') {
            at = stringEnd(at);
            continue;
        }
        if (ch == '(')
            closers.push_back(u')');
        else if (ch == '[')
            closers.push_back(u']');
        else if (ch == '{')
            closers.push_back(u'}');
        else if (!closers.empty() && ch == closers.back())
            closers.pop_back();
        at += ch == '\\' && at + 1 < length_ ? 2 : U16_LENGTH(ch);
    }
    return length_;
}

/// Behind the string that begins at a quotation mark, or at the line end that makes it a bad one.
std::int32_t KWTokenizer::stringEnd(std::int32_t at) const {
    const char16_t quote = buffer_[at++];
    while (at < length_ && !isNewline(buffer_[at])) {
        if (buffer_[at] == quote)
            return at + 1;
        at += buffer_[at] == u'\\' && at + 1 < length_ ? 2 : 1;
    }
    return at;
}

} // namespace KWCommonNS
