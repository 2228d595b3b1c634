#pragma once

#include "cff/CharStringWalk.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

namespace KWFontService_NS {

/// The numbers that a charstring has stacked up, as far as accents are looked for: operators other
/// than calls take none away.
class SeacStack {
public:
    void push(int value) {
        if (kept_ == values_.size())
            forget();
        values_[kept_++] = value;
        count_ = std::min(count_ + 1, kMost);
    }
    void drop(unsigned number);
    /// As if the numbers of another stack were dropped and pushed here.
    void add(const SeacStack& more);

    /// What `endchar` finds on top where more than three numbers lie (Adobe Technical Note 5177,
    /// appendix C): the accent, then the base. 0 for a number that is not known any more.
    struct Parts {
        int achar;
        int bchar;
    };
    std::optional<Parts> parts() const;

    friend bool operator==(const SeacStack&, const SeacStack&) = default;

private:
    void forget();

    // Calls take the number right before them away, so the top is hardly ever dug up.
    static constexpr std::size_t kKept = 4;
    static constexpr unsigned kMost = 1U << 30;

    unsigned below_ = 0; ///< dropped of what lay there before
    unsigned count_ = 0;
    std::size_t kept_ = 0; ///< of the numbers at the top, `kKept` at least where there are as many
    std::array<int, 2 * kKept> values_{};
};

/// Finds the glyphs of which others are put together: `endchar` with four operands. It is told what
/// a charstring holds, number by number and call by call, and follows the calls into subrs.
class SeacFinder {
public:
    SeacFinder(const CharStringSubrs& subrs, CharStringBudget& budget)
        : subrs_(subrs), budget_(budget) {}

    /// Starts with the next charstring.
    /// @param walker  knows what subrs do to the counts, alive as long as the charstring is told
    void begin(SubrWalker& walker) {
        walker_ = &walker;
        top_ = Effect();
    }
    void number(int value) { top_.stack.push(value); }
    /// @param operand  that stands right before the call, if any
    /// @param counts   what the charstring has before the call
    void call(bool isGlobal, std::optional<int> operand, CharStringCounts counts) {
        top_.stack.drop(1);
        if (operand)
            call(isGlobal, *operand, counts, top_, 0);
    }
    void endchar() { addEnd(top_, top_.stack); }

    /// Calls `each(code)` for the StandardEncoding codes that the charstring ends with: whatever
    /// its last numbers are, when there are more than three and they lie in 1 to 255.
    template <class Each>
    void parts(const Each& each) const {
        for (const SeacStack& end : top_.ends) {
            const auto parts = end.parts();
            if (!parts)
                continue;
            for (const int code : {parts->achar, parts->bchar}) {
                if (code >= 1 && code <= 255)
                    each(static_cast<std::uint8_t>(code));
            }
        }
    }

private:
    /// What a charstring does to the stack, and the stacks at each `endchar`.
    struct Effect {
        SeacStack stack{};
        std::vector<SeacStack> ends{};
    };

    Effect walk(ByteView charString, CharStringCounts counts, int depth);
    void call(bool isGlobal, int operand, CharStringCounts& counts, Effect& effect, int depth);
    static void addEnd(Effect& effect, const SeacStack& end);

    CharStringSubrs subrs_;
    CharStringBudget& budget_;
    SubrWalker* walker_ = nullptr;
    Effect top_;
    std::unordered_map<std::uint64_t, Effect> known_;
};

} // namespace KWFontService_NS
