#include "LayoutText.h"

#include <algorithm>
#include <iterator>
#include <sstream>

namespace KWTest::oracle {

namespace {

/// Lookups of real fonts have thousands of entries.
constexpr std::size_t kLongest = 3000;

class Printer {
public:
    std::string str() const {
        std::string whole = out_.str();
        if (whole.size() > kLongest)
            whole.resize(kLongest), whole += " ...";
        return whole;
    }

    void operator()(const Unknown&) { out_ << "unknown"; }
    void operator()(const SingleDelta& s) {
        out_ << "single " << s.delta << " on";
        put(s.coverage);
    }
    void operator()(const SingleList& s) {
        out_ << "single";
        each(s.coverage, [&](int i) { out_ << at(s.substitutes, i); });
    }
    void operator()(const Multiple& s) {
        out_ << "multiple";
        each(s.coverage, [&](int i) { put(at(s.sequences, i)); });
    }
    void operator()(const Alternate& s) {
        out_ << "alternate";
        each(s.coverage, [&](int i) { put(at(s.sets, i)); });
    }
    void operator()(const Ligatures& s) {
        out_ << "ligature";
        each(s.coverage, [&](int i) {
            for (const Ligature& ligature : at(s.sets, i)) {
                put(ligature.rest);
                out_ << "=" << ligature.glyph << ' ';
            }
        });
    }
    void operator()(const ReverseChain& s) {
        out_ << "reverse";
        each(s.coverage, [&](int i) { out_ << at(s.substitutes, i); });
        put("before", s.backtrack);
        put("after", s.lookahead);
    }
    void operator()(const ContextGlyphs& s) {
        out_ << (s.chain ? "chain" : "context") << " of glyphs";
        put(s.coverage);
        put(s.sets);
    }
    void operator()(const ContextClasses& s) {
        out_ << "context of classes";
        put(s.coverage);
        put("classes", s.classes);
        put(s.sets);
    }
    void operator()(const ContextCoverages& s) {
        out_ << "context of coverages";
        put("input", s.input);
        put(s.records);
    }
    void operator()(const ChainClasses& s) {
        out_ << "chain of classes";
        put(s.coverage);
        put("backtrack", s.backtrack);
        put("input", s.input);
        put("lookahead", s.lookahead);
        put(s.sets);
    }
    void operator()(const ChainCoverages& s) {
        out_ << "chain of coverages";
        put("backtrack", s.backtrack);
        put("input", s.input);
        put("lookahead", s.lookahead);
        put(s.records);
    }
    void operator()(const SinglePos& s) {
        out_ << "single position, value format " << s.valueFormat;
        each(s.coverage, [&](int i) { put(at(s.values, s.format == 1 ? 0 : i)); });
    }
    void operator()(const PairGlyphs& s) {
        out_ << "pairs, value formats " << s.valueFormat1 << ' ' << s.valueFormat2;
        each(s.coverage, [&](int i) {
            for (const Pair& pair : at(s.sets, i)) {
                out_ << pair.second << ' ';
                put(pair.value1);
                put(pair.value2);
            }
        });
    }
    void operator()(const PairClasses& s) {
        out_ << "pairs of classes, value formats " << s.valueFormat1 << ' ' << s.valueFormat2;
        put(s.coverage);
        put("first", s.classes1);
        put("second", s.classes2);
        for (const auto& row : s.matrix) {
            out_ << "\n      ";
            for (const auto& [first, second] : row) {
                put(first);
                put(second);
                out_ << ' ';
            }
        }
    }
    void operator()(const Cursive& s) {
        out_ << "cursive";
        each(s.coverage, [&](int i) {
            put(at(s.anchors, i).first);
            put(at(s.anchors, i).second);
        });
    }
    void operator()(const MarkAttach& s) {
        out_ << "mark to " << (s.type == 4 ? "base" : "mark");
        put(s.marks, s.markAnchors);
        out_ << "\n      on";
        each(s.bases, [&](int i) { put(at(s.baseAnchors, i)); });
    }
    void operator()(const MarkLigature& s) {
        out_ << "mark to ligature";
        put(s.marks, s.markAnchors);
        out_ << "\n      on";
        each(s.ligatures, [&](int i) {
            for (const AnchorRow& row : at(s.components, i)) {
                put(row);
                out_ << '/';
            }
        });
    }

private:
    template <class Put>
    void each(const Coverage& coverage, Put putIndex) {
        for (const auto& [glyph, index] : coverage.indices) {
            out_ << "  " << glyph << ':';
            putIndex(index);
        }
    }
    void put(const Coverage& coverage) {
        out_ << " {";
        for (const auto& [glyph, index] : coverage.indices)
            out_ << ' ' << glyph;
        out_ << " }";
    }
    void put(const char* name, const std::vector<Coverage>& coverages) {
        out_ << "\n      " << name;
        for (const Coverage& coverage : coverages)
            put(coverage);
    }
    void put(const char* name, const ClassDef& classes) {
        out_ << "\n      " << name << " (format " << classes.format << ')';
        for (const auto& [glyph, number] : classes.classes)
            out_ << ' ' << glyph << ':' << number;
    }
    template <class Number>
    void put(const std::vector<Number>& numbers) {
        out_ << '(';
        for (std::size_t i = 0; i < numbers.size(); ++i)
            out_ << (i > 0 ? " " : "") << numbers[i];
        out_ << ')';
    }
    void put(const std::vector<Record>& records) {
        for (const Record& record : records)
            out_ << " @" << record.sequence << " lookup " << record.lookup;
    }
    void put(const RuleSets& sets) {
        for (std::size_t i = 0; i < sets.size(); ++i) {
            for (const Rule& rule : sets[i]) {
                out_ << "\n      set " << i << ": back";
                put(rule.backtrack);
                out_ << " input";
                put(rule.input);
                out_ << " ahead";
                put(rule.lookahead);
                put(rule.records);
            }
        }
    }
    void put(const Value& value) {
        out_ << '<' << value.xPlacement << ' ' << value.yPlacement << ' ' << value.xAdvance << ' '
             << value.yAdvance << '>';
    }
    void put(const MaybeAnchor& anchor) {
        if (anchor)
            out_ << '[' << anchor->x << ' ' << anchor->y << ']';
        else
            out_ << "[]";
    }
    void put(const AnchorRow& row) {
        for (const MaybeAnchor& anchor : row)
            put(anchor);
    }
    void put(const Coverage& marks, const std::vector<MarkAnchor>& anchors) {
        each(marks, [&](int i) {
            out_ << "class " << at(anchors, i).markClass << ' ';
            put(at(anchors, i).anchor);
        });
    }

    std::ostringstream out_;
};

std::vector<int> calledBy(const SubTable& subtable) {
    std::vector<int> lookups;
    std::visit(
        [&](const auto& s) {
            if constexpr (requires { s.records; }) {
                for (const Record& record : s.records)
                    lookups.push_back(record.lookup);
            } else if constexpr (requires { s.sets.front().front().records; }) {
                for (const auto& set : s.sets) {
                    for (const Rule& rule : set) {
                        for (const Record& record : rule.records)
                            lookups.push_back(record.lookup);
                    }
                }
            }
        },
        subtable);
    return lookups;
}

} // namespace

std::string text(const SubTable& subtable) {
    Printer printer;
    std::visit([&](const auto& s) { printer(s); }, subtable);
    return printer.str();
}

std::string text(const Layout& layout, int lookup, std::set<int>& seen) {
    if (!seen.insert(lookup).second)
        return {};
    const Lookup& l = at(layout.lookups, lookup);
    std::ostringstream out;
    out << "  lookup " << lookup << ": type " << l.type << (l.extension ? " (extension)" : "")
        << ", flag 0x" << std::hex << l.flag << std::dec << '\n';
    std::string others;
    for (const SubTable& subtable : l.subtables) {
        out << "    " << text(subtable) << '\n';
        for (const int called : calledBy(subtable))
            others += text(layout, called, seen);
    }
    return out.str() + others;
}

std::string text(const Run& run) {
    std::ostringstream out;
    for (const Slot& slot : run)
        out << ' ' << slot.glyph << '/' << slot.glyphClass;
    return out.str();
}

std::string text(const std::vector<int>& numbers) {
    std::ostringstream out;
    std::ranges::copy(numbers, std::ostream_iterator<int>(out, " "));
    return out.str();
}

std::string text(const Line& line) {
    std::ostringstream out;
    for (const Placed& p : line) {
        out << "    " << p.slot.glyph << '/' << p.slot.glyphClass << " width " << p.width << " x1 "
            << p.x1 << " x2 " << p.x2 << " y " << p.y << " y2 " << p.y2 << " flag 0x" << std::hex
            << p.flag << std::dec << " skip " << p.skipInfo << " comp " << p.compInfo << " length "
            << p.length << " type " << p.decomposition << " group " << p.joining << " height "
            << p.height << '\n';
    }
    return out.str();
}

} // namespace KWTest::oracle
