#pragma once

#include "layout/FS_GSUBGPOSInfo.h"
#include "layout/GposEngine.h"
#include "layout/LayoutCall.h"
#include "layout/LayoutFixture.h"
#include "layout/TTI_Gdef.h"
#include "support/SfntBuilder.h"

#include <KWFontService17/FS_FontInfo.h>
#include <KWFontService17/GlyphIDPosition.h>

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace KWTest {

using KWFontService_NS::GlyphIDPosition;
using Positions = std::vector<GlyphIDPosition>;

inline GlyphIDPosition positioned(int gid, KWFontService_NS::GlyphClassDef glyphClass, int width) {
    GlyphIDPosition position;
    position.setGlyph(static_cast<unsigned short>(gid), glyphClass, width);
    return position;
}
inline GlyphIDPosition base(int gid, int width = 500) {
    return positioned(gid, KWFontService_NS::GlyphClassDef::Base, width);
}
inline GlyphIDPosition ligature(int gid, int width = 900) {
    return positioned(gid, KWFontService_NS::GlyphClassDef::Ligature, width);
}
inline GlyphIDPosition mark(int gid, int width = 0) {
    return positioned(gid, KWFontService_NS::GlyphClassDef::Mark, width);
}

inline GlyphIDPosition flagged(GlyphIDPosition position, unsigned short bits) {
    position.setFlag(bits);
    return position;
}
inline GlyphIDPosition strict(const GlyphIDPosition& position) {
    return flagged(position, KWFontService_NS::GLYPH_FLAG_LOOKUP_SKIP);
}
inline Positions strict(Positions positions) {
    for (GlyphIDPosition& position : positions)
        position = strict(position);
    return positions;
}
/// With moves of its own, so that a formula that takes the wrong one shows.
inline GlyphIDPosition moved(GlyphIDPosition position, int x1, int x2, int y) {
    position.setMoveX1(x1);
    position.setMoveX2(x2);
    position.setMoveY(y);
    return position;
}

/// Move X1, move X2, move Y, move Y2.
using Moves = std::array<int, 4>;
inline Moves moves(const GlyphIDPosition& position) {
    return {position.getMoveX1(), position.getMoveX2(), position.getMoveY(), position.getMoveY2()};
}

/// What a test font has for positioning.
struct GposFont {
    std::vector<Bytes> lookups{};
    /// With their lookups, for the one script.
    std::vector<std::pair<std::string, std::vector<std::uint16_t>>> features{{"test", {0}}};
    std::string script = "latn";
    Gdef gdef{};
};

/// A font whose lookups are applied to positions.
class Positioner {
public:
    static constexpr int kMiss = -1;

    explicit Positioner(const GposFont& font) {
        std::vector<std::pair<std::string, Bytes>> features;
        std::vector<std::uint16_t> indices;
        for (const auto& [tag, lookups] : font.features) {
            indices.push_back(static_cast<std::uint16_t>(features.size()));
            features.emplace_back(tag, featureTable(lookups));
        }
        const LayoutBytes bytes{.scripts =
                                    scriptList({{font.script, scriptTable(langSysTable(indices))}}),
                                .features = featureList(features),
                                .lookups = lookupList(font.lookups)};
        gpos_.read(bytes.build().vector(), KWFontService_NS::TTI_LayoutTable::Kind::Gpos);
        gdef_.read(viewOf(font.gdef.build()));
        info_ = findLayout(tagValue(font.script), 0, &gdef_, gsub_, gpos_);
    }
    /// One lookup of one subtable.
    Positioner(int lookupType, const Bytes& subtable, int flag = 0)
        : Positioner(GposFont{.lookups = {lookupTable(lookupType, {subtable}, flag)}}) {}
    Positioner(const Positioner&) = delete;
    Positioner& operator=(const Positioner&) = delete;

    /// Applies the first lookup at one index. The index as the lookup left it, or `kMiss`.
    int at(Positions& positions, int index, bool rtl = false) const {
        KWFontService_NS::LayoutCall call(gdef_, positions.size());
        const bool applied = KWFontService_NS::positionAt(call, gpos_.lookups(), *gpos_.lookup(0),
                                                          positions, index, rtl);
        return applied ? index : kMiss;
    }
    /// The same, and the moves of the glyph at the index. A miss has to leave all as it was.
    Moves movesAt(Positions positions, int index, bool rtl = false) const {
        const Positions before = positions;
        if (at(positions, index, rtl) == kMiss) {
            EXPECT_EQ(positions, before);
        }
        return moves(positions[static_cast<std::size_t>(index)]);
    }
    bool byFeature(Positions& positions, int index, bool rtl = false,
                   std::string_view tag = "test") const {
        return KWFontService_NS::FS_FontInfo::processGPOS(&info_, tagValue(tag), positions, index,
                                                          rtl);
    }
    /// Applies an entry of the lookup order to all positions.
    int everywhere(Positions& positions, bool rtl = false, int entry = 0) const {
        return KWFontService_NS::FS_FontInfo::processGPOS3(&info_, entry, positions, rtl);
    }

private:
    KWFontService_NS::TTI_Gdef gdef_;
    KWFontService_NS::TTI_LayoutTable gsub_;
    KWFontService_NS::TTI_LayoutTable gpos_;
    KWFontService_NS::FS_GSUBGPOSInfo info_;
};

/// Of a lookup of marks on single glyphs: what has no anchor, or a class without one, stays.
/// @param under  what the marks go on
inline void expectNullAnchorsAttachNothing(int type, const GlyphIDPosition& under) {
    const std::vector<MarkBytes> marks = {
        {.glyph = 30, .anchor = anchorTable(1, 2)},
        {.glyph = 31, .markClass = 1, .anchor = anchorTable(1, 2)},
        {.glyph = 32, .markClass = 2, .anchor = anchorTable(1, 2)},
        {.glyph = 33}};
    const Positioner font(
        type,
        markBasePos(marks, {{.glyph = under.getGlyphID(), .anchors = {anchorTable(3, 4), {}}}}, 2));
    for (const auto& [gid, applies] :
         {std::pair(30, true), std::pair(31, false), std::pair(32, false), std::pair(33, false)}) {
        Positions positions = {under, mark(gid)};
        EXPECT_EQ(font.at(positions, 1) == 1, applies) << gid;
        EXPECT_EQ(positions[1] == mark(gid), !applies) << gid;
    }
}

} // namespace KWTest
