#pragma once

#include "layout/GPOS_Anchor.h"
#include "layout/TTI_SubTable.h"

#include "common/ByteView.h"

#include <optional>

namespace KWFontService_NS {

/// What the three kinds of mark attachment share: marks, and the glyphs that they go on, each with
/// a coverage and an array of anchors.
class GPOS_MarkAttachment : public TTI_SubTable {
public:
    bool read(LayoutBudget& budget);

    /// Nothing when the glyph is not covered as the mark that is moved or has no anchor.
    std::optional<GPOS_Mark> mark(unsigned short gid, GlyphMemo* memo = nullptr) const;

protected:
    explicit GPOS_MarkAttachment(KWCommonNS::ByteView table) : TTI_SubTable(table) {}

    /// Index in `targets` of a glyph that marks go on; -1 when it is not covered as one.
    int targetIndex(unsigned short gid, GlyphMemo* memo) const;
    KWCommonNS::ByteView targets() const;
    /// Anchors with a column for each class of marks.
    GPOS_AnchorMatrix anchors(KWCommonNS::ByteView matrix) const;
    /// Where `targets` is one matrix: the anchor of a glyph for marks of a class.
    std::optional<GPOS_Anchor> targetAnchor(unsigned short gid, unsigned int markClass,
                                            GlyphMemo* memo) const;
};

} // namespace KWFontService_NS
