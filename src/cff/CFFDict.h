#pragma once

#include "common/ByteView.h"
#include "type1/FS_Keyword.h"

#include <KWCommon15/KWValue.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace KWFontService_NS {

using KWCommonNS::ByteView;
using KWCommonNS::KWName;
using KWCommonNS::KWValue;

/// The key of a word in a DICT that is kept as a compound value; also the value `true` or `false`
/// of such a DICT.
constexpr KWName cffKey(FS_Word word) {
    return KWName(static_cast<KWCommonNS::KWNameEnum>(word));
}
/// The key of the operand at a place, counted from 1, in an array that is kept as a compound value.
constexpr KWName cffKey(std::size_t place) {
    return KWName(static_cast<KWCommonNS::KWNameEnum>(place));
}

/// A DICT operator: the one byte, or the two bytes as one number.
using CFFOperator = std::uint16_t;
inline constexpr std::uint8_t kCFFEscape = 12;
constexpr CFFOperator cffEscape(std::uint8_t second) {
    return static_cast<CFFOperator>(kCFFEscape << 8 | second);
}

/// Decodes the DICT operand at `cursor` and moves the cursor behind it.
///
/// A short integer (28) has no sign here: 28 FF 6A is 65386. A real that is no number, and a byte
/// that the format reserves, give the null value.
/// @return false when the DICT ends inside the operand
bool readCFFOperand(ByteView dict, std::size_t& cursor, KWValue& out);

/// Goes through the operators of a DICT, each with its operands.
class CFFDictWalker {
public:
    explicit CFFDictWalker(ByteView dict) : dict_(dict) {}

    /// To the next operator; false at the end of the DICT or where an operand is cut off.
    bool next();

    CFFOperator op() const { return op_; }
    /// The operands in their order, `kMaxDictOperands` at most.
    std::span<const KWValue> operands() const { return operands_; }
    /// The operand right before the operator; null when there is none.
    const KWValue& last() const { return last_; }

private:
    ByteView dict_;
    std::size_t at_ = 0;
    CFFOperator op_ = 0;
    std::vector<KWValue> operands_;
    KWValue last_;
};

/// What an operator leaves in a DICT that is kept.
enum class CFFEntry : std::uint8_t {
    Integer,     ///< the last operand, cut to an integer
    IntegerFlag, ///< whether that is other than 0, as the word `true` or `false`
    Number,      ///< the last operand as it is
    NumberFlag,  ///< whether that is other than the integer 0, as a word
    Array,       ///< all operands as they are, under the keys 1, 2, 3 ...
};

struct CFFDictRow {
    CFFOperator op;
    FS_Word key;
    CFFEntry entry;
};

/// The rows of the three DICTs (Adobe Technical Note 5176, tables 9, 10, 23 and 24).
std::span<const CFFDictRow> topDictRows();
std::span<const CFFDictRow> privateDictRows();
std::span<const CFFDictRow> fontDictRows();

/// Enters the operator at which a walk stands into a DICT that is kept; one without a row, or
/// without operands, leaves nothing.
void storeCFFEntry(const CFFDictWalker& walk, std::span<const CFFDictRow> rows, KWValue& dict);

/// A whole DICT as a compound value; null when it leaves nothing.
KWValue readCFFDict(ByteView dict, std::span<const CFFDictRow> rows);

} // namespace KWFontService_NS
