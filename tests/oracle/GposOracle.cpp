#include "GposOracle.h"

#include "support/SfntBuilder.h"

#include <functional>

namespace KWTest::oracle {

namespace {

constexpr int kFinal = 4; // decomposition types that end a group of joined letters
constexpr int kIsolated = 8;

std::int16_t low16(int value) {
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(value & 0xFFFF));
}
void add16(std::int16_t& field, int value) {
    field = low16(field + value);
}

bool hasValue(int valueFormat) {
    return (valueFormat & 0x0F) != 0;
}

void applyValue(Placed& placed, int valueFormat, const Value& value) {
    if (!hasValue(valueFormat))
        return;
    const auto field = [valueFormat](int bit, int number) {
        return (valueFormat & bit) != 0 ? std::optional<int>(number) : std::nullopt;
    };
    placed.add(field(1, value.xPlacement), field(2, -value.yPlacement), field(4, value.xAdvance),
               field(8, -value.yAdvance));
}

/// Null without an anchor for the class.
const Anchor* anchorOf(const AnchorRow* row, int markClass) {
    const MaybeAnchor* anchor = row == nullptr ? nullptr : find(*row, markClass);
    return anchor == nullptr || !*anchor ? nullptr : &**anchor;
}

/// One call of a subtable: what all types have in hand. It answers whether the subtable applied,
/// and may move the index.
class Positioner {
public:
    using ApplyNested = std::function<bool(int lookup)>;

    Positioner(const Font& font, int flag, Line& line, int& index, bool rtl, ApplyNested nested)
        : font_(font), flag_(flag), p_(line), i_(index), rtl_(rtl), nested_(std::move(nested)) {}

    bool operator()(const SinglePos& s) {
        const int covered = s.coverage(glyph(i_));
        if (covered < 0)
            return false;
        const Value* value = find(s.values, s.format == 1 ? 0 : covered);
        if (value == nullptr)
            return false;
        applyValue(p(i_), s.valueFormat, *value);
        return hasValue(s.valueFormat);
    }

    bool operator()(const PairGlyphs& s) {
        const std::vector<Pair>* set = find(s.sets, s.coverage(glyph(i_)));
        const int j = second(s.coverage);
        if (j < 0 || set == nullptr)
            return false;
        for (const Pair& pair : *set) {
            if (pair.second == glyph(j))
                return applyPair(j, s.valueFormat1, pair.value1, s.valueFormat2, pair.value2);
        }
        return false;
    }
    bool operator()(const PairClasses& s) {
        const int j = second(s.coverage);
        if (j < 0)
            return false;
        int class1 = s.classes1(glyph(i_));
        int class2 = s.classes2(glyph(j));
        if (p(i_).isStrict()) {
            class1 = class1 == -1 ? 0 : class1;
            class2 = class2 == -1 ? 0 : class2;
        }
        const auto* row = find(s.matrix, class1);
        const auto* values = row == nullptr ? nullptr : find(*row, class2);
        if (values == nullptr)
            return false;
        return applyPair(j, s.valueFormat1, values->first, s.valueFormat2, values->second);
    }

    bool operator()(const Cursive& s) {
        const auto* own = find(s.anchors, s.coverage(glyph(i_)));
        if (i_ + 1 >= count(p_) || own == nullptr || !own->second)
            return false;
        const Anchor exit = *own->second;
        int j = i_ + 1;
        if (p(i_).isStrict()) {
            while (j < count(p_) && passes(j))
                ++j;
        } else {
            while (j < count(p_) && p(j).width == 0)
                ++j;
        }
        if (j >= count(p_))
            return false;
        const auto* next = find(s.anchors, s.coverage(glyph(j)));
        if (next == nullptr || !next->first)
            return false;
        const Anchor entry = *next->first;
        const int dy = exit.y - entry.y;
        const int dx = entry.x - p(j).width - exit.x;
        if (!rtl_ || !p(j).isStrict()) {
            p(i_).attach(dx, dy);
            return true;
        }
        p(i_).x1 = low16(dx);
        p(i_).y = low16(p(j).y - entry.y + exit.y);
        for (int k = i_ - 1; k >= 0; --k) {
            if (p(k).width == 0)
                continue;
            if (p(k).decomposition == kFinal || p(k).decomposition == kIsolated)
                break;
            add16(p(k).y, dy);
        }
        for (int k = j - 1; k > i_; --k) {
            if (p(k).width != 0)
                continue;
            add16(p(k).x1, dx);
            add16(p(k).x2, exit.x - entry.x + p(j).width);
        }
        return true;
    }

    bool operator()(const MarkAttach& s) { return s.type == 4 ? markBase(s) : markMark(s); }

    bool operator()(const MarkLigature& s) {
        const MarkAnchor* mark = find(s.markAnchors, s.marks(glyph(i_)));
        if (i_ == 0 || mark == nullptr)
            return false;
        const bool c = p(i_ - 1).has(Placed::kComponentInfo);
        int k = i_ - 1;
        while (k >= 0 && (c ? p(k).slot.glyphClass == 3 : passes(k)))
            --k;
        if (k < 0)
            return false;
        const auto* components = find(s.components, s.ligatures(glyph(k)));
        if (components == nullptr)
            return false;
        int n = 1;
        if (c) {
            n = p(i_).skipInfo;
            if (n < 1 || n > count(*components))
                n = count(*components);
        }
        const Anchor* ligature = anchorOf(find(*components, n - 1), mark->markClass);
        if (ligature == nullptr || !mark->anchor)
            return false;
        const Anchor m = *mark->anchor;
        const Anchor l = *ligature;
        if (rtl_ && c)
            p(i_).attach(l.x + p(k).x1 - m.x, m.y - l.y);
        else if (rtl_)
            p(i_).attach(l.x - m.x, m.y - l.y);
        else
            p(i_).attach(l.x - p(k).x2 - m.x, l.y - m.y);
        return true;
    }

    bool operator()(const ContextGlyphs& s) { return context(s); }
    bool operator()(const ContextClasses& s) { return context(s); }
    bool operator()(const ContextCoverages& s) { return context(s); }
    bool operator()(const ChainClasses& s) { return context(s); }
    bool operator()(const ChainCoverages& s) { return context(s); }

    template <class Other>
    bool operator()(const Other&) {
        return false;
    }

private:
    Placed& p(int index) { return at(p_, index); }
    Glyph glyph(int index) const { return at(p_, index).slot.glyph; }
    bool passes(int index) const { return isPassedOver(font_, flag_, at(p_, index).slot); }

    /// The second glyph of a pair; -1 without a pair.
    int second(const Coverage& coverage) {
        int j = i_ + 1;
        if (j >= count(p_) || !coverage.has(glyph(i_)))
            return -1;
        if (p(i_).isStrict()) {
            while (j < count(p_) && passes(j))
                ++j;
        }
        return j < count(p_) ? j : -1;
    }
    bool applyPair(int j, int format1, const Value& value1, int format2, const Value& value2) {
        applyValue(p(i_), format1, value1);
        applyValue(p(j), format2, value2);
        const bool applied = hasValue(format1) || hasValue(format2);
        if (applied && p(i_).isStrict())
            i_ = format2 == 0 ? j - 1 : j;
        return applied;
    }

    bool markBase(const MarkAttach& s) {
        const MarkAnchor* mark = find(s.markAnchors, s.marks(glyph(i_)));
        if (i_ == 0 || mark == nullptr)
            return false;
        const Placed& own = p(i_);
        const bool strictMark = rtl_ && own.isStrict();
        int acc = 0;
        int k = i_ - 1;
        for (; k >= 0; --k) {
            const Placed& base = p(k);
            acc += base.x1 + base.x2;
            if (base.width == 0 && !strictMark && !own.has(Placed::kZeroWidthBase))
                continue;
            const int glyphClass = base.slot.glyphClass;
            if (glyphClass == 3)
                continue;
            const bool mayBeComponent = glyphClass == 1 || glyphClass == 2 || glyphClass == 4;
            if (mayBeComponent && own.has(Placed::kSkipComponentBase) && base.compInfo >= 1)
                continue;
            break;
        }
        if (k < 0)
            return false;
        const Anchor* base = anchorOf(find(s.baseAnchors, s.bases(glyph(k))), mark->markClass);
        if (base == nullptr || !mark->anchor)
            return false;
        const Anchor m = *mark->anchor;
        const Anchor b = *base;
        if (p(k).isStrict() && rtl_)
            p(i_).attach(b.x - p(k).x2 - m.x + acc, m.y + p(k).y - b.y);
        else if (p(k).isStrict())
            p(i_).attach(p(k).x1 - m.x - acc + b.x, m.y - b.y);
        else if (rtl_)
            p(i_).attach(b.x - m.x, m.y - b.y);
        else
            p(i_).attach(b.x - m.x - p(k).width, m.y - b.y);
        return true;
    }

    bool markMark(const MarkAttach& s) {
        const MarkAnchor* mark = find(s.markAnchors, s.marks(glyph(i_)));
        if (i_ == 0 || mark == nullptr)
            return false;
        int k = i_ - 1;
        while (passes(k)) {
            if (p(k).slot.glyphClass == 1 || k == 0)
                return false;
            --k;
        }
        const AnchorRow* row = find(s.baseAnchors, s.bases(glyph(k)));
        if (row == nullptr)
            return false;
        if (rtl_ && p(k).has(Placed::kComponentInfo) && p(k).isStrict() &&
            p(i_).skipInfo != p(k).skipInfo)
            return false;
        const Anchor* other = anchorOf(row, mark->markClass);
        if (other == nullptr || !mark->anchor)
            return false;
        const Anchor a = *mark->anchor;
        const Anchor b = *other;
        if (p(k).isStrict())
            p(i_).attach(b.x - p(k).x2 - a.x, p(k).y - b.y + a.y);
        else
            p(i_).attach(a.x - b.x, a.y - b.y);
        return true;
    }

    bool context(const SubTable& subtable) {
        Run run;
        for (const Placed& placed : p_)
            run.push_back(placed.slot);
        const int flag = rtl_ && p_.front().isStrict() ? flag_ : 0;
        const Match match = matchContext(font_, subtable, run, i_, flag);
        bool applied = false;
        for (const Record& record : match.records) {
            if (nested_(record.lookup))
                applied = true;
        }
        return applied;
    }

    const Font& font_;
    int flag_;
    Line& p_;
    int& i_;
    bool rtl_;
    ApplyNested nested_;
};

} // namespace

// --- a positioned glyph -------------------------------------------------------------------------

void Placed::resetOutside() {
    if (!has(kOutside))
        return;
    flag = static_cast<std::uint16_t>(flag & ~kOutside);
    x2 = width;
    x1 = 0;
    y = 0;
    y2 = 0;
}

void Placed::add(std::optional<int> dx1, std::optional<int> dy, std::optional<int> dx2,
                 std::optional<int> dy2) {
    resetOutside();
    if (dx1) {
        add16(x1, *dx1);
        add16(x2, -*dx1);
    }
    if (dx2)
        add16(x2, *dx2);
    if (dy)
        add16(y, *dy);
    if (dy2)
        add16(y2, *dy2);
}

void Placed::attach(int newX1, int newY) {
    resetOutside();
    if (!isStrict()) {
        add(newX1, newY, std::nullopt, std::nullopt);
        return;
    }
    const int difference = newX1 - x1;
    x1 = low16(newX1);
    add16(x2, -difference);
    y = low16(newY);
}

// --- the driver ---------------------------------------------------------------------------------

bool GposOracle::apply(int lookupIndex, Line& line, int& i, bool rtl) {
    if (i < 0 || i >= count(line))
        return false;
    const Lookup& lookup = at(font_.gpos.lookups, lookupIndex);
    const auto nested = [&](int index) { return apply(index, line, i, rtl); };
    for (const SubTable& subtable : lookup.subtables) {
        if (std::visit(Positioner(font_, lookup.flag, line, i, rtl, nested), subtable)) {
            applied_.push_back(lookupIndex);
            return true;
        }
    }
    return false;
}

bool GposOracle::processGPOS(Tag tag, Line& line, int index, bool rtl) {
    if (handle_.gpos == nullptr)
        return false;
    const bool backwards = handle_.script == tagValue("arab");
    const bool onlyOne = backwards || handle_.script == tagValue("hebr");
    for (const int featureIndex : *handle_.gpos) {
        const Feature& feature = at(font_.gpos.features, featureIndex);
        if (feature.tag != tag)
            continue;
        std::vector<int> lookups = feature.lookups;
        if (backwards)
            lookups.assign(feature.lookups.rbegin(), feature.lookups.rend());
        bool applied = false;
        for (const int lookup : lookups) {
            int i = index;
            if (apply(lookup, line, i, rtl))
                applied = true;
            if (applied && onlyOne)
                return true;
        }
        if (applied)
            return true;
    }
    return false;
}

int GposOracle::processGPOS3(int index, Line& line, bool rtl) {
    if (handle_.gpos == nullptr)
        return -1;
    const auto order = lookupOrder(font_.gpos, *handle_.gpos);
    const auto* entry = find(order, index);
    if (entry == nullptr)
        return -1;
    const bool fromRight = (at(font_.gpos.lookups, entry->second).flag & 1) != 0;
    int found = -1;
    for (int i = 0; i < count(line); ++i) {
        if (apply(entry->second, line, i, rtl || fromRight) && found == -1)
            found = i;
    }
    return found;
}

} // namespace KWTest::oracle
