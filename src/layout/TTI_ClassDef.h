#pragma once

#include "common/ByteView.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace KWFontService_NS {

/// The classes of glyphs (OpenType, Class Definition Table).
class TTI_ClassDef {
public:
    virtual ~TTI_ClassDef() = default;
    /// Class of a glyph, -1 when the table does not list it; the caller decides what that means.
    virtual int classOf(unsigned short gid) const = 0;

    /// Null when the format is neither 1 nor 2. Of a table that is cut off, what it holds counts.
    static std::unique_ptr<TTI_ClassDef> read(KWCommonNS::ByteView table);
};

/// One class for each glyph from a first one on.
class TTI_ClassDefFormat1 final : public TTI_ClassDef {
public:
    explicit TTI_ClassDefFormat1(KWCommonNS::ByteView table);

    /// Always -1: the format is stored and deliberately matches nothing, so that a font that uses
    /// it has no classes.
    int classOf(unsigned short gid) const override;

    std::uint16_t startGlyph() const { return startGlyph_; }
    const std::vector<std::uint16_t>& classes() const { return classes_; }

private:
    std::uint16_t startGlyph_ = 0;
    std::vector<std::uint16_t> classes_;
};

/// One class for each range of glyphs.
class TTI_ClassDefFormat2 final : public TTI_ClassDef {
public:
    explicit TTI_ClassDefFormat2(KWCommonNS::ByteView table);

    int classOf(unsigned short gid) const override;

private:
    struct Range {
        std::uint16_t start;
        std::uint16_t end;
        std::uint16_t glyphClass;
    };
    std::vector<Range> ranges_;
};

} // namespace KWFontService_NS
