#include "cff/CharStringWalk.h"

#include "cff/CFFDict.h"
#include "common/KWLimits.h"

#include <algorithm>

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
      fontDict_(fontDict), plainGlobals_(subrs.global.size()), plainLocals_(subrs.local.size()) {}

const SubrWalker::Effect* SubrWalker::plainEffect(bool isGlobal, int operand) const {
    const auto& effects = isGlobal ? plainGlobals_ : plainLocals_;
    const auto index = std::int64_t{operand} + subrBias(effects.size());
    if (index < 0 || index >= static_cast<std::int64_t>(effects.size()))
        return nullptr;
    return &effects[static_cast<std::size_t>(index)];
}

SubrWalker::Effect SubrWalker::walk(ByteView charString, CharStringCounts& counts, int depth) {
    Effect effect{.isKnown = true};
    if (!budget_.charge(charString.size()))
        return {};
    CharStringScanner scanner(charString, counts);
    while (scanner.next()) {
        if (scanner.isNumber()) {
            ++effect.operands;
            continue;
        }
        switch (scanner.op()) {
        case FS_Word::callsubr:
        case FS_Word::callgsubr: {
            --effect.operands;
            if (effect.operands < 0)
                effect.isKnown = false; // takes what others left, if there is any
            const auto operand = scanner.callOperand();
            if (!operand)
                break;
            const auto called = call(scanner.isGlobalCall(), *operand, counts, depth);
            effect.isKnown = effect.isKnown && called.isKnown;
            effect.clears = effect.clears || called.clears;
            effect.operands = std::min(called.operands + (called.clears ? 0 : effect.operands),
                                       KWCommonNS::kMaxCharStringOperands);
            break;
        }
        case FS_Word::return_:
            break;
        case FS_Word::hstem:
        case FS_Word::vstem:
        case FS_Word::hstemhm:
        case FS_Word::vstemhm:
        case FS_Word::hintmask:
        case FS_Word::cntrmask:
            effect.isKnown = false;
            break;
        default:
            effect.clears = true;
            effect.operands = 0;
        }
        if (scanner.op() == FS_Word::endchar)
            break;
    }
    return effect;
}

SubrWalker::Effect SubrWalker::call(bool isGlobal, int operand, CharStringCounts& counts,
                                    int depth) {
    const Effect* const plain = plainEffect(isGlobal, operand);
    if (plain == nullptr)
        return {.isKnown = true}; // there is no such subr
    if (plain->isKnown) {
        counts.operands = std::min(plain->operands + (plain->clears ? 0 : counts.operands),
                                   KWCommonNS::kMaxCharStringOperands);
        return *plain;
    }
    const std::uint64_t key = subrCallKey(isGlobal, operand, counts);
    if (const auto known = known_.find(key); known != known_.end()) {
        counts = known->second;
        return {};
    }
    if (SubrEntries* const entries = isGlobal ? globalEntries_ : localEntries_)
        entries->try_emplace(operand, SubrEntryState{counts, fontDict_});
    if (depth == KWCommonNS::kMaxSubrDepth || !budget_.charge(KWCommonNS::kKnownSubrCost))
        return {};
    const Effect effect = walk(*subrs_.find(isGlobal, operand), counts, depth + 1);
    if (effect.isKnown) {
        auto& effects = isGlobal ? plainGlobals_ : plainLocals_;
        effects[static_cast<std::size_t>(plain - effects.data())] = effect;
    } else {
        known_.insert_or_assign(key, counts);
    }
    return effect;
}

} // namespace KWFontService_NS
