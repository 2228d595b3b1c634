#include "cff/CharStringWalk.h"

#include "cff/CFFDict.h"
#include "common/KWLimits.h"

namespace KWFontService_NS {

namespace {

/// What a walk for tokens has at every depth.
struct TokenWalk {
    CharStringTokens& tokens;
    const CharStringSubrs& subrs;
    CharStringCounts& counts;
    SubrEntries* globalEntries;
    SubrEntries* localEntries;
    CharStringBudget& budget;

    void walk(ByteView charString, int depth) {
        if (!budget.charge(charString.size()))
            return;
        CharStringScanner scanner(charString, counts);
        while (scanner.next()) {
            if (scanner.isNumber()) {
                tokens.emplace_back(scanner.number());
                continue;
            }
            tokens.emplace_back(cffKey(scanner.op()));
            if (scanner.op() == FS_Word::endchar)
                return;
            if (const auto operand = scanner.callOperand())
                call(scanner.isGlobalCall(), *operand, depth);
        }
    }
    void call(bool isGlobal, int operand, int depth) {
        const auto subr = subrs.find(isGlobal, operand);
        if (!subr)
            return;
        if (SubrEntries* const entries = isGlobal ? globalEntries : localEntries)
            entries->try_emplace(operand, SubrEntryState{counts, 0});
        if (depth < KWCommonNS::kMaxSubrDepth)
            walk(*subr, depth + 1);
    }
};

} // namespace

std::uint64_t subrCallKey(bool isGlobal, int operand, const CharStringCounts& counts) {
    static_assert(KWCommonNS::kMaxCharStringOperands < 1 << 12 &&
                  KWCommonNS::kMaxCharStringStems < 1 << 12);
    const auto bits = [](int value) { return static_cast<std::uint64_t>(value); };
    return (bits(operand) & 0xFFFFFFFF) << 32 | bits(counts.stems) << 16 |
           bits(counts.operands) << 1 | (isGlobal ? 1U : 0U);
}

void walkCharString(ByteView charString, CharStringTokens& tokens, const CharStringSubrs& subrs,
                    CharStringCounts& counts, SubrEntries* globalEntries, SubrEntries* localEntries,
                    CharStringBudget& budget) {
    TokenWalk{tokens, subrs, counts, globalEntries, localEntries, budget}.walk(charString, 0);
}

SubrWalker::SubrWalker(const CharStringSubrs& subrs, CharStringBudget& budget,
                       SubrEntries* globalEntries, SubrEntries* localEntries, std::uint8_t fontDict)
    : subrs_(subrs), budget_(budget), globalEntries_(globalEntries), localEntries_(localEntries),
      fontDict_(fontDict) {}

void SubrWalker::walk(ByteView charString, CharStringCounts& counts, int depth) {
    if (!budget_.charge(charString.size()))
        return;
    CharStringScanner scanner(charString, counts);
    while (scanner.next()) {
        if (!scanner.isNumber() && scanner.op() == FS_Word::endchar)
            return;
        if (const auto operand = scanner.callOperand())
            call(scanner.isGlobalCall(), *operand, counts, depth);
    }
}

void SubrWalker::call(bool isGlobal, int operand, CharStringCounts& counts, int depth) {
    const std::uint64_t key = subrCallKey(isGlobal, operand, counts);
    if (const auto known = known_.find(key); known != known_.end()) {
        counts = known->second;
        return;
    }
    const auto subr = subrs_.find(isGlobal, operand);
    if (!subr)
        return;
    if (SubrEntries* const entries = isGlobal ? globalEntries_ : localEntries_)
        entries->try_emplace(operand, SubrEntryState{counts, fontDict_});
    if (depth == KWCommonNS::kMaxSubrDepth || !budget_.charge(KWCommonNS::kKnownSubrCost))
        return;
    walk(*subr, counts, depth + 1);
    known_.insert_or_assign(key, counts);
}

} // namespace KWFontService_NS
