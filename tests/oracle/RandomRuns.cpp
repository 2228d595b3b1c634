#include "RandomLayout.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace KWTest::oracle {

namespace {

/// Draws a run of glyphs that a subtable looks for; empty when it finds none.
class Planter {
public:
    explicit Planter(Rng& rng) : rng_(rng) {}

    std::vector<Glyph> operator()(const Ligatures& s) {
        const Glyph first = any(s.coverage);
        const auto* set = find(s.sets, s.coverage(first));
        if (set == nullptr || set->empty())
            return {};
        std::vector<Glyph> glyphs = any(*set).rest;
        glyphs.insert(glyphs.begin(), first);
        return glyphs;
    }
    std::vector<Glyph> operator()(const ReverseChain& s) {
        return chain(s.backtrack, {s.coverage}, s.lookahead);
    }
    std::vector<Glyph> operator()(const ContextClasses& s) {
        return rule(s.coverage, s.sets, s.classes, s.classes, s.classes);
    }
    std::vector<Glyph> operator()(const ChainClasses& s) {
        return rule(s.coverage, s.sets, s.backtrack, s.input, s.lookahead);
    }
    std::vector<Glyph> operator()(const ContextCoverages& s) { return chain({}, s.input, {}); }
    std::vector<Glyph> operator()(const ChainCoverages& s) {
        return chain(s.backtrack, s.input, s.lookahead);
    }
    std::vector<Glyph> operator()(const PairGlyphs& s) {
        const Glyph first = any(s.coverage);
        const auto* set = find(s.sets, s.coverage(first));
        if (set == nullptr || set->empty())
            return {first};
        return {first, any(*set).second};
    }
    std::vector<Glyph> operator()(const PairClasses& s) {
        if (s.classes2.classes.empty())
            return {any(s.coverage)};
        return {any(s.coverage), any(s.classes2.classes).first};
    }
    std::vector<Glyph> operator()(const Cursive& s) { return {any(s.coverage), any(s.coverage)}; }
    std::vector<Glyph> operator()(const MarkAttach& s) {
        std::vector<Glyph> glyphs{any(s.bases), any(s.marks)};
        if (rng_.chance(3))
            glyphs.push_back(any(s.marks));
        return glyphs;
    }
    std::vector<Glyph> operator()(const MarkLigature& s) {
        std::vector<Glyph> glyphs{any(s.ligatures), any(s.marks)};
        if (rng_.chance(3))
            glyphs.push_back(any(s.marks));
        return glyphs;
    }
    template <class Other>
    std::vector<Glyph> operator()(const Other& s) {
        if constexpr (requires { s.coverage; })
            return {any(s.coverage)};
        return {};
    }

private:
    template <class List>
    typename List::const_reference any(const List& list) {
        const auto index = rng_.below(static_cast<std::uint32_t>(list.size()));
        return *std::next(list.begin(), static_cast<std::ptrdiff_t>(index));
    }
    Glyph any(const Coverage& coverage) {
        return coverage.indices.empty() ? kNone : any(coverage.indices).first;
    }

    std::vector<Glyph> chain(const std::vector<Coverage>& backtrack,
                             const std::vector<Coverage>& input,
                             const std::vector<Coverage>& lookahead) {
        std::vector<Glyph> glyphs;
        for (auto coverage = backtrack.rbegin(); coverage != backtrack.rend(); ++coverage)
            glyphs.push_back(any(*coverage));
        for (const Coverage& coverage : input)
            glyphs.push_back(any(coverage));
        for (const Coverage& coverage : lookahead)
            glyphs.push_back(any(coverage));
        return glyphs;
    }

    /// A glyph of one class in one definition and, unless that is null, of another in another.
    void add(std::vector<Glyph>& glyphs, const ClassDef& classes, int number,
             const ClassDef* further = nullptr, int furtherNumber = 0) {
        std::vector<Glyph> fitting;
        for (const auto& [glyph, value] : classes.classes) {
            if (value == number && (further == nullptr || (*further)(glyph) == furtherNumber))
                fitting.push_back(glyph);
        }
        if (!fitting.empty())
            glyphs.push_back(any(fitting));
    }

    std::vector<Glyph> rule(const Coverage& coverage, const RuleSets& sets,
                            const ClassDef& backtrack, const ClassDef& input,
                            const ClassDef& lookahead) {
        if (sets.empty())
            return {};
        const int set = static_cast<int>(rng_.below(static_cast<std::uint32_t>(sets.size())));
        if (at(sets, set).empty())
            return {any(coverage)};
        const Rule& rule = any(at(sets, set));
        std::vector<Glyph> glyphs;
        for (auto number = rule.backtrack.rbegin(); number != rule.backtrack.rend(); ++number)
            add(glyphs, backtrack, *number);
        std::vector<Glyph> firsts;
        for (const auto& [glyph, index] : coverage.indices) {
            if (input(glyph) == set)
                firsts.push_back(glyph);
        }
        if (firsts.empty())
            return {any(coverage)};
        glyphs.push_back(any(firsts));
        for (int i = 0; i < std::max(count(rule.input), count(rule.lookahead)); ++i) {
            const int* wanted = find(rule.input, i);
            const int* ahead = find(rule.lookahead, i);
            if (wanted != nullptr && ahead != nullptr)
                add(glyphs, input, *wanted, &lookahead, *ahead);
            else if (wanted != nullptr)
                add(glyphs, input, *wanted);
            else
                add(glyphs, lookahead, *ahead);
        }
        return glyphs;
    }

    Rng& rng_;
};

void collect(const SubTable& subtable, std::set<Glyph>& glyphs) {
    const auto add = [&](const Coverage& coverage) {
        for (const auto& [glyph, index] : coverage.indices)
            glyphs.insert(glyph);
    };
    std::visit(
        [&](const auto& s) {
            if constexpr (requires { s.coverage; })
                add(s.coverage);
            if constexpr (requires { s.marks; })
                add(s.marks);
            if constexpr (requires { s.bases; })
                add(s.bases);
            if constexpr (requires { s.ligatures; })
                add(s.ligatures);
            if constexpr (requires { s.backtrack.front().indices; }) {
                for (const auto* list : {&s.backtrack, &s.lookahead}) {
                    for (const Coverage& coverage : *list)
                        add(coverage);
                }
            }
        },
        subtable);
}

} // namespace

std::vector<Glyph> glyphsOf(const Font& font) {
    std::set<Glyph> glyphs;
    for (const Layout* layout : {&font.gsub, &font.gpos}) {
        for (const Lookup& lookup : layout->lookups) {
            for (const SubTable& subtable : lookup.subtables)
                collect(subtable, glyphs);
        }
    }
    return {glyphs.begin(), glyphs.end()};
}

RandomRuns::RandomRuns(const Font& font, std::vector<Glyph> others, Rng& rng)
    : font_(&font), others_(std::move(others)), rng_(&rng) {}

Slot RandomRuns::slotOf(Glyph glyph) {
    switch (rng_->below(30)) {
    case 0:
        return {}; // cleared
    case 1:
        return {kNone, -2}; // ignored
    case 2:
    case 3:
        return {glyph, static_cast<int>(rng_->below(6)) - 1}; // the caller knows better
    default:
        return {glyph, font_->glyphClasses(glyph)};
    }
}

Run RandomRuns::run(const std::vector<const Lookup*>& about, int longest) {
    const int length = rng_->chance(40)
                           ? 0
                           : 1 + static_cast<int>(rng_->below(static_cast<std::uint32_t>(longest)));
    Run run;
    const auto other = [&] {
        return others_[rng_->below(static_cast<std::uint32_t>(others_.size()))];
    };
    while (count(run) < length) {
        std::vector<Glyph> glyphs;
        if (!about.empty() && !rng_->chance(4)) {
            const Lookup& lookup = *about[rng_->below(static_cast<std::uint32_t>(about.size()))];
            if (!lookup.subtables.empty()) {
                const auto index = rng_->below(static_cast<std::uint32_t>(lookup.subtables.size()));
                glyphs = std::visit(Planter(*rng_), lookup.subtables[index]);
            }
        }
        if (glyphs.empty())
            glyphs.push_back(other());
        const bool dense = rng_->chance(2);
        for (const Glyph glyph : glyphs) {
            run.push_back(slotOf(glyph));
            while (!dense && rng_->chance(4))
                run.push_back(slotOf(other()));
        }
    }
    run.resize(static_cast<std::size_t>(length));
    return run;
}

std::vector<int> RandomRuns::words(std::size_t longest) {
    std::vector<int> words;
    if (!rng_->chance(3))
        return words;
    const auto size = rng_->below(static_cast<std::uint32_t>(longest) + 1);
    for (std::uint32_t i = 0; i < size; ++i)
        words.push_back(rng_->chance(3) ? static_cast<int>(rng_->next() & 0x30001) : 0);
    return words;
}

Line RandomRuns::line(const std::vector<const Lookup*>& about, int longest) {
    const auto small = [&] { return static_cast<std::int16_t>(rng_->below(401)); };
    const auto around = [&] { return static_cast<std::int16_t>(small() - 200); };
    // Hosts set these bits for whole lines more often than for single glyphs.
    const bool allStrict = rng_->chance(3);
    const bool someStrict = rng_->chance(2);
    const bool plain = rng_->chance(4);
    constexpr std::int16_t kTypes[] = {0, 4, 8, 16, 1};
    Line line;
    for (const Slot& slot : run(about, longest)) {
        Placed p;
        p.slot = slot;
        p.length = 1;
        const bool mark = slot.glyphClass == 3 ? !rng_->chance(5) : rng_->chance(5);
        p.width = slot.glyph == kNone || mark ? std::int16_t{0} : small();
        p.x2 = p.width;
        if (allStrict || (someStrict && rng_->chance(2)))
            p.flag |= Placed::kStrict;
        if (!plain) {
            if (rng_->chance(3)) {
                p.x1 = around();
                p.x2 = around();
                p.y = around();
                p.y2 = around();
            }
            for (const unsigned bit : {Placed::kOutside, Placed::kZeroWidthBase,
                                       Placed::kSkipComponentBase, Placed::kComponentInfo}) {
                if (rng_->chance(4))
                    p.flag = static_cast<std::uint16_t>(p.flag | bit);
            }
            if (rng_->chance(30))
                p.x1 = static_cast<std::int16_t>(32767 - rng_->below(100));
            p.length = static_cast<std::int16_t>(rng_->below(4));
            p.decomposition = kTypes[rng_->below(5)];
            p.joining = static_cast<std::int16_t>(rng_->below(20));
            p.height = rng_->chance(2) ? around() : std::int16_t{0};
            p.skipInfo = static_cast<std::int16_t>(rng_->below(5));
            p.compInfo = static_cast<std::int16_t>(rng_->below(3));
        }
        line.push_back(p);
    }
    return line;
}

} // namespace KWTest::oracle
