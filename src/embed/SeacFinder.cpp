#include "embed/SeacFinder.h"

#include "common/KWLimits.h"

namespace KWFontService_NS {

/// Keeps the numbers nearest to the top.
void SeacStack::forget() {
    std::copy(values_.end() - kKept, values_.end(), values_.begin());
    std::fill(values_.begin() + kKept, values_.end(), 0);
    kept_ = kKept;
}

void SeacStack::drop(unsigned number) {
    const unsigned own = std::min(number, count_);
    count_ -= own;
    below_ = std::min(below_ + (number - own), kMost);
    for (unsigned i = 0; i < own && kept_ > 0; ++i)
        values_[--kept_] = 0;
}

void SeacStack::add(const SeacStack& more) {
    drop(more.below_);
    const auto known = static_cast<unsigned>(more.kept_);
    if (more.count_ > known) {
        // What lies between hides our own.
        count_ = std::min(count_ + more.count_ - known, kMost);
        kept_ = 0;
        values_.fill(0);
    }
    for (unsigned i = 0; i < known; ++i)
        push(more.values_[i]);
}

std::optional<SeacStack::Parts> SeacStack::parts() const {
    if (count_ <= 3)
        return std::nullopt;
    return Parts{kept_ > 0 ? values_[kept_ - 1] : 0, kept_ > 1 ? values_[kept_ - 2] : 0};
}

SeacFinder::Effect SeacFinder::walk(ByteView charString, CharStringCounts counts, int depth) {
    Effect effect;
    if (!budget_.charge(charString.size()))
        return effect;
    CharStringScanner scanner(charString, counts);
    while (scanner.next()) {
        if (scanner.isNumber()) {
            effect.stack.push(scanner.number());
        } else if (scanner.op() == FS_Word::endchar) {
            addEnd(effect, effect.stack);
            return effect;
        } else if (scanner.isCall()) {
            effect.stack.drop(1);
            if (const auto operand = scanner.callOperand())
                call(scanner.isGlobalCall(), *operand, counts, effect, depth);
        }
    }
    return effect;
}

void SeacFinder::call(bool isGlobal, int operand, CharStringCounts& counts, Effect& effect,
                      int depth) {
    const auto subr = subrs_.find(isGlobal, operand);
    if (!subr || depth == KWCommonNS::kMaxSubrDepth)
        return;
    const CharStringCounts before = counts;
    walker_->call(isGlobal, operand, counts);
    // Counts only matter where masks are.
    const bool isPlain = walker_->isPlain(isGlobal, operand);
    const std::uint64_t key = subrCallKey(isGlobal, operand, isPlain ? CharStringCounts{} : before);
    auto known = known_.find(key);
    if (known == known_.end()) {
        if (!budget_.charge(sizeof(Effect) + KWCommonNS::kKnownSubrCost))
            return;
        known = known_.insert_or_assign(key, walk(*subr, before, depth + 1)).first;
    }
    const Effect& more = known->second;
    for (const SeacStack& end : more.ends) {
        SeacStack whole = effect.stack;
        whole.add(end);
        addEnd(effect, whole);
    }
    effect.stack.add(more.stack);
}

void SeacFinder::addEnd(Effect& effect, const SeacStack& end) {
    if (effect.ends.size() < KWCommonNS::kMaxCharStringEnds &&
        std::ranges::find(effect.ends, end) == effect.ends.end())
        effect.ends.push_back(end);
}

} // namespace KWFontService_NS
