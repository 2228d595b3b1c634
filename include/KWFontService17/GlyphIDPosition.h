#pragma once

#include <KWFontService17/GlyphIDClassPair.h>

#include <unicode/uchar.h>

#include <cstdint>
#include <type_traits>

namespace KWFontService_NS {

/// Bits of `GlyphIDPosition::getFlag`. The caller sets them to steer positioning; the library
/// clears `GLYPH_FLAG_OUTSIDE_GPOS` and no other.
enum GlyphFlag : std::uint16_t {
    /// The positions come from elsewhere. The next change by `GPOS` first puts the pen back: move
    /// X2 becomes the width, the other moves 0.
    GLYPH_FLAG_OUTSIDE_GPOS = 0x0002,
    /// On a mark: a glyph of width 0 may be its base.
    GLYPH_FLAG_ZERO_WIDTH_BASE = 0x1000,
    /// On a mark: a glyph whose comp info is 1 or more is no base.
    GLYPH_FLAG_SKIP_COMPONENT_BASE = 0x2000,
    /// On the glyph before a mark: skip info is valid, and marks find their ligature component
    /// through it.
    GLYPH_FLAG_COMPONENT_INFO = 0x4000,
    /// Strict mode: lookup flags say which glyphs are passed over, and an attachment replaces the
    /// position instead of adding to it.
    GLYPH_FLAG_LOOKUP_SKIP = 0x8000,
};

/// A positioned glyph, 28 bytes. The caller owns the vectors of them; positioning changes them in
/// place.
///
/// Lengths are 16-bit font units, x growing to the right and y growing downwards. What does not fit
/// 16 bits keeps its low 16. The pen moves by X1, the glyph is drawn, and the pen moves by X2: the
/// advance is X1 + X2.
///
/// A plain value. Readers answer `int`, so that no sum of two of them overflows.
class KWFONTSERVICE_API GlyphIDPosition {
public:
    /// No glyph, every other field 0.
    constexpr GlyphIDPosition() = default;
    /// No glyph, with a length and an advance.
    /// @param length  number of source characters
    /// @param width   advance: the width and move X2
    constexpr GlyphIDPosition(int length, int width)
        : correspondLength_(low16(length)), width_(low16(width)), moveX2_(low16(width)) {}

    // --- the glyph ------------------------------------------------------------------------------

    /// 0xFFFF: no glyph.
    constexpr unsigned short getGlyphID() const { return glyph_.getGlyphID(); }
    constexpr GlyphClassDef getGlyphClassDef() const { return glyph_.getGlyphClassDef(); }
    constexpr const GlyphIDClassPair& getGlyphIDClassPair() const { return glyph_; }
    /// True when the glyph id is other than 0xFFFF.
    constexpr bool hasGlyph() const { return glyph_.hasGlyph(); }
    /// The same as `hasGlyph`.
    constexpr bool hasGlyphInfo() const { return hasGlyph(); }

    // These change the glyph and nothing else, not even the width.
    constexpr void setGlyphID(unsigned short glyphID) { glyph_.setGlyphID(glyphID); }
    constexpr void setGlyphID(unsigned short glyphID, GlyphClassDef glyphClass) {
        glyph_ = GlyphIDClassPair(glyphID, glyphClass);
    }
    constexpr void setGlyphClassDef(GlyphClassDef glyphClass) {
        glyph_.setGlyphClassDef(glyphClass);
    }
    constexpr void setGlyphIDClassPair(const GlyphIDClassPair& glyph) { glyph_ = glyph; }

    /// Puts a glyph here that stands for one character, unpositioned and without flags.
    ///
    /// Decomposition type and joining group stay, and so does the height of a vertical glyph; any
    /// other height becomes 0.
    /// @param width  advance: the width and move X2. Both are 0 for glyph id 0xFFFF
    constexpr void setGlyph(unsigned short glyphID, GlyphClassDef glyphClass, int width);
    /// As `setGlyph`, for a glyph that replaces another: the correspond length stays.
    constexpr void setGlyph2(const GlyphIDClassPair& glyph, int width);
    /// Every field as by default.
    constexpr void clearGlyph() { *this = GlyphIDPosition(); }
    /// As `clearGlyph`, with class -2: a glyph that the caller drops and whose slot stays.
    constexpr void ignoreGlyph();

    // --- the characters behind it ---------------------------------------------------------------

    /// How many source characters the glyph stands for; 0 when it has none of its own.
    constexpr int getCorrespondLength() const { return correspondLength_; }
    constexpr void setCorrespondLength(int length) { correspondLength_ = low16(length); }
    constexpr void addCorrespondLength(int length) {
        correspondLength_ = sum16(correspondLength_, length);
    }
    constexpr void incLength() { addCorrespondLength(1); }
    constexpr void clrLen() { correspondLength_ = 0; }

    /// Decomposition type of the source character. Two uses steer the layout: `U_DT_VERTICAL` is a
    /// glyph set upright in vertical writing, and `U_DT_FINAL` and `U_DT_ISOLATED` end a group of
    /// joined Arabic letters.
    constexpr UDecompositionType getDecompositionType() const {
        return static_cast<UDecompositionType>(decompositionType_);
    }
    constexpr void setDecompositionType(UDecompositionType type) {
        decompositionType_ = low16(static_cast<int>(type));
    }
    /// Carried for the caller.
    constexpr UJoiningGroup getJoiningGroup() const {
        return static_cast<UJoiningGroup>(joiningGroup_);
    }
    constexpr void setJoiningGroup(UJoiningGroup group) {
        joiningGroup_ = low16(static_cast<int>(group));
    }

    // --- the position ---------------------------------------------------------------------------

    /// The glyph's own advance, before positioning. 0 is a mark or the like for `GPOS`.
    constexpr int getWidth() const { return width_; }
    /// Sets the width to 0; the moves stay.
    constexpr void clrWidth() { width_ = 0; }

    /// From the pen to the glyph's origin, in x.
    constexpr int getMoveX1() const { return moveX1_; }
    constexpr void setMoveX1(int x) { moveX1_ = low16(x); }
    constexpr void addMoveX1(int x) { moveX1_ = sum16(moveX1_, x); }
    /// How far the pen goes on once X1 is spent.
    constexpr int getMoveX2() const { return moveX2_; }
    constexpr void setMoveX2(int x) { moveX2_ = low16(x); }
    constexpr void addMoveX2(int x) { moveX2_ = sum16(moveX2_, x); }
    /// The whole advance, X1 + X2.
    constexpr int getMoveX() const { return moveX1_ + moveX2_; }
    /// From the pen to the glyph's origin in y, downwards: OpenType's y placement with its sign
    /// changed.
    constexpr int getMoveY() const { return moveY_; }
    constexpr void setMoveY(int y) { moveY_ = low16(y); }
    /// Adjustment of the vertical advance, y growing downwards.
    constexpr int getMoveY2() const { return moveY2_; }
    constexpr void setMoveY2(int y) { moveY2_ = low16(y); }

    // --- vertical writing -----------------------------------------------------------------------

    /// Vertical advance of a vertical glyph.
    constexpr int getHeight() const { return height_; }
    /// Makes it a vertical glyph: the decomposition type becomes `U_DT_VERTICAL`.
    constexpr void setVertGlyph(int height);
    /// True for a vertical glyph, unless it is to be treated as in horizontal writing.
    constexpr bool isVert(bool horizontal) const {
        return decompositionType_ == U_DT_VERTICAL && !horizontal;
    }

    // The same readers for a caller that sets vertical lines. Where `isVert(horizontal)` is false
    // each answers as its plain namesake.

    /// Along the line, from the pen to the glyph: move Y, or minus the height at width 0.
    constexpr int getMoveX1V(bool horizontal) const;
    /// Along the line, how far the pen goes on: what is left of the height (of the width when that
    /// is not 0 and the height not above 0) after move Y2 and move Y.
    constexpr int getMoveX2V(bool horizontal) const;
    /// getMoveX1V + getMoveX2V.
    constexpr int getMoveXV(bool horizontal) const;
    /// Across the line: move X1, or half the height at width 0, cut toward zero.
    constexpr int getMoveY1V(bool horizontal) const;
    /// The glyph's own advance along the line: the height when it is above 0 and the width is not
    /// 0, else the width.
    constexpr int getWidthV(bool horizontal) const;

    // --- what steers positioning ----------------------------------------------------------------

    /// Bits of `GlyphFlag`.
    constexpr unsigned short getFlag() const { return flag_; }
    /// Sets bits and clears none; `setGlyph`, `clearGlyph` and `ignoreGlyph` clear them all.
    constexpr void setFlag(unsigned short bits) {
        flag_ = static_cast<std::uint16_t>(flag_ | bits);
    }

    /// `GlyphIDArray2::skipInfo` of the glyph. Mark to ligature takes it as the number of the
    /// component, from 1, that a mark belongs to.
    constexpr int getSkipInfo() const { return skipInfo_; }
    constexpr void setSkipInfo(int info) { skipInfo_ = low16(info); }
    /// The caller's count of ligature components; mark to base reads it.
    constexpr int getCompInfo() const { return compInfo_; }
    constexpr void setCompInfo(int info) { compInfo_ = low16(info); }

    friend constexpr bool operator==(const GlyphIDPosition&, const GlyphIDPosition&) = default;

private:
    friend class GlyphPlacement;

    static constexpr std::int16_t low16(int value) {
        return static_cast<std::int16_t>(static_cast<std::uint16_t>(value));
    }
    /// Unsigned, so that no sum overflows.
    static constexpr std::int16_t sum16(int a, int b) {
        return static_cast<std::int16_t>(static_cast<std::uint16_t>(static_cast<unsigned int>(a) +
                                                                    static_cast<unsigned int>(b)));
    }

    void clearOutsideGPOSInfo();
    void addPosition(int x1, int y, int x2, int y2);
    void addPosition2(int x1, int y, int x2, int y2);

    // The order is part of the interface.
    std::int16_t correspondLength_ = 0;
    std::int16_t width_ = 0;
    std::int16_t moveX1_ = 0;
    std::int16_t moveX2_ = 0;
    std::int16_t moveY_ = 0;
    std::uint16_t flag_ = 0;
    GlyphIDClassPair glyph_;
    std::int16_t decompositionType_ = U_DT_NONE;
    std::int16_t joiningGroup_ = U_JG_NO_JOINING_GROUP;
    std::int16_t height_ = 0;
    std::int16_t moveY2_ = 0;
    std::int16_t skipInfo_ = 0;
    std::int16_t compInfo_ = 0;
};
static_assert(sizeof(GlyphIDPosition) == 28);
static_assert(std::is_trivially_copyable_v<GlyphIDPosition>);

constexpr void GlyphIDPosition::setGlyph(unsigned short glyphID, GlyphClassDef glyphClass,
                                         int width) {
    correspondLength_ = 1;
    setGlyph2(GlyphIDClassPair(glyphID, glyphClass), width);
}

constexpr void GlyphIDPosition::setGlyph2(const GlyphIDClassPair& glyph, int width) {
    width_ = glyph.hasGlyph() ? low16(width) : std::int16_t{0};
    moveX1_ = 0;
    moveX2_ = width_;
    moveY_ = 0;
    flag_ = 0;
    glyph_ = glyph;
    if (decompositionType_ != U_DT_VERTICAL)
        height_ = 0;
    moveY2_ = 0;
    skipInfo_ = 0;
    compInfo_ = 0;
}

constexpr void GlyphIDPosition::ignoreGlyph() {
    clearGlyph();
    glyph_.ignore();
}

constexpr void GlyphIDPosition::setVertGlyph(int height) {
    height_ = low16(height);
    setDecompositionType(U_DT_VERTICAL);
}

constexpr int GlyphIDPosition::getMoveX1V(bool horizontal) const {
    if (!isVert(horizontal))
        return moveX1_;
    return width_ == 0 ? -height_ : moveY_;
}

constexpr int GlyphIDPosition::getMoveX2V(bool horizontal) const {
    if (!isVert(horizontal))
        return moveX2_;
    const int advance = width_ == 0 || height_ > 0 ? height_ : width_;
    return advance - moveY2_ - moveY_;
}

constexpr int GlyphIDPosition::getMoveXV(bool horizontal) const {
    return getMoveX1V(horizontal) + getMoveX2V(horizontal);
}

constexpr int GlyphIDPosition::getMoveY1V(bool horizontal) const {
    if (!isVert(horizontal))
        return moveY_;
    return width_ == 0 ? height_ / 2 : moveX1_;
}

constexpr int GlyphIDPosition::getWidthV(bool horizontal) const {
    return isVert(horizontal) && width_ != 0 && height_ > 0 ? height_ : width_;
}

} // namespace KWFontService_NS
