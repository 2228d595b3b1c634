#pragma once

#include "common/ByteView.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace KWFontService_NS {

/// The glyphs that a subtable acts on (OpenType, Coverage Table).
class TTI_Coverage {
public:
    virtual ~TTI_Coverage() = default;
    /// Coverage index of a glyph, -1 when it is not covered.
    virtual int coverageIndex(unsigned short gid) const = 0;

    /// Null when the format is neither 1 nor 2. Of a table that is cut off, what it holds counts.
    static std::unique_ptr<TTI_Coverage> read(KWCommonNS::ByteView table);
};

/// A list of glyphs.
class TTI_CoverageFormat1 final : public TTI_Coverage {
public:
    explicit TTI_CoverageFormat1(KWCommonNS::ByteView table);
    int coverageIndex(unsigned short gid) const override;

private:
    std::vector<std::uint16_t> glyphs_;
};

/// A list of glyph ranges.
class TTI_CoverageFormat2 final : public TTI_Coverage {
public:
    explicit TTI_CoverageFormat2(KWCommonNS::ByteView table);
    int coverageIndex(unsigned short gid) const override;

private:
    struct Range {
        std::uint16_t start;
        std::uint16_t end;
        std::uint16_t startCoverageIndex;
    };
    std::vector<Range> ranges_;
};

} // namespace KWFontService_NS
