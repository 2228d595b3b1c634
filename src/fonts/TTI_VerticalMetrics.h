#pragma once

#include "fonts/TTI_Metrics.h"

#include <cstdint>
#include <vector>

namespace KWFontService_NS {

/// The vertical advances and origins of a face (OpenType `vmtx`, `VORG`), in font units, y up.
class TTI_VerticalMetrics {
public:
    /// False, after reporting it, when the file does not hold `count` metrics. Reads none of them:
    /// a face that is only scanned keeps no metrics.
    static bool checkVmtx(SfntReader& reader, const TTI_TableRecord& table, int count);

    /// Reads the first `count` metrics. False after reporting what failed.
    bool readVmtx(SfntReader& reader, const TTI_TableRecord& table, int count);
    /// Reads the table once. False after reporting what failed; a default that was read stays.
    bool readVorg(SfntReader& reader, const TTI_TableRecord& table);

    bool hasAdvances() const { return !vMetrics.empty(); }
    /// Advance of a glyph, for a face that has advances; ids past the last one share it.
    std::uint16_t advance(unsigned short gid) const {
        const std::size_t last = vMetrics.size() - 1;
        return vMetrics[gid < last ? gid : last].advance;
    }
    /// Origin of a glyph: its own record, else the default; 0 without `VORG`.
    std::int16_t vertOriginY(unsigned short gid) const;

    struct VertOrigin {
        std::uint16_t gid;
        std::int16_t y;
    };

    std::vector<TTI_Metrics::LongMetric> vMetrics;
    bool vorgRead = false;
    std::int16_t defaultVertOriginY = 0;
    std::vector<VertOrigin> vertOriginYMetrics; ///< sorted as in the file
};

} // namespace KWFontService_NS
