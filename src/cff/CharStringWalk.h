#pragma once

#include "cff/CharString.h"

#include <map>
#include <unordered_map>

namespace KWFontService_NS {

/// What a charstring had stacked up when it called a subr for the first time, and who found that.
struct SubrEntryState {
    CharStringCounts counts;
    std::uint8_t fontDict = 0; ///< the Font DICT whose charstrings led there

    friend bool operator==(const SubrEntryState&, const SubrEntryState&) = default;
};

/// The subrs that are called, by the operand of the call.
using SubrEntries = std::map<int, SubrEntryState>;

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
/// subr does to the counts: what is called a thousand times is looked at once. A subr with stems or
/// masks in it is looked at for each of the counts that it is entered with.
class SubrWalker {
public:
    /// @param subrs          alive as long as this object, as are the entries and the budget
    /// @param globalEntries  null, or gets the subrs that are called and not in it yet
    /// @param localEntries   likewise
    /// @param fontDict       goes into the entries
    SubrWalker(const CharStringSubrs& subrs, CharStringBudget& budget,
               SubrEntries* globalEntries = nullptr, SubrEntries* localEntries = nullptr,
               std::uint8_t fontDict = 0);

    const CharStringSubrs& subrs() const { return subrs_; }
    CharStringBudget& budget() { return budget_; }

    /// As `walkCharString`.
    void walk(ByteView charString, CharStringCounts& counts) { walk(charString, counts, 0); }
    /// What the subr of a call does to the counts.
    void call(bool isGlobal, int operand, CharStringCounts& counts) {
        call(isGlobal, operand, counts, 0);
    }
    /// True for a subr that was called and does the same whatever the counts are.
    bool isPlain(bool isGlobal, int operand) const {
        const Effect* const known = plainEffect(isGlobal, operand);
        return known != nullptr && known->isKnown;
    }

private:
    /// What a charstring without stems and masks does: to the operands alone.
    struct Effect {
        bool isKnown = false;
        bool clears = false; ///< what lay there before goes
        int operands = 0;    ///< that it leaves, or adds
    };

    Effect walk(ByteView charString, CharStringCounts& counts, int depth);
    Effect call(bool isGlobal, int operand, CharStringCounts& counts, int depth);
    const Effect* plainEffect(bool isGlobal, int operand) const;

    CharStringSubrs subrs_;
    CharStringBudget& budget_;
    SubrEntries* globalEntries_;
    SubrEntries* localEntries_;
    std::uint8_t fontDict_;
    std::vector<Effect> plainGlobals_;
    std::vector<Effect> plainLocals_;
    /// What each other subr makes of the counts that it was entered with.
    std::unordered_map<std::uint64_t, CharStringCounts> known_;
};

} // namespace KWFontService_NS
