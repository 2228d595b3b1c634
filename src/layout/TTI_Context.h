#pragma once

#include "layout/TTI_ContextRules.h"
#include "layout/TTI_Coverage.h"
#include "layout/TTI_SubTable.h"

#include "common/ByteView.h"

#include <cstdint>
#include <span>
#include <vector>

namespace KWFontService_NS {

// The contexts of GSUB and GPOS alike (OpenType, Sequence Context Formats 1 to 3).

/// Rules of glyphs, by the first glyph. The format is kept and deliberately never matches.
class TTI_ContextFormat1 : public TTI_SubTable {
public:
    bool read(LayoutBudget& budget);

    /// By coverage index.
    TTI_ContextRuleSets ruleSets() const;

protected:
    using TTI_SubTable::TTI_SubTable;
};

/// Rules of classes, by the class of the first glyph.
class TTI_ContextFormat2 : public TTI_SubTable {
public:
    /// Where a rule is that goes on with `nextClass` after its first glyph.
    struct IndexedRule {
        std::uint16_t ruleSet;
        std::uint16_t nextClass;
        std::uint16_t rule;

        auto operator<=>(const IndexedRule&) const = default;
    };

    bool read(LayoutBudget& budget);

    /// Class of a glyph, -1 when it has none.
    int classOf(unsigned short gid, GlyphMemo* memo = nullptr) const;
    /// By class of the first glyph.
    TTI_ContextRuleSets ruleSets() const;
    /// The rules whose first two classes are these, in the order they are tried. A rule of one
    /// input glyph is under no class and so never matches.
    std::span<const IndexedRule> rulesFor(int firstClass, int nextClass) const;
    int matchContext(LayoutCall& call, TTI_LookupRecords& records, const GlyphIDArray& run,
                     int position, unsigned int lookupFlag,
                     std::vector<int>& skipped) const override;

protected:
    using TTI_SubTable::TTI_SubTable;

private:
    std::vector<IndexedRule> index_;
};

/// One rule of coverages. The format is kept and deliberately never matches.
class TTI_ContextFormat3 : public TTI_SubTable {
public:
    bool read(LayoutBudget& budget);

    TTI_CoverageList input() const;
    TTI_LookupRecords records() const;

protected:
    using TTI_SubTable::TTI_SubTable;
};

} // namespace KWFontService_NS
