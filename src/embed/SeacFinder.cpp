#include "embed/SeacFinder.h"

#include "common/KWLimits.h"

#include <utility>

namespace KWFontService_NS {

void SeacStack::drop(unsigned number) {
    const unsigned own = std::min(number, count_);
    count_ -= own;
    below_ = std::min(below_ + (number - own), kMost);
    top_ = static_cast<std::uint8_t>(top_ - own);
    kept_ = static_cast<std::uint8_t>(kept_ - std::min(own, unsigned{kept_}));
}

void SeacStack::add(const SeacStack& more) {
    drop(more.below_);
    if (more.count_ > more.kept_) {
        // What lies between hides our own.
        count_ = std::min(count_ + more.count_ - more.kept_, kMost);
        kept_ = 0;
    }
    for (unsigned depth = more.kept_; depth > 0; --depth)
        push(more.at(depth - 1));
}

bool operator==(const SeacStack& a, const SeacStack& b) {
    if (a.below_ != b.below_ || a.count_ != b.count_ || a.kept_ != b.kept_)
        return false;
    for (unsigned depth = 0; depth < a.kept_; ++depth)
        if (a.at(depth) != b.at(depth))
            return false;
    return true;
}

std::optional<SeacStack::Parts> SeacStack::parts() const {
    if (count_ <= 3)
        return std::nullopt;
    return Parts{at(0), at(1)};
}

SeacFinder::Effect SeacFinder::walk(ByteView charString, CharStringCounts counts, int depth) {
    Effect effect;
    if (!budget_.charge(charString.size()))
        return effect;
    CharStringScanner scan(charString, counts);
    NumberRun run;
    while (scan.nextOperator([&run](std::size_t at, std::size_t count) { run.add(at, count); })) {
        const bool isEnd = scan.op() == FS_Word::endchar;
        if (!isEnd && !scan.isCall())
            continue;
        effect.stack.push(run, charString);
        run.clear();
        if (isEnd) {
            addEnd(effect, effect.stack);
            return effect;
        }
        effect.stack.drop(1);
        if (const auto operand = scan.callOperand())
            call(scan.isGlobalCall(), *operand, counts, effect, depth);
    }
    effect.stack.push(run, charString);
    return effect;
}

/// What `walk` answers for a subr without calls, at the same price.
SeacFinder::Effect SeacFinder::leaf(ByteView charString, const SubrWalker::Look& look) {
    Effect effect;
    if (!budget_.charge(charString.size()))
        return effect;
    effect.stack.push(look.numbers, charString);
    if (look.hasEnded)
        addEnd(effect, effect.stack);
    return effect;
}

void SeacFinder::call(bool isGlobal, int operand, CharStringCounts& counts, Effect& effect,
                      int depth) {
    if (depth == KWCommonNS::kMaxSubrDepth)
        return;
    const CharStringCounts before = counts;
    SubrWalker::Look look;
    walker_->call(isGlobal, operand, counts, &look);
    const Effect* more = known(isGlobal, operand, before);
    if (more == nullptr) {
        const auto subr = subrs_.find(isGlobal, operand);
        if (!subr || !budget_.charge(sizeof(Effect) + KWCommonNS::kKnownSubrCost))
            return;
        more = &remember(isGlobal, operand, before,
                         look.isLeaf ? leaf(*subr, look) : walk(*subr, before, depth + 1));
    }
    for (const SeacStack& end : more->ends) {
        SeacStack whole = effect.stack;
        whole.add(end);
        addEnd(effect, whole);
    }
    effect.stack.add(more->stack);
}

/// Null for what is not known. Counts only matter where masks are.
const SeacFinder::Effect* SeacFinder::known(bool isGlobal, int operand,
                                            const CharStringCounts& before) const {
    if (const std::uint32_t* const place = (isGlobal ? plainGlobals_ : plainLocals_).find(operand))
        return &effects_[*place];
    if (walker_->isPlain(isGlobal, operand))
        return nullptr;
    const auto found = known_.find(subrCallKey(isGlobal, operand, before));
    return found != known_.end() ? &effects_[found->second] : nullptr;
}

const SeacFinder::Effect& SeacFinder::remember(bool isGlobal, int operand,
                                               const CharStringCounts& before, Effect effect) {
    const bool isPlain = walker_->isPlain(isGlobal, operand);
    auto& plain = isGlobal ? plainGlobals_ : plainLocals_;
    const std::uint64_t key = subrCallKey(isGlobal, operand, before);
    // A subr that calls itself is known already, as far as it went at the greatest depth.
    if (known(isGlobal, operand, before) != nullptr) {
        Effect& same = effects_[isPlain ? *plain.find(operand) : known_.at(key)];
        same = std::move(effect);
        return same;
    }
    const auto place = static_cast<std::uint32_t>(effects_.size());
    if (isPlain)
        plain.insert(operand, place);
    else
        known_.emplace(key, place);
    return effects_.emplace_back(std::move(effect));
}

void SeacFinder::addEnd(Effect& effect, const SeacStack& end) {
    if (effect.ends.size() < KWCommonNS::kMaxCharStringEnds &&
        std::ranges::find(effect.ends, end) == effect.ends.end())
        effect.ends.push_back(end);
}

} // namespace KWFontService_NS
