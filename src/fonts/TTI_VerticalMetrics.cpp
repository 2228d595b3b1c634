#include "fonts/TTI_VerticalMetrics.h"

#include <algorithm>
#include <array>

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

constexpr std::size_t kVorgHeaderSize = 8;
constexpr std::size_t kVorgRecordSize = 4;

bool failVmtx(SfntReader& reader) {
    return reader.fail(FS_ERROR_FONT_READ, "'vmtx' table metric read error");
}

bool failVorg(SfntReader& reader) {
    return reader.fail(FS_ERROR_FONT_READ, "'VORG' table read error");
}

} // namespace

bool TTI_VerticalMetrics::checkVmtx(SfntReader& reader, const TTI_TableRecord& table, int count) {
    if (count <= 0)
        return true;
    const std::uint64_t end = std::uint64_t{table.offset} +
                              static_cast<std::uint64_t>(count) * TTI_Metrics::kLongMetricSize;
    std::array<std::uint8_t, 1> last;
    return reader.read(end - 1, last) || failVmtx(reader);
}

bool TTI_VerticalMetrics::readVmtx(SfntReader& reader, const TTI_TableRecord& table, int count) {
    return TTI_Metrics::readLongMetrics(reader, table.offset, count, vMetrics) || failVmtx(reader);
}

bool TTI_VerticalMetrics::readVorg(SfntReader& reader, const TTI_TableRecord& table) {
    if (vorgRead)
        return true;
    vorgRead = true;
    std::array<std::uint8_t, kVorgHeaderSize> header;
    if (!reader.read(table.offset, header))
        return failVorg(reader);
    defaultVertOriginY = ByteView::loadI16(&header[4]);
    const std::size_t count = ByteView::loadU16(&header[6]);
    std::vector<std::uint8_t> bytes;
    if (!reader.read(std::uint64_t{table.offset} + kVorgHeaderSize, count * kVorgRecordSize, bytes))
        return failVorg(reader);
    vertOriginYMetrics.reserve(count);
    for (std::size_t at = 0; at < bytes.size(); at += kVorgRecordSize)
        vertOriginYMetrics.push_back(
            {ByteView::loadU16(&bytes[at]), ByteView::loadI16(&bytes[at + 2])});
    return true;
}

std::int16_t TTI_VerticalMetrics::vertOriginY(unsigned short gid) const {
    const auto found = std::ranges::lower_bound(vertOriginYMetrics, gid, {}, &VertOrigin::gid);
    if (found != vertOriginYMetrics.end() && found->gid == gid)
        return found->y;
    return defaultVertOriginY;
}

} // namespace KWFontService_NS
