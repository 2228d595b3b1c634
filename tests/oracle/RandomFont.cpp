#include "RandomLayout.h"

#include "support/SfntBuilder.h"

#include <algorithm>
#include <string>

namespace KWTest::oracle {

namespace {

constexpr Glyph kFirst = 1;
constexpr Glyph kLast = 10;
constexpr int kClasses = 3;

class Generator {
public:
    explicit Generator(Rng& rng) : rng_(rng) {}

    Font font() {
        Font font;
        if (!rng_.chance(6))
            font.glyphClasses = glyphClasses();
        if (!rng_.chance(3))
            font.markAttachClasses = markAttachClasses();
        font.gsub = layout(Kind::Gsub);
        font.gpos = layout(Kind::Gpos);
        return font;
    }

private:
    /// From `low` to `high`.
    int between(int low, int high) {
        return low + static_cast<int>(rng_.below(static_cast<std::uint32_t>(high - low + 1)));
    }
    bool oneIn(std::uint32_t number) { return rng_.chance(number); }
    Glyph glyph() { return static_cast<Glyph>(between(kFirst, kLast)); }
    template <class Draw>
    auto several(int low, int high, Draw draw) {
        std::vector<decltype(draw())> list;
        for (int n = between(low, high); n > 0; --n)
            list.push_back(draw());
        return list;
    }
    /// One item for each covered glyph.
    template <class Draw>
    auto forEach(const Coverage& coverage, Draw draw) {
        const int size = static_cast<int>(coverage.indices.size());
        return several(size, size, draw);
    }
    template <class List>
    void shuffle(List& list) {
        for (std::size_t i = list.size(); i > 1; --i)
            std::swap(list[i - 1], list[rng_.below(static_cast<std::uint32_t>(i))]);
    }

    // --- classes --------------------------------------------------------------------------------

    template <class Draw>
    ClassDef classDef(Draw draw) {
        ClassDef result;
        result.format = oneIn(9) ? 1 : 2;
        for (Glyph g = kFirst; g <= kLast; ++g) {
            // Format 1 has no gaps.
            if (result.format == 1 || !oneIn(7))
                result.classes.emplace(g, draw());
        }
        return result;
    }
    ClassDef glyphClasses() {
        constexpr int kSpread[] = {1, 1, 1, 2, 2, 3, 3, 3, 4, 0};
        return classDef([&] { return kSpread[rng_.below(10)]; });
    }
    ClassDef markAttachClasses() {
        return classDef([&] { return between(0, 3); });
    }
    ClassDef contextClasses() {
        return classDef([&] { return between(0, kClasses - 1); });
    }
    int contextClass() { return between(0, kClasses - 1); }

    Coverage coverage() {
        Coverage result;
        const std::uint32_t density = static_cast<std::uint32_t>(between(1, 3));
        for (Glyph g = kFirst; g <= kLast; ++g) {
            if (rng_.below(4) < density)
                result.indices.emplace(g, static_cast<int>(result.indices.size()));
        }
        if (result.indices.empty())
            result.indices.emplace(glyph(), 0);
        return result;
    }
    Coverage wideCoverage() {
        Coverage result;
        for (Glyph g = kFirst; g <= kLast; ++g) {
            if (!oneIn(6))
                result.indices.emplace(g, static_cast<int>(result.indices.size()));
        }
        return result;
    }

    // --- substitutions --------------------------------------------------------------------------

    SubTable substitution(int type) {
        switch (type) {
        case 1:
            return oneIn(2) ? singleDelta() : singleList();
        case 2: {
            Multiple s{coverage()};
            s.sequences = forEach(s.coverage, [&] {
                return several(oneIn(8) ? 0 : 1, oneIn(3) ? 3 : 2, [&] { return glyph(); });
            });
            return s;
        }
        case 3: {
            Alternate s{coverage()};
            s.sets = forEach(s.coverage, [&] { return several(0, 3, [&] { return glyph(); }); });
            return s;
        }
        case 4: {
            Ligatures s{coverage()};
            s.sets = forEach(s.coverage, [&] {
                return several(oneIn(8) ? 0 : 1, 4, [&] {
                    return Ligature{glyph(), several(oneIn(8) ? 0 : 1, oneIn(2) ? 3 : 1,
                                                     [&] { return glyph(); })};
                });
            });
            return s;
        }
        default: {
            ReverseChain s{coverage()};
            s.backtrack = several(0, 2, [&] { return wideCoverage(); });
            s.lookahead = several(0, 2, [&] { return wideCoverage(); });
            s.substitutes = forEach(s.coverage, [&] { return glyph(); });
            return s;
        }
        }
    }
    SubTable singleDelta() {
        SingleDelta s{coverage()};
        s.delta = between(-3, 3);
        return s;
    }
    SubTable singleList() {
        SingleList s{coverage()};
        s.substitutes = forEach(s.coverage, [&] { return glyph(); });
        return s;
    }

    // --- contexts -------------------------------------------------------------------------------

    /// @param callable  how many of the lookups so far may be called
    std::vector<Record> records(int inputSize, int callable) {
        return several(oneIn(10) ? 0 : 1, 3, [&] {
            const int sequence = between(0, inputSize - 1);
            return Record{sequence, between(0, callable - 1)};
        });
    }
    template <class Draw>
    Rule rule(bool chain, int callable, Draw draw) {
        Rule result;
        result.input = several(chain || oneIn(10) ? 0 : 1, 2, draw);
        if (chain) {
            result.backtrack = several(0, 1, draw);
            result.lookahead = several(0, oneIn(2) ? 2 : 1, draw);
        }
        result.records = records(count(result.input) + 1, callable);
        return result;
    }
    template <class Draw>
    RuleSets ruleSets(int sets, bool chain, int callable, Draw draw) {
        return several(sets, sets, [&] {
            return several(oneIn(8) ? 0 : 1, 4, [&] { return rule(chain, callable, draw); });
        });
    }
    SubTable context(bool chain, int callable) {
        if (oneIn(12)) {
            ContextGlyphs s{chain, wideCoverage()};
            s.sets = ruleSets(static_cast<int>(s.coverage.indices.size()), chain, callable,
                              [&] { return static_cast<int>(glyph()); });
            return s;
        }
        const auto draw = [&] { return contextClass(); };
        // Sets may be fewer than classes.
        const int sets = oneIn(6) ? kClasses - 1 : kClasses;
        if (!chain) {
            if (oneIn(10)) {
                ContextCoverages s{several(1, 2, [&] { return wideCoverage(); })};
                s.records = records(count(s.input), callable);
                return s;
            }
            return ContextClasses{wideCoverage(), contextClasses(),
                                  ruleSets(sets, chain, callable, draw)};
        }
        if (oneIn(2)) {
            return ChainClasses{wideCoverage(), contextClasses(), contextClasses(),
                                contextClasses(), ruleSets(sets, chain, callable, draw)};
        }
        ChainCoverages s;
        s.backtrack = several(0, 2, [&] { return wideCoverage(); });
        s.input = several(1, 3, [&] { return wideCoverage(); });
        s.lookahead = several(0, 2, [&] { return wideCoverage(); });
        s.records = records(count(s.input), callable);
        return s;
    }

    // --- positionings ---------------------------------------------------------------------------

    int number() { return between(-300, 300); }
    MaybeAnchor anchor() {
        if (oneIn(8))
            return std::nullopt;
        const int x = number();
        return Anchor{x, number()};
    }
    /// Mostly of the four fields that are read.
    int valueFormat() {
        if (oneIn(6))
            return oneIn(2) ? 0 : 0x10 << between(0, 3);
        return between(1, 15) | (oneIn(5) ? 0x10 << between(0, 3) : 0);
    }
    Value value(int format) {
        Value result;
        int* const fields[] = {&result.xPlacement, &result.yPlacement, &result.xAdvance,
                               &result.yAdvance};
        for (int bit = 0; bit < 4; ++bit) {
            if ((format & 1 << bit) != 0)
                *fields[bit] = oneIn(40) ? -32768 : number();
        }
        return result;
    }
    std::vector<MarkAnchor> markAnchors(const Coverage& marks, int classCount) {
        return forEach(marks, [&] {
            const int markClass = between(0, classCount - 1);
            return MarkAnchor{markClass, anchor()};
        });
    }
    AnchorRow anchorRow(int classCount) {
        return several(classCount, classCount, [&] { return anchor(); });
    }

    SubTable positioning(int type) {
        switch (type) {
        case 1: {
            SinglePos s{between(1, 2), coverage(), valueFormat()};
            if (s.format == 1)
                s.values = {value(s.valueFormat)};
            else
                s.values = forEach(s.coverage, [&] { return value(s.valueFormat); });
            return s;
        }
        case 2:
            return oneIn(2) ? pairGlyphs() : pairClasses();
        case 3: {
            Cursive s{wideCoverage()};
            s.anchors = forEach(s.coverage, [&] {
                const MaybeAnchor entry = anchor();
                return std::pair(entry, anchor());
            });
            return s;
        }
        case 5: {
            MarkLigature s{wideCoverage(), wideCoverage(), between(1, 3)};
            s.markAnchors = markAnchors(s.marks, s.classCount);
            s.components = forEach(s.ligatures, [&] {
                return several(1, 3, [&] { return anchorRow(s.classCount); });
            });
            return s;
        }
        default: {
            MarkAttach s{type, wideCoverage(), wideCoverage(), between(1, 3)};
            s.markAnchors = markAnchors(s.marks, s.classCount);
            s.baseAnchors = forEach(s.bases, [&] { return anchorRow(s.classCount); });
            return s;
        }
        }
    }
    SubTable pairGlyphs() {
        const int format1 = valueFormat();
        const int format2 = oneIn(2) ? 0 : valueFormat();
        PairGlyphs s{coverage(), format1, format2};
        s.sets = forEach(s.coverage, [&] {
            std::vector<Pair> pairs;
            for (const auto& [second, index] : wideCoverage().indices) {
                const Value first = value(format1);
                pairs.push_back({second, first, value(format2)});
            }
            return pairs;
        });
        return s;
    }
    /// The definitions may know a class more than the matrix has.
    SubTable pairClasses() {
        const int format1 = valueFormat();
        const int format2 = oneIn(2) ? 0 : valueFormat();
        PairClasses s{wideCoverage(), format1, format2, contextClasses(), contextClasses()};
        const int rows = oneIn(6) ? kClasses - 1 : kClasses;
        const int columns = oneIn(6) ? kClasses - 1 : kClasses;
        s.matrix = several(rows, rows, [&] {
            return several(columns, columns, [&] {
                const Value first = value(format1);
                return std::pair(first, value(format2));
            });
        });
        return s;
    }

    // --- lookups --------------------------------------------------------------------------------

    int flag() {
        if (oneIn(3))
            return 0;
        int flag = 0;
        for (const int bit : {1, 2, 4, 8, 8, 16}) {
            if (oneIn(4))
                flag |= bit;
        }
        return oneIn(4) ? flag | between(1, 3) << 8 : flag;
    }

    SubTable subtable(Kind kind, int type, int callable) {
        const int contextType = kind == Kind::Gsub ? 5 : 7;
        if (type == contextType || type == contextType + 1)
            return context(type > contextType, callable);
        return kind == Kind::Gsub ? substitution(type) : positioning(type);
    }
    Lookup lookup(Kind kind, int type, int callable) {
        Lookup result{type, flag(), oneIn(4)};
        result.subtables = several(1, 2, [&] { return subtable(kind, type, callable); });
        if (result.extension && oneIn(5)) {
            // Subtables of several types in one lookup; the last gives the type.
            result.subtables.insert(result.subtables.begin(),
                                    subtable(kind, between(1, 4), callable));
        }
        return result;
    }

    Layout layout(Kind kind) {
        const std::vector<int> plain =
            kind == Kind::Gsub ? std::vector{1, 2, 3, 4, 4, 8} : std::vector{1, 2, 3, 4, 5, 6};
        const int contextType = kind == Kind::Gsub ? 5 : 7;
        Layout result;
        for (int round = 0; round < 2; ++round) {
            std::vector<int> types = plain;
            shuffle(types);
            for (const int type : types)
                result.lookups.push_back(lookup(kind, type, 0));
        }
        const int simple = count(result.lookups);
        for (int i = 0; i < 5; ++i)
            result.lookups.push_back(lookup(kind, contextType + between(0, 1), simple));
        const int shallow = count(result.lookups);
        for (int i = 0; i < 2; ++i)
            result.lookups.push_back(lookup(kind, contextType + between(0, 1), shallow));
        addFeatures(result);
        return result;
    }

    void addFeatures(Layout& layout) {
        const int lookups = count(layout.lookups);
        LangSys all;
        const auto add = [&](const std::string& name, std::vector<int> list) {
            all.push_back(count(layout.features));
            layout.features.push_back({tagValue(name), std::move(list)});
        };
        for (int i = 0; i < lookups; ++i)
            add("f" + std::to_string(i), {i});
        for (int i = 0; i < 6; ++i)
            add("many", several(1, 4, [&] { return between(0, lookups - 1); }));
        for (const char* const name : {"one", "two", "thr"})
            add(name, several(2, 5, [&] { return between(0, lookups - 1); }));
        for (const char* const script : {"arab", "hebr", "latn"}) {
            shuffle(all);
            // Of the features of one name each script has two.
            LangSys system;
            int many = 0;
            for (const int index : all) {
                if (at(layout.features, index).tag != tagValue("many") || ++many <= 2)
                    system.push_back(index);
            }
            layout.scripts[tagValue(script)][0] = system;
        }
        LangSys some;
        for (const int index : all) {
            if (oneIn(2))
                some.push_back(index);
        }
        layout.scripts[tagValue("latn")][tagValue("TRK ")] = some;
    }

    Rng& rng_;
};

} // namespace

Font randomFont(Rng& rng) {
    return Generator(rng).font();
}

} // namespace KWTest::oracle
