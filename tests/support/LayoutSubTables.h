#pragma once

#include "Bytes.h"
#include "LayoutTables.h"

#include <concepts>
#include <cstdint>
#include <utility>
#include <vector>

namespace KWTest {

/// A table of numbers and of offsets from its start to objects, which follow it in the order they
/// are named.
class OffsetTable {
public:
    OffsetTable& u16(std::integral auto value) {
        head_.u16(value);
        return *this;
    }
    OffsetTable& u16s(const std::vector<std::uint16_t>& values) {
        head_.u16s(values);
        return *this;
    }
    OffsetTable& bytes(const Bytes& bytes) {
        head_.bytes(bytes);
        return *this;
    }
    /// An empty object has offset 0.
    OffsetTable& offset(const Bytes& object);
    OffsetTable& offsets(const std::vector<Bytes>& objects);
    /// The number of the objects, then their offsets.
    OffsetTable& counted(const std::vector<Bytes>& objects);

    Bytes build() const;

private:
    struct Object {
        std::size_t field;
        Bytes bytes;
    };
    Bytes head_;
    std::vector<Object> objects_;
};

// --- GSUB ---------------------------------------------------------------------------------------

/// What replaces or may replace each glyph, ascending by glyph. Multiple and alternate
/// substitution have the same layout.
Bytes glyphSets(const std::vector<std::pair<std::uint16_t, std::vector<std::uint16_t>>>& sets,
                int coverageFormat = 1);

struct LigatureBytes {
    std::uint16_t glyph = 0;
    std::vector<std::uint16_t> components{}; // after the first

    Bytes build() const;
};
/// The ligatures of each first glyph, ascending by it.
Bytes ligatureSubst(
    const std::vector<std::pair<std::uint16_t, std::vector<LigatureBytes>>>& ligatureSets);

// --- contexts -----------------------------------------------------------------------------------

/// A rule, of glyphs or of classes; a plain context has input and records alone.
struct RuleBytes {
    std::vector<std::uint16_t> backtrack{};
    std::vector<std::uint16_t> input{}; // after the first
    std::vector<std::uint16_t> lookahead{};
    std::vector<std::pair<std::uint16_t, std::uint16_t>> records{}; // sequence index, lookup

    Bytes context() const;
    Bytes chain() const;
};
/// Rule sets in their order; an empty set has offset 0.
using RuleSetBytes = std::vector<std::vector<RuleBytes>>;

Bytes contextFormat1(const std::vector<std::uint16_t>& glyphs, const RuleSetBytes& ruleSets);
Bytes contextFormat2(const std::vector<std::uint16_t>& glyphs, const Bytes& classDef,
                     const RuleSetBytes& classSets);
/// The lists of glyphs are what each coverage holds.
using CoverageBytes = std::vector<std::vector<std::uint16_t>>;
Bytes contextFormat3(const CoverageBytes& input,
                     const std::vector<std::pair<std::uint16_t, std::uint16_t>>& records);
Bytes chainContextFormat1(const std::vector<std::uint16_t>& glyphs, const RuleSetBytes& ruleSets);
Bytes chainContextFormat2(const std::vector<std::uint16_t>& glyphs, const Bytes& backtrackClasses,
                          const Bytes& inputClasses, const Bytes& lookaheadClasses,
                          const RuleSetBytes& classSets);
Bytes chainContextFormat3(const CoverageBytes& backtrack, const CoverageBytes& input,
                          const CoverageBytes& lookahead,
                          const std::vector<std::pair<std::uint16_t, std::uint16_t>>& records);
Bytes reverseChaining(const std::vector<GlyphSubstitution>& pairs, const CoverageBytes& backtrack,
                      const CoverageBytes& lookahead);

// --- GPOS ---------------------------------------------------------------------------------------

/// @param words  the packed deltas
Bytes deviceTable(int startSize, int endSize, int deltaFormat,
                  const std::vector<std::uint16_t>& words);

Bytes anchorTable(int x, int y);
Bytes anchorFormat2(int x, int y, int anchorPoint);
Bytes anchorFormat3(int x, int y, const Bytes& xDevice, const Bytes& yDevice);

// A value is its fields in the order of the value format's bits.
using ValueBytes = std::vector<int>;

Bytes singlePosFormat1(const std::vector<std::uint16_t>& glyphs, int valueFormat,
                       const ValueBytes& value);
Bytes singlePosFormat2(const std::vector<std::uint16_t>& glyphs, int valueFormat,
                       const std::vector<ValueBytes>& values);

struct PairBytes {
    std::uint16_t second = 0;
    ValueBytes value1{};
    ValueBytes value2{};
};
Bytes pairSet(const std::vector<PairBytes>& pairs);
Bytes pairPosFormat1(int valueFormat1, int valueFormat2,
                     const std::vector<std::pair<std::uint16_t, std::vector<PairBytes>>>& sets);
/// @param matrix  the fields of all values, by class 1, then by class 2
Bytes pairPosFormat2(const std::vector<std::uint16_t>& glyphs, int valueFormat1, int valueFormat2,
                     const Bytes& classDef1, const Bytes& classDef2, int class1Count,
                     int class2Count, const ValueBytes& matrix);

struct CursiveBytes {
    std::uint16_t glyph = 0;
    Bytes entry{};
    Bytes exit{};
};
Bytes cursivePos(const std::vector<CursiveBytes>& glyphs);

struct MarkBytes {
    std::uint16_t glyph = 0;
    int markClass = 0;
    Bytes anchor{};
};
/// A base glyph, or a mark that others go on, with an anchor for each class of marks.
struct BaseBytes {
    std::uint16_t glyph = 0;
    std::vector<Bytes> anchors{};
};
/// Marks on base glyphs and marks on marks have the same layout.
Bytes markBasePos(const std::vector<MarkBytes>& marks, const std::vector<BaseBytes>& bases,
                  int classCount);
/// A ligature, with an anchor for each class of marks for each component.
struct LigatureAnchorBytes {
    std::uint16_t glyph = 0;
    std::vector<std::vector<Bytes>> components{};
};
Bytes markLigPos(const std::vector<MarkBytes>& marks,
                 const std::vector<LigatureAnchorBytes>& ligatures, int classCount);

} // namespace KWTest
