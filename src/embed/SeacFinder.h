#pragma once

#include "cff/CharStringWalk.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <deque>
#include <optional>
#include <unordered_map>
#include <vector>

namespace KWFontService_NS {

/// The numbers that a charstring has stacked up, as far as accents are looked for: operators other
/// than calls take none away.
class SeacStack {
    // Calls take the number right before them away, so the top is hardly ever dug up.
    static constexpr unsigned kKept = NumberRun::kKept;
    static constexpr unsigned kMost = 1U << 30;

public:
    /// @param charString  where the numbers stand
    void push(const NumberRun& numbers, ByteView charString) {
        unsigned top = top_;
        numbers.visitLast(charString, [this, &top](int value) {
            const bool isCode = value >= 0 && value <= 0xFF;
            codes_[top++ % kKept] = isCode ? static_cast<std::uint8_t>(value) : std::uint8_t{0};
        });
        top_ = static_cast<std::uint8_t>(top);
        kept_ = static_cast<std::uint8_t>(std::min<std::size_t>(kept_ + numbers.size(), kKept));
        count_ = static_cast<unsigned>(std::min<std::size_t>(count_ + numbers.size(), kMost));
    }
    void drop(unsigned number);
    /// As if the numbers of another stack were dropped and pushed here.
    void add(const SeacStack& more);

    /// What `endchar` finds on top where more than three numbers lie (Adobe Technical Note 5177,
    /// appendix C): the accent, then the base. 0 for a number that is no code, or not known any
    /// more.
    struct Parts {
        std::uint8_t achar;
        std::uint8_t bchar;
    };
    std::optional<Parts> parts() const;

    friend bool operator==(const SeacStack& a, const SeacStack& b);

private:
    void push(std::uint8_t code) {
        codes_[top_++ % kKept] = code;
        kept_ = static_cast<std::uint8_t>(std::min(kept_ + 1U, kKept));
        count_ = std::min(count_ + 1, kMost);
    }
    /// The code at a depth, 0 at the top.
    std::uint8_t at(unsigned depth) const {
        return depth < kept_ ? codes_[(top_ - 1U - depth) % kKept] : std::uint8_t{0};
    }

    unsigned below_ = 0; ///< dropped of what lay there before
    unsigned count_ = 0;
    std::uint8_t kept_ = 0; ///< of the numbers at the top
    std::uint8_t top_ = 0;  ///< where the next number goes, in turns
    std::array<std::uint8_t, kKept> codes_{};
};

/// Finds the glyphs of which others are put together: `endchar` with four operands. It is told what
/// a charstring holds, numbers and calls in their turn, and follows the calls into subrs.
class SeacFinder {
public:
    SeacFinder(const CharStringSubrs& subrs, CharStringBudget& budget)
        : subrs_(subrs), budget_(budget) {}

    /// Starts with the next charstring.
    /// @param walker  knows what subrs do to the counts, alive as long as the charstring is told
    void begin(SubrWalker& walker) {
        walker_ = &walker;
        top_.stack = SeacStack();
        top_.ends.clear();
    }
    /// Takes the numbers since the call before, or since the start, ahead of what ends them: a
    /// call, or `endchar`.
    void numbers(const NumberRun& run, ByteView charString) { top_.stack.push(run, charString); }
    /// @param operand  that stands right before the call, if any
    /// @param counts   gets what the subr does to it, as with the walker's `call`
    void call(bool isGlobal, std::optional<int> operand, CharStringCounts& counts) {
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
            for (const std::uint8_t code : {parts->achar, parts->bchar})
                if (code != 0)
                    each(code);
        }
    }

private:
    /// What a charstring does to the stack, and the stacks at each `endchar`.
    struct Effect {
        SeacStack stack{};
        std::vector<SeacStack> ends{};
    };

    const Effect* known(bool isGlobal, int operand, const CharStringCounts& before) const;
    const Effect& remember(bool isGlobal, int operand, const CharStringCounts& before,
                           Effect effect);
    Effect walk(ByteView charString, CharStringCounts counts, int depth);
    Effect leaf(ByteView charString, const SubrWalker::Look& look);
    void call(bool isGlobal, int operand, CharStringCounts& counts, Effect& effect, int depth);
    static void addEnd(Effect& effect, const SeacStack& end);

    CharStringSubrs subrs_;
    CharStringBudget& budget_;
    SubrWalker* walker_ = nullptr;
    Effect top_;
    std::deque<Effect> effects_; // a font has ten thousand: no room to double
    // Places in `effects_`: of subrs without masks, and of others by what they are entered with.
    SubrTable<std::uint32_t> plainGlobals_;
    SubrTable<std::uint32_t> plainLocals_;
    std::unordered_map<std::uint64_t, std::uint32_t> known_;
};

} // namespace KWFontService_NS
