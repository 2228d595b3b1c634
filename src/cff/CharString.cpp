#include "cff/CharString.h"

#include "common/KWLimits.h"

#include <algorithm>
#include <array>

namespace KWFontService_NS {

namespace {

using Word = FS_Word;

constexpr std::size_t kEscapedOperators = 38;
constexpr std::array<Word, kEscapedOperators> kEscapes = [] {
    std::array<Word, kEscapedOperators> words{};
    words[0] = Word::dotsection;
    words[3] = Word::and_;
    words[4] = Word::or_;
    words[5] = Word::not_;
    words[8] = Word::store;
    words[9] = Word::abs;
    words[10] = Word::add;
    words[11] = Word::sub;
    words[12] = Word::div;
    words[13] = Word::load;
    words[14] = Word::neg;
    words[15] = Word::eq;
    words[18] = Word::drop;
    words[20] = Word::put;
    words[21] = Word::get;
    words[22] = Word::ifelse;
    words[23] = Word::random;
    words[24] = Word::mul;
    words[26] = Word::sqrt;
    words[27] = Word::dup;
    words[28] = Word::exch;
    words[29] = Word::index;
    words[30] = Word::roll;
    words[34] = Word::hflex;
    words[35] = Word::flex;
    words[36] = Word::hflex1;
    words[37] = Word::flex1;
    return words;
}();

constexpr std::uint8_t kEscape = 12;

} // namespace

constexpr std::array<Word, 32> kCharStringOperators = [] {
    std::array<Word, 32> words{};
    words[1] = Word::hstem;
    words[3] = Word::vstem;
    words[4] = Word::vmoveto;
    words[5] = Word::rlineto;
    words[6] = Word::hlineto;
    words[7] = Word::vlineto;
    words[8] = Word::rrcurveto;
    words[10] = Word::callsubr;
    words[11] = Word::return_;
    words[14] = Word::endchar;
    words[16] = Word::blend;
    words[18] = Word::hstemhm;
    words[19] = Word::hintmask;
    words[20] = Word::cntrmask;
    words[21] = Word::rmoveto;
    words[22] = Word::hmoveto;
    words[23] = Word::vstemhm;
    words[24] = Word::rcurveline;
    words[25] = Word::rlinecurve;
    words[26] = Word::vvcurveto;
    words[27] = Word::hhcurveto;
    words[29] = Word::callgsubr;
    words[30] = Word::vhcurveto;
    words[31] = Word::hvcurveto;
    return words;
}();

FS_Word charStringOperator(std::uint8_t byte) {
    return byte < kCharStringOperators.size() ? kCharStringOperators[byte] : Word::none;
}

FS_Word charStringEscape(std::uint8_t second) {
    return second < kEscapes.size() ? kEscapes[second] : Word::none;
}

std::optional<ByteView> CharStringSubrs::find(bool isGlobal, int operand) const {
    const CFFIndex& subrs = isGlobal ? global : local;
    const std::int64_t index = std::int64_t{operand} + subrBias(subrs.size());
    if (index < 0 || index >= static_cast<std::int64_t>(subrs.size()))
        return std::nullopt;
    return subrs[static_cast<std::size_t>(index)];
}

/// Operators, the longer numbers, and what is cut off.
bool CharStringScanner::readOther(std::uint8_t first) {
    isNumber_ = first == kCharStringShortInteger || first >= 32;
    if (isNumber_ ? readNumber(first) : readOperator(first))
        return true;
    isCut_ = true;
    at_ = bytes_.size();
    return false;
}

bool CharStringScanner::readNumber(std::uint8_t first) {
    const std::size_t more = charStringNumberSize(first) - 1;
    if (!bytes_.contains(at_, more))
        return false;
    at_ += more;
    takeNumber();
    return true;
}

bool CharStringScanner::readOperator(std::uint8_t first) {
    if (first == kEscape) {
        const auto second = bytes_.u8(at_++);
        if (!second)
            return false;
        op_ = charStringEscape(*second);
    } else {
        op_ = charStringOperator(first);
    }
    switch (op_) {
    case Word::callsubr:
    case Word::callgsubr:
        counts_.operands = std::max(counts_.operands - 1, 0);
        return true;
    case Word::return_:
        return true;
    case Word::hstem:
    case Word::vstem:
    case Word::hstemhm:
    case Word::vstemhm:
    case Word::hintmask:
    case Word::cntrmask:
        // A width among the operands gets lost in the division.
        counts_.stems =
            std::min(counts_.stems + counts_.operands / 2, KWCommonNS::kMaxCharStringStems);
        break;
    default:
        break;
    }
    counts_.operands = 0;
    if (!isMask())
        return true;
    const auto size = static_cast<std::size_t>(std::max((counts_.stems + 7) / 8, 1));
    mask_ = bytes_.sub(at_, size);
    at_ += size;
    return mask_.size() == size;
}

} // namespace KWFontService_NS
