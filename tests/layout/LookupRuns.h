#pragma once

#include "layout/GposEngine.h"
#include "layout/GsubEngine.h"
#include "layout/LayoutCall.h"
#include "layout/TTI_LookupList.h"

#include <KWFontService17/GlyphIDPosition.h>

#include <cstddef>
#include <vector>

namespace KWTest {

/// Applies lookups to a run of glyphs in every way there is, for what they touch and not for what
/// comes out. One budget of work serves for all of it.
class LookupRuns {
public:
    LookupRuns(const KWFontService_NS::TTI_Gdef& gdef, std::vector<unsigned short> glyphs)
        : call_(gdef, glyphs.size()), glyphs_(std::move(glyphs)) {}

    void apply(const KWFontService_NS::TTI_LookupList& lookups,
               const KWFontService_NS::TTI_Lookup& lookup,
               KWFontService_NS::TTI_LookupList::Kind kind) {
        if (kind == KWFontService_NS::TTI_LookupList::Kind::Gsub)
            substitute(lookups, lookup);
        else
            position(lookups, lookup);
    }
    /// How often a lookup applied.
    std::size_t applied() const { return applied_; }

private:
    void substitute(const KWFontService_NS::TTI_LookupList& lookups,
                    const KWFontService_NS::TTI_Lookup& lookup) {
        using namespace KWFontService_NS;
        GsubEngine engine(call_, lookups);
        GlyphIDArray run;
        for (std::size_t i = 0; i < glyphs_.size(); ++i)
            run.push_back(glyphs_[i], classAt(i));
        for (int i = 0; i < run.size(); ++i) {
            GlyphIDArray out;
            GlyphIDArray skipped;
            int position = i;
            applied_ +=
                engine.substituteAt(lookup, run, position, out, skipped, 2).applies ? 1U : 0U;
        }
        std::vector<int> words(glyphs_.size(), 1);
        std::vector<int> mask(glyphs_.size(), 0);
        applied_ += engine.substituteRun(lookup, {run, words, mask}, 1) ? 1U : 0U;
    }
    void position(const KWFontService_NS::TTI_LookupList& lookups,
                  const KWFontService_NS::TTI_Lookup& lookup) {
        for (const bool strict : {false, true}) {
            for (const bool rtl : {false, true}) {
                auto positions = positionsFor(strict);
                for (int i = 0; i < static_cast<int>(positions.size()); ++i)
                    applied_ += positionAt(call_, lookups, lookup, positions, i, rtl) ? 1U : 0U;
            }
        }
    }
    static KWFontService_NS::GlyphClassDef classAt(std::size_t index) {
        return static_cast<KWFontService_NS::GlyphClassDef>(1 + index % 3);
    }
    std::vector<KWFontService_NS::GlyphIDPosition> positionsFor(bool strict) const {
        using namespace KWFontService_NS;
        std::vector<GlyphIDPosition> positions(glyphs_.size());
        for (std::size_t i = 0; i < positions.size(); ++i) {
            const GlyphClassDef glyphClass = classAt(i);
            positions[i].setGlyph(glyphs_[i], glyphClass,
                                  glyphClass == GlyphClassDef::Mark ? 0 : 32767);
            positions[i].setSkipInfo(static_cast<int>(i) - 1);
            positions[i].setCompInfo(static_cast<int>(i % 2));
            // All flags come up, in all their combinations over a run of 16.
            positions[i].setFlag(
                static_cast<unsigned short>((i % 2 == 0 ? GLYPH_FLAG_COMPONENT_INFO : 0) |
                                            (i / 2 % 2 == 0 ? GLYPH_FLAG_ZERO_WIDTH_BASE : 0) |
                                            (i / 4 % 2 == 0 ? GLYPH_FLAG_SKIP_COMPONENT_BASE : 0) |
                                            (i / 8 % 2 == 0 ? GLYPH_FLAG_OUTSIDE_GPOS : 0) |
                                            (strict ? GLYPH_FLAG_LOOKUP_SKIP : 0)));
        }
        return positions;
    }

    KWFontService_NS::LayoutCall call_;
    std::vector<unsigned short> glyphs_;
    std::size_t applied_ = 0;
};

} // namespace KWTest
