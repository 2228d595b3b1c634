#pragma once

#include "fonts/SfntReader.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace KWFontService_NS {

/// The horizontal advances of a face (OpenType `hmtx`), in font units.
class TTI_Metrics {
public:
    struct LongMetric {
        std::uint16_t advance;
        std::int16_t sideBearing;
    };
    /// Bytes of a long metric in the file.
    static constexpr std::size_t kLongMetricSize = 4;

    /// Reads `count` long metrics, of `hmtx` or `vmtx`; false on a short read, and `metrics` stays.
    static bool readLongMetrics(SfntReader& reader, std::uint64_t offset, int count,
                                std::vector<LongMetric>& metrics);

    /// Reads `numberOfHMetrics` long metrics and, for a known number of glyphs, the side bearings
    /// behind them. False after reporting what failed.
    bool read(SfntReader& reader, const TTI_TableRecord& table, int numberOfHMetrics,
              int numGlyphs);

    /// Advance of a glyph; ids past the last long metric share its advance. 0 when nothing was
    /// read.
    std::uint16_t advance(unsigned short gid) const {
        if (hMetrics.empty())
            return 0;
        const std::size_t last = hMetrics.size() - 1;
        return hMetrics[gid < last ? gid : last].advance;
    }
    /// The advance that occurs most often; of several, the one that got there first.
    std::uint16_t mostCommonAdvance = 0;

    std::vector<LongMetric> hMetrics;
    std::vector<std::int16_t> leftSideBearings;

private:
    void countAdvances();
};

} // namespace KWFontService_NS
