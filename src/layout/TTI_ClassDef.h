#pragma once

#include "layout/GlyphMemo.h"
#include "layout/LayoutArrays.h"

#include "common/ByteView.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <variant>

namespace KWFontService_NS {

/// One class for each glyph from a first one on.
class TTI_ClassDefFormat1 {
public:
    explicit TTI_ClassDefFormat1(KWCommonNS::ByteView table);

    /// Always -1: the format is kept and deliberately matches nothing, so that a font that uses it
    /// has no classes.
    int classOf(unsigned short gid) const;

    std::uint16_t startGlyph() const { return startGlyph_; }
    const U16List& classes() const { return classes_; }

private:
    std::uint16_t startGlyph_ = 0;
    U16List classes_;
};

/// One class for each range of glyphs.
class TTI_ClassDefFormat2 {
public:
    explicit TTI_ClassDefFormat2(KWCommonNS::ByteView table);

    int classOf(unsigned short gid) const;
    const GlyphRangeList& ranges() const { return ranges_; }

private:
    GlyphRangeList ranges_;
};

/// The classes of glyphs (OpenType, Class Definition Table), read in place: it is valid as long as
/// the bytes.
class TTI_ClassDef {
public:
    /// Nothing when the format is neither 1 nor 2. Of a table that is cut off, what it holds
    /// counts.
    static std::optional<TTI_ClassDef> read(KWCommonNS::ByteView table);

    /// Class of a glyph, -1 when the table does not list it; the caller decides what that means.
    int classOf(unsigned short gid) const;
    /// Null for another format.
    const TTI_ClassDefFormat1* format1() const {
        return std::get_if<TTI_ClassDefFormat1>(&format_);
    }
    const TTI_ClassDefFormat2* format2() const {
        return std::get_if<TTI_ClassDefFormat2>(&format_);
    }

private:
    using Format = std::variant<TTI_ClassDefFormat1, TTI_ClassDefFormat2>;
    explicit TTI_ClassDef(const Format& format) : format_(format) {}

    Format format_;
};

/// Class of a glyph by the class definition whose offset stands at `field`, -1 without one.
/// @param memo  remembers the answer; null searches anew
int classByDefinition(KWCommonNS::ByteView base, std::size_t field, unsigned short gid,
                      GlyphMemo* memo = nullptr);

} // namespace KWFontService_NS
