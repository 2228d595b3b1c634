#pragma once

#include "Bytes.h"

#include <KWFontService17/FS_MathConstants.h>

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace KWTest {

/// The constants that are not 0, percentages and font units.
using MathConstants = std::map<KWFontService_NS::FS_MATHConstants, int>;
Bytes mathConstantsTable(const MathConstants& constants);

struct ItalicsCorrection {
    std::uint16_t glyph = 0;
    std::int16_t value = 0;
};

/// `MathGlyphInfo` with italics corrections, or with nothing at all.
struct MathGlyphInfo {
    std::vector<ItalicsCorrection> italicsCorrections{}; // ascending `glyph`
    int coverageFormat = 1;

    Bytes build() const;
};

struct MathVariant {
    std::uint16_t glyph = 0;
    std::uint16_t advance = 0;
};

struct MathConstruction {
    std::uint16_t glyph = 0; // the one that the variants stand for
    std::vector<MathVariant> variants{};
    bool hasAssembly = false; // of one part, glyph 6

    Bytes build() const;
};

/// `MathVariants`. A direction without constructions has no coverage.
struct MathVariants {
    std::vector<MathConstruction> vertical{}; // ascending `glyph`
    std::vector<MathConstruction> horizontal{};
    int coverageFormat = 1;

    Bytes build() const;
};

/// `MATH` version 1.0; what is left out has offset 0.
struct Math {
    std::optional<MathConstants> constants{};
    std::optional<MathGlyphInfo> glyphInfo{};
    std::optional<MathVariants> variants{};

    Bytes build() const;
};

} // namespace KWTest
