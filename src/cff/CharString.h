#pragma once

#include "cff/CFFIndex.h"
#include "common/KWLimits.h"
#include "type1/FS_Keyword.h"

#include <KWCommon15/KWValue.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace KWFontService_NS {

using KWCommonNS::KWValue;

/// A charstring taken apart: a number is a token, and so is an operator, a name with the number of
/// its word. An operator that the format does not have is the empty word.
using CharStringTokens = std::vector<KWValue>;

/// The words of the operators of one byte (Adobe Technical Note 5177, appendix A).
extern const std::array<FS_Word, 32> kCharStringOperators;
/// The word of an operator of one byte below 32, and of the second byte behind the escape.
FS_Word charStringOperator(std::uint8_t byte);
FS_Word charStringEscape(std::uint8_t second);

/// The first bytes of the numbers that are longer than two.
inline constexpr std::uint8_t kCharStringShortInteger = 28;
inline constexpr std::uint8_t kCharStringFixed = 255;

/// The bytes that a number takes, by the first of them.
constexpr std::size_t charStringNumberSize(std::uint8_t first) {
    return first == kCharStringShortInteger ? 3
           : first == kCharStringFixed      ? 5
           : first < 247                    ? 1
                                            : 2;
}
/// The number that begins at a byte, all of which is there; one of form 255 as the 32 bits that it
/// has.
inline int charStringNumber(const std::uint8_t* bytes) {
    const int first = bytes[0];
    if (first == kCharStringShortInteger)
        return ByteView::loadI16(bytes + 1);
    if (first <= 246)
        return first - 139;
    if (first <= 250)
        return (first - 247) * 256 + bytes[1] + 108;
    if (first < kCharStringFixed)
        return -(first - 251) * 256 - bytes[1] - 108;
    return static_cast<int>(ByteView::loadU32(bytes + 1));
}

/// The subrs that a charstring may call.
struct CharStringSubrs {
    const CFFIndex& global;
    const CFFIndex& local;

    /// The subr that a call with this operand leads to; nothing when there is none.
    std::optional<ByteView> find(bool isGlobal, int operand) const;
};

/// What a charstring has stacked up at a place: masks are as long as the stems ask.
struct CharStringCounts {
    int operands = 0;
    int stems = 0;

    friend bool operator==(const CharStringCounts&, const CharStringCounts&) = default;
};

/// Bytes of charstrings that a call may look at, subrs as often as they are called. A few hundred
/// bytes of subrs that call each other would otherwise keep it busy for years.
class CharStringBudget {
public:
    explicit CharStringBudget(std::size_t bytes) : left_(bytes) {}

    /// False when that is more than what is left.
    bool charge(std::size_t bytes) {
        if (bytes > left_) {
            spent_ = true;
            return false;
        }
        left_ -= bytes;
        return true;
    }
    std::size_t left() const { return left_; }
    /// True once something was too much: what was gone through is not all there is.
    bool isSpent() const { return spent_; }

private:
    std::size_t left_;
    bool spent_ = false;
};

/// Goes through the bytes of one charstring and keeps the counts.
///
/// Only plain numbers count as operands: what arithmetic leaves is not known here. A number or a
/// mask that is cut off ends the charstring.
class CharStringScanner {
public:
    /// @param counts  what the charstring starts with, kept up to date; a call takes its operand,
    ///                what the subr does is up to the caller
    CharStringScanner(ByteView charString, CharStringCounts& counts)
        : bytes_(charString), counts_(counts) {}

    /// To the next number or operator; false at the end.
    bool next() {
        if (at_ >= bytes_.size())
            return false;
        start_ = at_;
        followsNumber_ = isNumber_;
        op_ = FS_Word::none;
        const std::uint8_t first = bytes_.data()[at_++];
        // Most of what charstrings hold are numbers of one byte and two, and drawing operators.
        if (first < 32 && (kOthers >> first & 1) == 0) {
            op_ = kCharStringOperators[first];
            isNumber_ = false;
            counts_.operands = 0;
            return true;
        }
        if (!isShortNumber(first) || bytes_.size() - start_ < shortNumberSize(first))
            return readOther(first);
        at_ = start_ + shortNumberSize(first);
        takeNumber();
        return true;
    }

    /// To the next operator, and `each(begin, count)` for numbers before it that stand side by
    /// side; false at the end. What `next` does, at a greater pace.
    template <class Each>
    bool nextOperator(Each&& each) {
        do {
            readShortNumbers(each);
            if (!next())
                return false;
            if (isNumber_)
                each(numberStart_, 1);
        } while (isNumber_);
        return true;
    }

    bool isNumber() const { return isNumber_; }
    /// As `charStringNumber`.
    int number() const { return charStringNumber(bytes_.data() + numberStart_); }
    /// True for form 255, which stands for 65536ths.
    bool isFixed() const { return isNumber_ && bytes_.data()[numberStart_] == kCharStringFixed; }

    /// The empty word for a number, too.
    FS_Word op() const { return op_; }
    bool isCall() const { return op_ == FS_Word::callsubr || op_ == FS_Word::callgsubr; }
    bool isGlobalCall() const { return op_ == FS_Word::callgsubr; }
    /// The operand of a call that stands right before it; nothing where something else does.
    std::optional<int> callOperand() const {
        if (!isCall() || !followsNumber_)
            return std::nullopt;
        return number();
    }
    bool isMask() const { return op_ == FS_Word::hintmask || op_ == FS_Word::cntrmask; }
    /// The bytes behind `hintmask` and `cntrmask`.
    ByteView mask() const { return isMask() ? mask_ : ByteView(); }

    /// Where the number or operator begins, and where the number before it does.
    std::size_t start() const { return start_; }
    std::size_t numberStart() const { return numberStart_; }
    /// Where what has been gone through ends; what is cut off does not count.
    std::size_t end() const { return isCut_ ? start_ : at_; }

private:
    /// The bytes below 32 that are more than an operator which takes all operands: `callsubr`,
    /// `callgsubr`, `return`, the escape, stems, masks and the short integer.
    static constexpr std::uint32_t kOthers = 1U << 10 | 1U << 29 | 1U << 11 | 1U << 12 | 1U << 1 |
                                             1U << 3 | 1U << 18 | 1U << 23 | 1U << 19 | 1U << 20 |
                                             1U << 28;

    /// True for the first byte of a number of one byte or two.
    static bool isShortNumber(std::uint8_t first) {
        return first >= 32 && first != kCharStringFixed;
    }
    /// 2 from 247 on. Reckoned, since no processor guesses well how long the next number is.
    static std::size_t shortNumberSize(std::uint8_t first) { return 1 + ((first + 9U) >> 8); }

    /// Goes past numbers of one byte and two, but for the last bytes of the charstring. Nothing of
    /// the scanner is stored on the way: the bytes, which may be anything for the compiler, would
    /// keep it waiting for each store. The next number is there before it is known where it begins.
    template <class Each>
    void readShortNumbers(Each&& each) {
        const std::uint8_t* const bytes = bytes_.data();
        const std::size_t size = bytes_.size();
        std::size_t at = at_;
        std::size_t begin = at;
        std::size_t count = 0;
        std::uint8_t first = at < size ? bytes[at] : std::uint8_t{0};
        for (; at + 2 < size && isShortNumber(first); ++count) {
            const unsigned ahead = bytes[at + 1] | unsigned{bytes[at + 2]} << 8;
            const std::size_t more = shortNumberSize(first) - 1;
            begin = at;
            at += 1 + more;
            first = static_cast<std::uint8_t>(ahead >> (more * 8));
        }
        if (count == 0)
            return;
        each(at_, count);
        at_ = at;
        numberStart_ = begin;
        isNumber_ = true;
        constexpr std::size_t kMost = KWCommonNS::kMaxCharStringOperands;
        counts_.operands =
            static_cast<int>(std::min(static_cast<std::size_t>(counts_.operands) + count, kMost));
    }

    bool readOther(std::uint8_t first);
    bool readNumber(std::uint8_t first);
    bool readOperator(std::uint8_t first);
    void takeNumber() {
        isNumber_ = true;
        numberStart_ = start_;
        counts_.operands = std::min(counts_.operands + 1, KWCommonNS::kMaxCharStringOperands);
    }

    ByteView bytes_;
    CharStringCounts& counts_;
    std::size_t at_ = 0;
    std::size_t start_ = 0;
    std::size_t numberStart_ = 0;
    bool isNumber_ = false;
    bool followsNumber_ = false;
    bool isCut_ = false;
    FS_Word op_ = FS_Word::none;
    ByteView mask_;
};

} // namespace KWFontService_NS
