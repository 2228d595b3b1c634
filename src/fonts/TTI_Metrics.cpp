#include "fonts/TTI_Metrics.h"

#include <unordered_map>

namespace KWFontService_NS {

using KWCommonNS::ByteView;

bool TTI_Metrics::readLongMetrics(SfntReader& reader, std::uint64_t offset, int count,
                                  std::vector<LongMetric>& metrics) {
    std::vector<std::uint8_t> bytes;
    if (!reader.read(offset, static_cast<std::size_t>(count) * kLongMetricSize, bytes))
        return false;
    metrics.clear();
    metrics.reserve(static_cast<std::size_t>(count));
    for (std::size_t at = 0; at < bytes.size(); at += kLongMetricSize)
        metrics.push_back({ByteView::loadU16(&bytes[at]), ByteView::loadI16(&bytes[at + 2])});
    return true;
}

bool TTI_Metrics::read(SfntReader& reader, const TTI_TableRecord& table, int numberOfHMetrics,
                       int numGlyphs) {
    if (!readLongMetrics(reader, table.offset, numberOfHMetrics, hMetrics))
        return reader.fail(FS_ERROR_FONT_READ, "'hmtx' table metric read error");
    countAdvances();

    const int bearings = numGlyphs - numberOfHMetrics;
    if (bearings <= 0)
        return true;
    std::vector<std::uint8_t> bytes;
    if (!reader.read(std::uint64_t{table.offset} + hMetrics.size() * kLongMetricSize,
                     static_cast<std::size_t>(bearings) * 2, bytes))
        return reader.fail(FS_ERROR_FONT_READ, "'hmtx' left side bearing read error");
    leftSideBearings.reserve(static_cast<std::size_t>(bearings));
    for (std::size_t at = 0; at < bytes.size(); at += 2)
        leftSideBearings.push_back(ByteView::loadI16(&bytes[at]));
    return true;
}

void TTI_Metrics::countAdvances() {
    std::unordered_map<std::uint16_t, int> counts;
    int largest = 0;
    for (const LongMetric& metric : hMetrics) {
        const int count = ++counts[metric.advance];
        if (count > largest) {
            largest = count;
            mostCommonAdvance = metric.advance;
        }
    }
}

} // namespace KWFontService_NS
