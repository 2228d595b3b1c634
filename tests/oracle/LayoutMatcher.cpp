#include "LayoutMatcher.h"

namespace KWTest::oracle {

namespace {

/// One question to a context: what all its formats have in hand.
class Matcher {
public:
    Matcher(const Font& font, const Run& run, int position, int flag)
        : font_(font), run_(run), position_(position), flag_(flag) {}

    // Read, but never matched.
    Match operator()(const ContextGlyphs&) const { return {}; }
    Match operator()(const ContextCoverages&) const { return {}; }

    Match operator()(const ContextClasses& s) const {
        if (position_ + 1 >= count(run_))
            return {};
        if (!s.coverage.has(glyph(position_)))
            return {};
        const int class0 = s.classes(glyph(position_));
        int second = position_ + 1;
        while (second < count(run_) && passes(second))
            ++second;
        if (second >= count(run_))
            return {};
        const int class1 = s.classes(glyph(second));
        if (class0 == -1 || class1 == -1)
            return {};
        Match match;
        if (const std::vector<Rule>* set = find(s.sets, class0)) {
            for (const Rule& rule : *set) {
                if (rule.input.empty() || rule.input.front() != class1)
                    continue;
                if (input(rule, s.classes, match.skipped))
                    return full(match, rule.records);
            }
        }
        return {};
    }

    Match operator()(const ChainClasses& s) const {
        if (!s.coverage.has(glyph(position_)))
            return {};
        const int class0 = s.input(glyph(position_));
        if (class0 == -1)
            return {};
        Match match;
        if (const std::vector<Rule>* set = find(s.sets, class0)) {
            for (const Rule& rule : *set) {
                if (input(rule, s.input, match.skipped) && backtrack(rule, s.backtrack) &&
                    lookahead(rule, s.lookahead))
                    return full(match, rule.records);
            }
        }
        return {};
    }

    Match operator()(const ChainCoverages& s) const {
        if (count(s.backtrack) > position_ ||
            position_ + count(s.input) + count(s.lookahead) > count(run_))
            return {};
        int place = position_;
        int passed = 0;
        for (std::size_t i = 0; i < s.input.size(); ++i, ++place) {
            while (i > 0 && place < count(run_) && passes(place)) {
                ++place;
                ++passed;
            }
            if (place >= count(run_) || !s.input[i].has(glyph(place)))
                return {};
        }
        const int last = position_ + count(s.input) - 1 + passed;
        if (!before(s.backtrack, position_) || !after(s.lookahead, last))
            return {};
        Match match;
        match.records = s.records;
        match.result = s.records.empty() ? -1 : count(s.records);
        return match;
    }

    template <class Other>
    Match operator()(const Other&) const {
        return {};
    }

    /// Whether the coverages hold the glyphs before a place, the nearest first.
    bool before(const std::vector<Coverage>& coverages, int place) const {
        for (const Coverage& coverage : coverages) {
            --place;
            while (place >= 0 && passes(place))
                --place;
            if (place < 0 || !coverage.has(glyph(place)))
                return false;
        }
        return true;
    }
    bool after(const std::vector<Coverage>& coverages, int place) const {
        for (const Coverage& coverage : coverages) {
            ++place;
            while (place < count(run_) && passes(place))
                ++place;
            if (place >= count(run_) || !coverage.has(glyph(place)))
                return false;
        }
        return true;
    }

private:
    Glyph glyph(int place) const { return at(run_, place).glyph; }
    bool passes(int place) const { return isPassedOver(font_, flag_, at(run_, place)); }

    /// What a rule that did not match recorded stays recorded.
    bool input(const Rule& rule, const ClassDef& classes, std::vector<int>& skipped) const {
        int place = position_ + 1;
        for (const int wanted : rule.input) {
            for (; place < count(run_) && passes(place); ++place)
                skipped.push_back(place);
            if (place >= count(run_) || classes(glyph(place)) != wanted)
                return false;
            ++place;
        }
        return true;
    }
    bool backtrack(const Rule& rule, const ClassDef& classes) const {
        int place = position_;
        for (const int wanted : rule.backtrack) {
            --place;
            while (place >= 0 && passes(place))
                --place;
            if (place < 0 || classes(glyph(place)) != wanted)
                return false;
        }
        return true;
    }
    /// It starts after the first input glyph, however many there are.
    bool lookahead(const Rule& rule, const ClassDef& classes) const {
        int place = position_;
        for (const int wanted : rule.lookahead) {
            ++place;
            while (place < count(run_) && passes(place))
                ++place;
            if (place >= count(run_) || classes(glyph(place)) != wanted)
                return false;
        }
        return true;
    }

    static Match full(Match match, const std::vector<Record>& records) {
        match.records = records;
        match.result = count(records);
        return match;
    }

    const Font& font_;
    const Run& run_;
    int position_;
    int flag_;
};

} // namespace

bool isPassedOver(const Font& font, int flag, const Slot& slot) {
    if (flag == 0)
        return false;
    if (((flag & 2) != 0 && slot.glyphClass == 1) || ((flag & 4) != 0 && slot.glyphClass == 2) ||
        ((flag & 8) != 0 && slot.glyphClass == 3))
        return true;
    if ((flag & 0xFF00) == 0)
        return false;
    const int attachClass = slot.glyph == kNone ? -1 : font.markAttachClasses(slot.glyph);
    if (attachClass == -1)
        return slot.glyphClass == 3;
    return attachClass != flag >> 8;
}

Match matchContext(const Font& font, const SubTable& subtable, const Run& run, int position,
                   int flag) {
    if (position < 0 || position >= count(run))
        return {};
    return std::visit(Matcher(font, run, position, flag), subtable);
}

Glyph substituteReverse(const Font& font, const SubTable& subtable, const Run& run, int index,
                        int flag) {
    const auto* reverse = std::get_if<ReverseChain>(&subtable);
    if (reverse == nullptr)
        return kNone;
    if (count(reverse->backtrack) > index || index + count(reverse->lookahead) >= count(run))
        return kNone;
    const int covered = reverse->coverage(at(run, index).glyph);
    const Matcher matcher(font, run, index, flag);
    if (covered < 0 || !matcher.before(reverse->backtrack, index) ||
        !matcher.after(reverse->lookahead, index))
        return kNone;
    const Glyph* substitute = find(reverse->substitutes, covered);
    return substitute == nullptr ? kNone : *substitute;
}

} // namespace KWTest::oracle
