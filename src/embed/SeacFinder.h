#pragma once

#include "cff/CharStringWalk.h"

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
    void push(int value);
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
    // Calls take the number right before them away, so the top is hardly ever dug up.
    static constexpr std::size_t kKept = 8;
    static constexpr unsigned kMost = 1U << 30;

    unsigned below_ = 0; ///< dropped of what lay there before
    unsigned count_ = 0;
    std::size_t kept_ = 0; ///< of the numbers at the top
    std::array<int, kKept> values_{};
};

/// Finds the glyphs of which others are put together: `endchar` with four operands.
class SeacFinder {
public:
    SeacFinder(const CharStringSubrs& subrs, CharStringBudget& budget)
        : subrs_(subrs), budget_(budget) {}

    /// Calls `each(code)` for the StandardEncoding codes that a glyph ends with: whatever its last
    /// numbers are, when there are more than three and they lie in 1 to 255.
    template <class Each>
    void find(ByteView charString, const Each& each) {
        for (const SeacStack& end : walk(charString, CharStringCounts{}, 0).ends) {
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
    /// What a charstring does: to the stack, to the counts, and the stacks at each `endchar`.
    struct Effect {
        CharStringCounts counts;
        SeacStack stack;
        std::vector<SeacStack> ends;
    };

    Effect walk(ByteView charString, CharStringCounts counts, int depth);
    void call(bool isGlobal, int operand, Effect& effect, int depth);
    static void addEnd(Effect& effect, const SeacStack& end);

    CharStringSubrs subrs_;
    CharStringBudget& budget_;
    std::unordered_map<std::uint64_t, Effect> known_;
};

} // namespace KWFontService_NS
