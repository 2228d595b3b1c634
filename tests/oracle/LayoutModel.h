#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

/// The rules of text layout, stated a second time: plain and slow, and sharing nothing with the
/// library but the bytes of a font.
namespace KWTest::oracle {

using Glyph = std::uint16_t;
using Tag = std::uint32_t;

inline constexpr Glyph kNone = 0xFFFF;

/// An element of a list, by a signed index. Out of range is a mistake of the caller and throws.
template <class T>
const T& at(const std::vector<T>& list, int index) {
    return list.at(static_cast<std::size_t>(index));
}
template <class T>
T& at(std::vector<T>& list, int index) {
    return list.at(static_cast<std::size_t>(index));
}
/// Null out of range.
template <class T>
const T* find(const std::vector<T>& list, int index) {
    return index >= 0 && static_cast<std::size_t>(index) < list.size() ? &at(list, index) : nullptr;
}
template <class T>
int count(const std::vector<T>& list) {
    return static_cast<int>(list.size());
}

// --- what tables are made of --------------------------------------------------------------------

struct Coverage {
    std::map<Glyph, int> indices{};

    /// -1 when the glyph is not covered.
    int operator()(Glyph glyph) const {
        const auto found = indices.find(glyph);
        return found == indices.end() ? -1 : found->second;
    }
    bool has(Glyph glyph) const { return (*this)(glyph) >= 0; }

    bool operator==(const Coverage&) const = default;
};

struct ClassDef {
    int format = 0; // 0: there is none
    std::map<Glyph, int> classes{};

    /// -1 when no range has the glyph; nothing is found in format 1.
    int operator()(Glyph glyph) const {
        const auto found = classes.find(glyph);
        return format != 2 || found == classes.end() ? -1 : found->second;
    }

    bool operator==(const ClassDef&) const = default;
};

struct Record {
    int sequence = 0;
    int lookup = 0;

    bool operator==(const Record&) const = default;
};

/// Of glyphs or of classes; a plain context has neither backtrack nor lookahead.
struct Rule {
    std::vector<int> backtrack{}; // the nearest first
    std::vector<int> input{};     // after the first
    std::vector<int> lookahead{};
    std::vector<Record> records{};

    bool operator==(const Rule&) const = default;
};
using RuleSets = std::vector<std::vector<Rule>>;

struct Value {
    int xPlacement = 0;
    int yPlacement = 0;
    int xAdvance = 0;
    int yAdvance = 0;

    bool operator==(const Value&) const = default;
};

struct Anchor {
    int x = 0;
    int y = 0;

    bool operator==(const Anchor&) const = default;
};
using MaybeAnchor = std::optional<Anchor>;

// --- GSUB ---------------------------------------------------------------------------------------

struct SingleDelta {
    Coverage coverage{};
    int delta = 0;

    bool operator==(const SingleDelta&) const = default;
};
struct SingleList {
    Coverage coverage{};
    std::vector<Glyph> substitutes{};

    bool operator==(const SingleList&) const = default;
};
struct Multiple {
    Coverage coverage{};
    std::vector<std::vector<Glyph>> sequences{};

    bool operator==(const Multiple&) const = default;
};
struct Alternate {
    Coverage coverage{};
    std::vector<std::vector<Glyph>> sets{};

    bool operator==(const Alternate&) const = default;
};
struct Ligature {
    Glyph glyph = 0;
    std::vector<Glyph> rest{}; // the components after the first

    bool operator==(const Ligature&) const = default;
};
struct Ligatures {
    Coverage coverage{};
    std::vector<std::vector<Ligature>> sets{};

    bool operator==(const Ligatures&) const = default;
};
struct ReverseChain {
    Coverage coverage{};
    std::vector<Coverage> backtrack{};
    std::vector<Coverage> lookahead{};
    std::vector<Glyph> substitutes{};

    bool operator==(const ReverseChain&) const = default;
};

// --- contexts -----------------------------------------------------------------------------------

/// Format 1 of contexts and of chains.
struct ContextGlyphs {
    bool chain = false;
    Coverage coverage{};
    RuleSets sets{};

    bool operator==(const ContextGlyphs&) const = default;
};
/// Format 2 of contexts.
struct ContextClasses {
    Coverage coverage{};
    ClassDef classes{};
    RuleSets sets{};

    bool operator==(const ContextClasses&) const = default;
};
/// Format 3 of contexts.
struct ContextCoverages {
    std::vector<Coverage> input{};
    std::vector<Record> records{};

    bool operator==(const ContextCoverages&) const = default;
};
/// Format 2 of chains.
struct ChainClasses {
    Coverage coverage{};
    ClassDef backtrack{};
    ClassDef input{};
    ClassDef lookahead{};
    RuleSets sets{};

    bool operator==(const ChainClasses&) const = default;
};
/// Format 3 of chains.
struct ChainCoverages {
    std::vector<Coverage> backtrack{};
    std::vector<Coverage> input{};
    std::vector<Coverage> lookahead{};
    std::vector<Record> records{};

    bool operator==(const ChainCoverages&) const = default;
};

// --- GPOS ---------------------------------------------------------------------------------------

struct SinglePos {
    int format = 1; // in format 1 one value serves all glyphs
    Coverage coverage{};
    int valueFormat = 0;
    std::vector<Value> values{};

    bool operator==(const SinglePos&) const = default;
};
struct Pair {
    Glyph second = 0;
    Value value1{};
    Value value2{};

    bool operator==(const Pair&) const = default;
};
struct PairGlyphs {
    Coverage coverage{};
    int valueFormat1 = 0;
    int valueFormat2 = 0;
    std::vector<std::vector<Pair>> sets{};

    bool operator==(const PairGlyphs&) const = default;
};
struct PairClasses {
    Coverage coverage{};
    int valueFormat1 = 0;
    int valueFormat2 = 0;
    ClassDef classes1{};
    ClassDef classes2{};
    std::vector<std::vector<std::pair<Value, Value>>> matrix{}; // by class 1, then by class 2

    bool operator==(const PairClasses&) const = default;
};
struct Cursive {
    Coverage coverage{};
    std::vector<std::pair<MaybeAnchor, MaybeAnchor>> anchors{}; // entry, exit

    bool operator==(const Cursive&) const = default;
};
struct MarkAnchor {
    int markClass = 0;
    MaybeAnchor anchor{};

    bool operator==(const MarkAnchor&) const = default;
};
/// By class of marks.
using AnchorRow = std::vector<MaybeAnchor>;
/// Marks on bases (type 4) and marks on marks (type 6).
struct MarkAttach {
    int type = 4;
    Coverage marks{};
    Coverage bases{};
    int classCount = 0;
    std::vector<MarkAnchor> markAnchors{};
    std::vector<AnchorRow> baseAnchors{};

    bool operator==(const MarkAttach&) const = default;
};
struct MarkLigature {
    Coverage marks{};
    Coverage ligatures{};
    int classCount = 0;
    std::vector<MarkAnchor> markAnchors{};
    std::vector<std::vector<AnchorRow>> components{}; // by ligature, then by component

    bool operator==(const MarkLigature&) const = default;
};

// --- tables -------------------------------------------------------------------------------------

/// A subtable of a type or format that does not exist.
struct Unknown {
    bool operator==(const Unknown&) const = default;
};

using SubTable =
    std::variant<Unknown, SingleDelta, SingleList, Multiple, Alternate, Ligatures, ReverseChain,
                 ContextGlyphs, ContextClasses, ContextCoverages, ChainClasses, ChainCoverages,
                 SinglePos, PairGlyphs, PairClasses, Cursive, MarkAttach, MarkLigature>;

enum class Kind { Gsub, Gpos };

/// The lookup type of a subtable, 0 for an unknown one.
int typeOf(const SubTable& subtable, Kind kind);

struct Lookup {
    int type = 0; // that of the last subtable if the subtables are wrapped
    int flag = 0;
    bool extension = false;
    std::vector<SubTable> subtables{};

    bool operator==(const Lookup&) const = default;
};

struct Feature {
    Tag tag = 0;
    std::vector<int> lookups{};

    bool operator==(const Feature&) const = default;
};

/// Indices of features.
using LangSys = std::vector<int>;

struct Layout {
    std::map<Tag, std::map<Tag, LangSys>> scripts{}; // language 0 is the default
    std::vector<Feature> features{};
    std::vector<Lookup> lookups{};

    bool operator==(const Layout&) const = default;
};

/// Feature and lookup of every lookup of a language system, ascending by lookup.
std::vector<std::pair<Tag, int>> lookupOrder(const Layout& layout, const LangSys& system);

struct Font {
    ClassDef glyphClasses{};
    ClassDef markAttachClasses{};
    Layout gsub{};
    Layout gpos{};

    bool operator==(const Font&) const = default;
};

/// What a font is asked with; null where it has no such script or language.
struct Handle {
    const Font* font = nullptr;
    Tag script = 0;
    const LangSys* gsub = nullptr;
    const LangSys* gpos = nullptr;
};
Handle findHandle(const Font& font, Tag script, Tag language);

} // namespace KWTest::oracle
