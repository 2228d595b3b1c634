#pragma once

#include "layout/KeptTable.h"
#include "layout/TTI_Coverage.h"

#include "common/ByteView.h"

#include <KWFontService17/FS_MathConstants.h>

#include <KWCommon15/KWLength.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace KWFontService_NS {

class LayoutBudget;

/// What the typesetting of formulas asks of a face (OpenType `MATH`): constants, italics
/// corrections and larger variants of glyphs. The parts of the table that no query needs are not
/// kept: device tables, top accents, extended shapes, kerns, assemblies.
class TTI_Math {
public:
    /// Reads a whole table. A record whose fixed part does not lie inside it is absent; of the
    /// lists, what the table holds counts.
    void read(KWCommonNS::ByteView table);

    /// True when any of the three records of the table is there.
    bool hasInfo() const { return constants_ || glyphInfo_ || variants_; }
    /// In em; not a number when there is no such constant.
    KWCommonNS::KWLength constant(FS_MATHConstants constant, int unitsPerEm) const;
    /// In em; not a number when the table does not list the glyph.
    KWCommonNS::KWLength italicsCorrection(unsigned short gid, int unitsPerEm) const;
    /// The variant of a glyph for a size along the line (`vertical` false) or across it; 0xFFFF
    /// when there is none.
    /// @param size  in font units. 0: at least `displayOperatorMinHeight`; > 0: at least that much,
    ///              or the last variant; < 0: at most -`size`, and never the last variant
    unsigned short variant(unsigned short gid, int size, bool vertical) const;

private:
    static constexpr std::size_t kConstants = 56;

    struct MATHConstants {
        explicit MATHConstants(KWCommonNS::ByteView table);
        /// By `FS_MATHConstants`, as the file has them: some are signed.
        std::array<std::uint16_t, kConstants> values;
    };
    struct MATHGlyphInfo {
        explicit MATHGlyphInfo(KWCommonNS::ByteView table);
        KeptTable<TTI_Coverage> italicsCorrectionCoverage;
        std::vector<std::int16_t> italicsCorrections; ///< by coverage index
    };
    struct Variant {
        std::uint16_t variantGlyph;
        std::uint16_t advanceMeasurement;
    };
    struct Construction {
        std::uint32_t firstVariant = 0;
        std::uint16_t variantCount = 0;
    };
    struct MATHVariants {
        MATHVariants(KWCommonNS::ByteView table, LayoutBudget& budget);
        std::span<const Variant> variantsOf(unsigned short gid, bool vertical) const;

        KeptTable<TTI_Coverage> vertGlyphCoverage;
        KeptTable<TTI_Coverage> horizGlyphCoverage;
        std::vector<Construction> vertGlyphConstruction;  ///< by coverage index
        std::vector<Construction> horizGlyphConstruction; ///< likewise

    private:
        std::vector<Construction> readConstructions(KWCommonNS::ByteView table, std::size_t field,
                                                    std::size_t count, LayoutBudget& budget);
        std::vector<Variant> variants_; ///< of all constructions, in the order of the table
    };

    // Apart from the object, since few faces have any.
    std::unique_ptr<const MATHConstants> constants_;
    std::unique_ptr<const MATHGlyphInfo> glyphInfo_;
    std::unique_ptr<const MATHVariants> variants_;
};

} // namespace KWFontService_NS
