#pragma once

#include "LayoutMatcher.h"

#include <stdexcept>
#include <vector>

namespace KWTest::oracle {

/// The rules do not say what happens, or the work does not end.
struct Undefined : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Substitution by the lookups of one font.
class GsubOracle {
public:
    explicit GsubOracle(const Handle& handle) : handle_(handle), font_(*handle.font) {}

    struct AtPosition {
        int result = 0;
        int position = 0;
        Run out{};
        Run skipped{};

        bool operator==(const AtPosition&) const = default;
    };
    /// The lookups of a feature at one place. `before` is what the caller's variables hold.
    AtPosition processGSUB(Tag tag, const Run& run, const AtPosition& before, int alternate);

    struct WholeRun {
        bool changed = false;
        Run run{};
        std::vector<int> words{};

        bool operator==(const WholeRun&) const = default;
    };
    /// One entry of the lookup order over the whole run; `before` is what the output holds.
    WholeRun processGSUB3(int index, const Run& run, const std::vector<int>& words,
                          const WholeRun& before, int alternate);

    /// Lookups that did something, by index: what a test was about.
    const std::vector<int>& applied() const { return applied_; }

private:
    // What a case that ends stays below, with runs of some tens of glyphs.
    static constexpr int kMaxSteps = 3000;
    static constexpr int kMaxGlyphs = 1000;

    const Lookup& lookupAt(int index) const { return at(font_.gsub.lookups, index); }
    void step();
    Slot slotOf(Glyph glyph) const;

    Glyph single(const Lookup& lookup, Glyph glyph) const;
    Glyph alternate(const Lookup& lookup, Glyph glyph, int number) const;
    /// Null when no subtable covers the glyph.
    const std::vector<Glyph>* multiple(const Lookup& lookup, Glyph glyph) const;
    Glyph ligature(const Lookup& lookup, const Run& run, int& position,
                   std::vector<int>& skipped) const;

    int context(const Lookup& lookup, const Run& run, int& position, Run& out,
                std::vector<int>& skipped);
    int nested(int lookupIndex, const Run& run, int& position, Run& out, std::vector<int>& skipped);

    struct Whole;
    bool wholeRun(const Lookup& lookup, Whole& whole, int number);
    bool wholeGlyphs(const Lookup& lookup, Whole& whole, int number);
    bool wholeReverse(const Lookup& lookup, Whole& whole);
    bool wholeMultiple(const Lookup& lookup, Whole& whole);
    bool wholeLigature(const Lookup& lookup, Whole& whole);
    bool wholeContext(const Lookup& lookup, Whole& whole);

    Handle handle_;
    const Font& font_;
    int steps_ = 0;
    std::vector<int> applied_{};
};

} // namespace KWTest::oracle
