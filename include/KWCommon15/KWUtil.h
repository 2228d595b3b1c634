#pragma once

#include "KWCommon15/KWExport.h"
#include "KWCommon15/KWLang.h"
#include "KWCommon15/KWNameEnum.h"

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <limits>

namespace KWCommonNS {

/// Compression and number text. All operations may be called from any thread and follow no locale.
class KWCOMMON_API KWUtil {
public:
    /// Which quotation mark `KWValue::toQuotedString` sets around a text.
    enum class QuoteMode { Double, Single };

    /// Decompresses one zlib stream (RFC 1950) into `out`, block by block.
    ///
    /// Bytes behind the end of the stream are not looked at. On failure `out` may hold a part of
    /// the result.
    /// @param maximum  the greatest output accepted, in bytes; no byte beyond it is written
    /// @return false when the data is damaged or ends early, when the result would be longer than
    ///         `maximum`, and when `out` fails
    static bool inflate(std::ostream& out, const void* data, std::size_t size,
                        std::uint64_t maximum = std::numeric_limits<std::uint64_t>::max());

    /// Compresses a block into one zlib stream at zlib's default level; no data gives the stream of
    /// an empty block.
    /// @return false when `out` fails or there is no memory; `out` may then hold a part of the
    /// result
    static bool deflate(std::ostream& out, const void* data, std::size_t size);

    /// Reads the decimal number at the beginning of a text.
    ///
    /// White space, then a sign or none, digits with at most one decimal point before or among
    /// them, and an exponent or none. A number too large for a double answers the largest double of
    /// its sign, one too small answers 0.
    /// @param end  receives the index of the first unit behind the number; 0 when there is none
    /// @param ok   receives whether there is a number
    /// @return     the number; 0 when there is none
    static double parseNumber(const UnicodeString& text, std::int32_t& end, bool& ok);

    /// The shortest decimal text that reads back as the same number.
    ///
    /// From 1e-6 up to below 1e21 without an exponent ("65536", "0.5"), whole numbers with all
    /// their digits; outside of it with an exponent ("1e-7", "1e21"). Both zeros are "0". Other
    /// values are "NaN", "Infinity" and "-Infinity".
    static UnicodeString toString(double value);

    /// Writes a whole number by a pattern.
    ///
    /// @param value          the number
    /// @param pattern        text around one run of "#" and "0"; the number stands in its place
    /// with
    ///                       at least as many digits as the run has "0". A pattern without such a
    ///                       run, and an empty one, is put before the number as it stands
    /// @param text           receives the result
    /// @param minimumDigits  at least this many digits as well, up to 64
    /// @param lang           the language; none changes the digits, which are ASCII and ungrouped
    /// @param style          the numbering style: `None` and `Normal` are decimal, the only ones
    /// @return               false, with `text` as it was, for another style
    static bool formatNumber(int value, const UnicodeString& pattern, UnicodeString& text,
                             int minimumDigits, KWLang lang, KWNameEnum style);

    /// A quiet not-a-number: the missing value of operations that answer a float.
    static float getNaNf();
};

} // namespace KWCommonNS
