#include "layout/LayoutCall.h"

#include "layout/TTI_Gdef.h"

#include "common/KWLimits.h"

#include <KWFontService17/GlyphIDPosition.h>

namespace KWFontService_NS {

const int LayoutCall::kMaxNesting = KWCommonNS::kMaxLayoutNesting;

LayoutCall::LayoutCall(const TTI_Gdef& gdef, std::size_t glyphs, const GlyphMemo& memo)
    : gdef_(gdef), left_(KWCommonNS::kLayoutFreeSteps + KWCommonNS::kLayoutStepsOfAGlyph * glyphs),
      maxGlyphs_(KWCommonNS::kLayoutFreeGlyphs + KWCommonNS::kLayoutGrowth * glyphs), memo_(memo) {}

GlyphIDClassPair LayoutCall::glyph(unsigned short gid) const {
    return {gid, gdef_.classOf(gid)};
}

bool LayoutCall::passesOverByClass(unsigned int lookupFlag, const GlyphIDClassPair& glyph) const {
    const GlyphClassDef glyphClass = glyph.getGlyphClassDef();
    if (((lookupFlag & kIgnoreBaseGlyphs) != 0 && glyphClass == GlyphClassDef::Base) ||
        ((lookupFlag & kIgnoreLigatures) != 0 && glyphClass == GlyphClassDef::Ligature) ||
        ((lookupFlag & kIgnoreMarks) != 0 && glyphClass == GlyphClassDef::Mark))
        return true;
    const unsigned int wanted = (lookupFlag & kMarkAttachmentTypeMask) >> kMarkAttachmentTypeShift;
    if (wanted == 0)
        return false;
    const int attachClass = gdef_.markAttachClassOf(glyph.getGlyphID());
    if (attachClass == -1)
        return glyphClass == GlyphClassDef::Mark;
    return attachClass != static_cast<int>(wanted);
}

const GlyphIDArray& LayoutCall::runOf(const std::vector<GlyphIDPosition>& positions) {
    if (static_cast<std::size_t>(run_.size()) != positions.size()) {
        run_.clear();
        for (const GlyphIDPosition& position : positions)
            run_.push_back(position.getGlyphIDClassPair());
    }
    return run_;
}

} // namespace KWFontService_NS
