#pragma once

#include <KWFontService17/FS_Types.h>

#include <cstdint>

namespace KWFontService_NS {

/// One glyph of a run: its id and its class, in four bytes.
class KWFONTSERVICE_API GlyphIDClassPair {
public:
    /// No glyph: id 0xFFFF, class -1.
    constexpr GlyphIDClassPair() = default;
    constexpr GlyphIDClassPair(unsigned short glyphID, GlyphClassDef glyphClass)
        : glyphID_(glyphID), glyphClass_(glyphClass) {}

    /// 0xFFFF: no glyph.
    constexpr unsigned short getGlyphID() const { return glyphID_; }
    constexpr GlyphClassDef getGlyphClassDef() const { return glyphClass_; }
    /// True when the id is other than 0xFFFF, whatever the class.
    constexpr bool hasGlyph() const { return glyphID_ != FS_NO_GLYPH; }

    /// Sets the id alone; the class stays.
    constexpr void setGlyphID(unsigned short glyphID) { glyphID_ = glyphID; }
    /// Sets the class alone; the id stays.
    constexpr void setGlyphClassDef(GlyphClassDef glyphClass) { glyphClass_ = glyphClass; }

    /// Makes it as by default: no glyph, class -1.
    constexpr void clear() { *this = GlyphIDClassPair(); }
    /// Makes it no glyph of class -2: one that the caller has dropped and whose slot stays.
    constexpr void ignore() { *this = GlyphIDClassPair(FS_NO_GLYPH, GlyphClassDef::Ignored); }

    friend constexpr bool operator==(const GlyphIDClassPair&, const GlyphIDClassPair&) = default;

private:
    std::uint16_t glyphID_ = FS_NO_GLYPH;
    GlyphClassDef glyphClass_ = GlyphClassDef::Unknown;
};
static_assert(sizeof(GlyphIDClassPair) == 4);

} // namespace KWFontService_NS
