#include "cff/CharStringWalk.h"

#include "cff/CFFDict.h"
#include "common/KWLimits.h"

#include <algorithm>
#include <utility>

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
            entries->insert(operand, SubrEntryState{counts, 0});
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
    : subrs_(subrs), budget_(&budget), globalEntries_(globalEntries), localEntries_(localEntries),
      fontDict_(fontDict) {}

void SubrWalker::Effect::addOperands(std::int64_t more) {
    // Below 0 it takes what others left, if there is any; with many, the limit may strike.
    const std::int64_t sum = operands + more;
    isKnown = isKnown && sum >= 0 && sum <= kMostOperands;
    operands = static_cast<std::int16_t>(isKnown ? sum : 0);
}

void SubrWalker::Effect::clear(bool intoStems) {
    if (intoStems && clears) {
        stems = static_cast<std::int16_t>(
            std::min(stems + operands / 2, KWCommonNS::kMaxCharStringStems));
    } else if (intoStems) {
        makesStems = true;
        stemOperands = operands;
    }
    clears = true;
    operands = 0;
}

void SubrWalker::Effect::add(const Effect& more) {
    isKnown = isKnown && more.isKnown;
    if (more.clears) {
        addOperands(more.stemOperands);
        clear(more.makesStems);
    }
    addOperands(more.operands);
    stems =
        static_cast<std::int16_t>(std::min(stems + more.stems, KWCommonNS::kMaxCharStringStems));
}

SubrWalker::Effect SubrWalker::walk(ByteView charString, CharStringCounts& counts, int depth,
                                    Look* look) {
    Effect effect{.isKnown = true, .isLeaf = true};
    if (!budget_->charge(charString.size()))
        return {};
    CharStringScanner scanner(charString, counts);
    bool hasEnded = false;
    std::int64_t numbers = 0;
    const auto note = [&numbers, look](std::size_t begin, std::size_t count) {
        numbers += static_cast<std::int64_t>(count);
        if (look != nullptr)
            look->numbers.add(begin, count);
    };
    while (scanner.nextOperator(note)) {
        effect.addOperands(std::exchange(numbers, 0));
        switch (scanner.op()) {
        case FS_Word::callsubr:
        case FS_Word::callgsubr:
            effect.isLeaf = false;
            effect.addOperands(-1);
            if (const auto operand = scanner.callOperand())
                effect.add(call(scanner.isGlobalCall(), *operand, counts, depth));
            break;
        case FS_Word::return_:
            break;
        case FS_Word::hstem:
        case FS_Word::vstem:
        case FS_Word::hstemhm:
        case FS_Word::vstemhm:
            effect.clear(true);
            break;
        case FS_Word::hintmask:
        case FS_Word::cntrmask:
            effect.isKnown = false; // how long it is depends on the stems
            break;
        default:
            effect.clear(false);
        }
        if (scanner.op() == FS_Word::endchar) {
            hasEnded = true;
            break;
        }
    }
    if (look != nullptr) {
        look->isLeaf = effect.isLeaf;
        look->hasEnded = hasEnded;
    }
    if (hasEnded && scanner.start() + 1 < charString.size())
        effect.isLeaf = false;
    if (scanner.isMask())
        effect.isKnown = false; // cut off: behind fewer stems it would be whole
    effect.addOperands(numbers);
    return effect;
}

SubrWalker::Effect SubrWalker::call(bool isGlobal, int operand, CharStringCounts& counts, int depth,
                                    Look* look) {
    if (const Effect* const plain = plainEffect(isGlobal, operand, counts)) {
        plain->apply(counts);
        return *plain;
    }
    const auto subr = subrs_.find(isGlobal, operand);
    if (!subr)
        return {.isKnown = true};
    const std::uint64_t key = subrCallKey(isGlobal, operand, counts);
    if (const auto known = known_.find(key);
        known != known_.end() && known->second.cutAt <= depth) {
        counts = known->second.counts;
        wasCut_ = wasCut_ || known->second.cutAt != 0;
        return {};
    }
    SubrEntries* const entries = isGlobal ? globalEntries_ : localEntries_;
    // Twice for the entries, since each gets a number later.
    if (!budget_->charge(KWCommonNS::kKnownSubrCost +
                         (entries != nullptr ? 2 * entries->costOf(operand) : 0)))
        return {};
    if (entries != nullptr)
        entries->insert(operand, SubrEntryState{counts, fontDict_});
    if (depth == KWCommonNS::kMaxSubrDepth) {
        wasCut_ = true;
        return {};
    }
    const bool wasCutBefore = std::exchange(wasCut_, false);
    const Effect effect = walk(*subr, counts, depth + 1, look);
    SubrTable<Effect>& plain = isGlobal ? plainGlobals_ : plainLocals_;
    if (!effect.isKnown || !budget_->charge(plain.costOf(operand)) ||
        !plain.insert(operand, effect))
        known_.insert_or_assign(key, Known{counts, wasCut_ ? depth : 0});
    wasCut_ = wasCut_ || wasCutBefore;
    return effect;
}

} // namespace KWFontService_NS
