#pragma once

#include "Bytes.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace KWTest {

/// A glyph and what replaces it.
struct GlyphSubstitution {
    std::uint16_t from = 0;
    std::uint16_t to = 0;
};

/// Coverage table of ascending glyphs, format 1 (list) or 2 (ranges).
Bytes coverageTable(const std::vector<std::uint16_t>& glyphs, int format = 1);

/// One single-substitution subtable. Format 1 stores one delta, so that all pairs must have the
/// same distance; format 2 stores the substitutes.
struct SingleSubst {
    int format = 2;
    std::vector<GlyphSubstitution> pairs{}; // ascending `from`
    int coverageFormat = 1;

    Bytes build() const;
};

/// `GSUB` with one script (its default language system), one feature and one lookup of type 1.
struct SingleSubstGsub {
    std::string_view script = "DFLT";
    std::string_view feature = "vert";
    std::vector<SingleSubst> subtables{};

    /// A `vert` feature with one subtable.
    static SingleSubstGsub vert(std::vector<GlyphSubstitution> pairs, int format = 2);

    Bytes build() const;
};

/// `GDEF` version 1.0 with class definitions as bytes; an absent one has offset 0.
struct Gdef {
    Bytes glyphClassDef{};
    Bytes markAttachClassDef{};

    Bytes build() const;
};

/// ClassDef format 2 of ranges in the order given.
struct ClassRange {
    std::uint16_t start = 0;
    std::uint16_t end = 0;
    std::uint16_t classValue = 0;
};
Bytes classDefFormat2(const std::vector<ClassRange>& ranges);
/// ClassDef format 1: one class for each glyph from `start` on.
Bytes classDefFormat1(std::uint16_t start, const std::vector<std::uint16_t>& classes);

/// A subtable of a `mort` chain: a non-contextual substitution by a lookup table.
struct MortSubtable {
    std::uint16_t coverage = 0x8004; // vertical, non-contextual
    std::uint32_t subFeatureFlags = 1;
    std::uint16_t lookupFormat = 6;
    std::vector<GlyphSubstitution> pairs{}; // ascending `from`
    std::optional<std::uint16_t> nUnits{};
    std::optional<std::uint16_t> length{};

    Bytes build() const;
};

/// A chain of `mort`.
struct MortChain {
    std::uint32_t defaultFlags = 1;
    std::uint16_t featureCount = 1; // feature entries, of 12 bytes each
    std::vector<MortSubtable> subtables{};
    std::optional<std::uint32_t> chainLength{};

    Bytes build() const;
};

/// `mort` (Apple TrueType Reference Manual).
struct Mort {
    std::uint32_t version = 0x00010000;
    std::vector<MortChain> chains{};
    std::optional<std::uint32_t> nChains{};

    /// One chain with the vertical substitution of these pairs.
    static Mort vertical(std::vector<GlyphSubstitution> pairs);

    Bytes build() const;
};

} // namespace KWTest
