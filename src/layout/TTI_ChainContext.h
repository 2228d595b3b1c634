#pragma once

#include "layout/TTI_ContextRules.h"
#include "layout/TTI_Coverage.h"
#include "layout/TTI_SubTable.h"

#include "common/ByteView.h"

namespace KWFontService_NS {

// The chain contexts of GSUB and GPOS alike (OpenType, Chained Sequence Context Formats 1 to 3).
// Rules are tried one after the other; no index of them is kept.

/// Rules of glyphs, by the first glyph. The format is kept and deliberately never matches.
class TTI_ChainContextFormat1 : public TTI_SubTable {
public:
    bool read(LayoutBudget& budget);

    /// By coverage index.
    TTI_ChainContextRuleSets ruleSets() const;

protected:
    using TTI_SubTable::TTI_SubTable;
};

/// Rules of classes, by the class of the first glyph. Each of the three parts of a rule has classes
/// of its own; a glyph that has none is -1.
class TTI_ChainContextFormat2 : public TTI_SubTable {
public:
    bool read(LayoutBudget& budget);

    int backtrackClassOf(unsigned short gid, GlyphMemo* memo = nullptr) const;
    int inputClassOf(unsigned short gid, GlyphMemo* memo = nullptr) const;
    int lookaheadClassOf(unsigned short gid, GlyphMemo* memo = nullptr) const;
    /// By input class of the first glyph.
    TTI_ChainContextRuleSets ruleSets() const;
    int matchContext(LayoutCall& call, TTI_LookupRecords& records, const GlyphIDArray& run,
                     int position, unsigned int lookupFlag,
                     std::vector<int>& skipped) const override;

protected:
    using TTI_SubTable::TTI_SubTable;
};

/// One rule of coverages.
class TTI_ChainContextFormat3 : public TTI_SubTable {
public:
    struct Rule {
        /// From the glyph before the first one backwards, as in the file.
        TTI_CoverageList backtrack;
        /// The first glyph included.
        TTI_CoverageList input;
        TTI_CoverageList lookahead;
        TTI_LookupRecords records;
    };

    /// A rule without input, which the file format does not forbid, has a digest of all glyphs.
    bool read(LayoutBudget& budget);

    Rule rule() const;
    bool isFilterable() const override { return true; }
    bool startsWith(unsigned short gid) const override;
    bool mayGoOnWith(unsigned short gid) const override;
    int matchContext(LayoutCall& call, TTI_LookupRecords& records, const GlyphIDArray& run,
                     int position, unsigned int lookupFlag,
                     std::vector<int>& skipped) const override;

protected:
    using TTI_SubTable::TTI_SubTable;
};

} // namespace KWFontService_NS
