#pragma once

#include "KWCommon15/KWExport.h"
#include "KWCommon15/KWValue.h"

#include <cstdint>
#include <string_view>

namespace KWCommonNS {

/// Which grammar `KWTokenizer` reads.
enum class TokenizerType {
    /// CSS Syntax Module Level 3, with unicode-range tokens: comments, escapes, quoted strings,
    /// numbers with units.
    CSS,
    /// Data text: white space, "," and ";" separate; nothing is escaped or quoted. A run of other
    /// characters is a number when the whole of it is one ("5." included), else a word.
    Plain,
};

/// Takes a text apart, one value at a time.
///
/// Tokens become values in this way:
/// - a number: integer kind when it has neither point nor exponent and fits `int`, else real; with
///   a known unit or "%" a real of that unit; with an unknown unit a string of unit `Dimension`;
/// - an identifier or word: a name when the common table has it (`KWNameTable::findKeyword`), else
/// a
///   string of unit `Ident`. Text never adds a name to the table;
/// - a quoted string: a string without unit; one that a line end cuts off has the unit `Bad`;
/// - every other token: a string whose unit tells what it is (`KWUnitType`);
/// - the end of the text: the null value.
///
/// NUL and lone surrogates read as U+FFFD. The work is linear in the text, and nothing recurses.
/// One tokenizer serves one thread at a time.
class KWCOMMON_API KWTokenizer {
public:
    explicit KWTokenizer(const UnicodeString& text, TokenizerType type = TokenizerType::CSS);
    KWTokenizer(const KWTokenizer&) = delete;
    KWTokenizer& operator=(const KWTokenizer&) = delete;

    /// The next token; numbers have no exponent (CSS 2.1), so "1e3" is 1 with the unit "e3".
    KWValue nextTokenValue();

    /// As `nextTokenValue`, with an exponent as part of a number: "1e3" is 1000.
    KWValue nextTokenValueExp();

    /// The text up to the next separator or the end, as a string; the separator is consumed.
    ///
    /// In CSS text, separators inside quoted strings, comments and brackets do not count, and the
    /// item has the unit `List`.
    /// @param separator  a code point
    /// @param trim       drops white space at both ends of the item
    /// @return an empty string for an item without text; null at the end of the text. A separator
    /// at
    ///         the very end is followed by no item
    KWValue nextSeparatedValue(wchar_t separator, bool trim);

    /// The code point of the token read last when that was a delimiter (44 for a comma); 0 when it
    /// was another token, a separated item or the end.
    int getDelimiter() const { return delimiter_; }

    /// True when nothing but white space and comments is left.
    bool isAtEnd();

private:
    KWValue nextToken(bool exponent);
    KWValue nextCssToken(bool exponent);
    KWValue nextPlainToken(bool exponent);

    char16_t unitAt(std::int32_t at) const { return at < length_ ? buffer_[at] : u'\0'; }
    /// NUL and lone surrogates read as U+FFFD.
    std::int32_t codePointAt(std::int32_t at) const;
    std::int32_t rawCodePointAt(std::int32_t at) const;
    std::u16string_view rest() const;
    UnicodeString slice(std::int32_t from, std::int32_t to) const;

    void skipSpace();
    void skipFiller();
    bool isComment(std::int32_t at) const;
    std::int32_t commentEnd(std::int32_t at) const;
    bool isEscape(std::int32_t at) const;
    bool startsIdentifier(std::int32_t at) const;
    std::int32_t unicodeRangeEnd() const;
    std::int32_t findSeparator(std::int32_t separator) const;
    std::int32_t findCssSeparator(std::int32_t separator) const;
    std::int32_t stringEnd(std::int32_t at) const;

    std::int32_t takeCodePoint();
    std::int32_t takeEscape();
    UnicodeString takeName();
    KWValue takePrefixedName(KWUnitType sort);
    KWValue takeString();
    KWValue takeNumber(bool exponent);
    KWValue takeIdentLike();
    KWValue takeUrl();
    KWValue takeBadUrl(const UnicodeString& readable);
    KWValue takeDelimiter();

    UnicodeString text_;
    TokenizerType type_;
    const char16_t* buffer_;
    std::int32_t length_;
    std::int32_t position_ = 0;
    int delimiter_ = 0;
};

} // namespace KWCommonNS
