#pragma once

#include "cff/CharString.h"
#include "cff/NumberRun.h"
#include "cff/SubrTable.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>

namespace KWFontService_NS {

/// What a charstring had stacked up when it called a subr for the first time, and who found that.
struct SubrEntryState {
    CharStringCounts counts;
    std::uint8_t fontDict = 0; ///< the Font DICT whose charstrings led there

    friend bool operator==(const SubrEntryState&, const SubrEntryState&) = default;
};

/// The subrs that are called.
using SubrEntries = SubrTable<SubrEntryState>;

/// A call and the counts that its subr is entered with, as one number.
std::uint64_t subrCallKey(bool isGlobal, int operand, const CharStringCounts& counts);

/// Turns a charstring, and in their places the subrs that it calls, into tokens. Operands of calls,
/// the calls and `return` stay; masks give none. A subr that does not exist is passed by, and so is
/// one beyond `kMaxSubrDepth` or the budget. `endchar` ends its own charstring only.
/// @param tokens         appended to
/// @param counts         what the charstring starts and then ends with
/// @param globalEntries  null, or gets the subrs that are called and not in it yet
/// @param localEntries   likewise
void walkCharString(ByteView charString, CharStringTokens& tokens, const CharStringSubrs& subrs,
                    CharStringCounts& counts, SubrEntries* globalEntries, SubrEntries* localEntries,
                    CharStringBudget& budget);

/// Follows the charstrings of one Font DICT into their subrs, without tokens, and remembers what a
/// subr does to the counts: what is called a thousand times is looked at once. A subr with masks in
/// it is looked at for each of the counts that it is entered with.
class SubrWalker {
public:
    /// What a look at a subr shows beside the counts.
    struct Look {
        bool isLeaf = false;   ///< it was looked at just now, all of it, and calls nothing
        bool hasEnded = false; ///< with `endchar`
        NumberRun numbers;     ///< of a leaf
    };

    /// @param subrs          alive as long as this object, as are the entries and the budget
    /// @param globalEntries  null, or gets the subrs that are called and not in it yet
    /// @param localEntries   likewise
    /// @param fontDict       goes into the entries
    SubrWalker(const CharStringSubrs& subrs, CharStringBudget& budget,
               SubrEntries* globalEntries = nullptr, SubrEntries* localEntries = nullptr,
               std::uint8_t fontDict = 0);

    const CharStringSubrs& subrs() const { return subrs_; }
    CharStringBudget& budget() { return *budget_; }

    /// From here on nothing goes into the entries, and another budget pays. What is known stays.
    void stopNoting(CharStringBudget& budget) {
        globalEntries_ = localEntries_ = nullptr;
        budget_ = &budget;
    }

    /// As `walkCharString`.
    void walk(ByteView charString, CharStringCounts& counts) { walk(charString, counts, 0); }
    /// What the subr of a call does to the counts.
    /// @param look  null, or gets what else there is to see
    void call(bool isGlobal, int operand, CharStringCounts& counts, Look* look = nullptr) {
        if (const Effect* const plain = plainEffect(isGlobal, operand, counts))
            plain->apply(counts);
        else
            call(isGlobal, operand, counts, 0, look);
    }
    /// True for a subr that was called and goes through the same bytes whatever the counts are.
    bool isPlain(bool isGlobal, int operand) const {
        return (isGlobal ? plainGlobals_ : plainLocals_).find(operand) != nullptr;
    }
    /// True for a plain one without calls, and nothing behind `endchar`.
    bool isLeaf(bool isGlobal, int operand) const {
        const Effect* const plain = (isGlobal ? plainGlobals_ : plainLocals_).find(operand);
        return plain != nullptr && plain->isLeaf;
    }

private:
    /// What a charstring without masks does to any counts that leave room for its operands.
    struct Effect {
        static constexpr int kMostOperands = KWCommonNS::kMaxCharStringOperands / 2;

        bool isKnown : 1 = false;
        bool isLeaf : 1 = false;     ///< calls nothing
        bool clears : 1 = false;     ///< what lay there before goes
        bool makesStems : 1 = false; ///< and becomes stems, with `stemOperands` on top of it
        std::int16_t operands = 0;   ///< that it leaves, or adds
        std::int16_t stemOperands = 0;
        std::int16_t stems = 0; ///< of its own operands alone

        void apply(CharStringCounts& counts) const {
            const int made = stems + (makesStems ? (counts.operands + stemOperands) / 2 : 0);
            counts.stems = std::min(counts.stems + made, KWCommonNS::kMaxCharStringStems);
            counts.operands = operands + (clears ? 0 : counts.operands);
        }
        /// As if another charstring stood behind.
        void add(const Effect& more);
        void addOperands(std::int64_t more);
        void clear(bool intoStems);
    };

    Effect walk(ByteView charString, CharStringCounts& counts, int depth, Look* look = nullptr);
    Effect call(bool isGlobal, int operand, CharStringCounts& counts, int depth,
                Look* look = nullptr);
    /// Null for what is not known, and where the counts are too high for it.
    const Effect* plainEffect(bool isGlobal, int operand, const CharStringCounts& counts) const {
        return counts.operands <= Effect::kMostOperands
                   ? (isGlobal ? plainGlobals_ : plainLocals_).find(operand)
                   : nullptr;
    }

    CharStringSubrs subrs_;
    CharStringBudget* budget_;
    SubrEntries* globalEntries_;
    SubrEntries* localEntries_;
    std::uint8_t fontDict_;
    SubrTable<Effect> plainGlobals_;
    SubrTable<Effect> plainLocals_;
    /// What a subr makes of the counts that it was entered with.
    struct Known {
        CharStringCounts counts;
        int cutAt =
            0; ///< the depth of the call, where the limit cut it short: nearer there is more
    };

    std::unordered_map<std::uint64_t, Known> known_; ///< of each other subr
    bool wasCut_ = false;                            ///< the walk under way met the limit of depth
};

} // namespace KWFontService_NS
