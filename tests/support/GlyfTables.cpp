#include "GlyfTables.h"

#include <algorithm>
#include <stdexcept>

namespace KWTest {

namespace {

constexpr std::uint8_t kOnCurvePoint = 0x01;

constexpr std::uint16_t kArgsAreWords = 0x0001;
constexpr std::uint16_t kArgsAreXYValues = 0x0002;
constexpr std::uint16_t kHasScale = 0x0008;
constexpr std::uint16_t kMoreComponents = 0x0020;
constexpr std::uint16_t kHasXAndYScale = 0x0040;
constexpr std::uint16_t kHasTwoByTwo = 0x0080;

void writeBox(Bytes& out, const GlyphBox& box) {
    out.i16(box.xMin).i16(box.yMin).i16(box.xMax).i16(box.yMax);
}

std::vector<GlyphPoint> allPoints(const std::vector<GlyphContour>& contours) {
    std::vector<GlyphPoint> points;
    for (const GlyphContour& contour : contours)
        points.insert(points.end(), contour.begin(), contour.end());
    return points;
}

GlyphBox boxAround(const std::vector<GlyphPoint>& points) {
    if (points.empty())
        return {};
    const auto [left, right] = std::ranges::minmax(points, {}, &GlyphPoint::x);
    const auto [bottom, top] = std::ranges::minmax(points, {}, &GlyphPoint::y);
    return {left.x, bottom.y, right.x, top.y};
}

std::uint16_t scaleFlag(std::size_t numbers) {
    switch (numbers) {
    case 0:
        return 0;
    case 1:
        return kHasScale;
    case 2:
        return kHasXAndYScale;
    case 4:
        return kHasTwoByTwo;
    default:
        throw std::invalid_argument("a component scale has 0, 1, 2 or 4 numbers");
    }
}

} // namespace

GlyphContour rectangle(const GlyphBox& box) {
    return {{box.xMin, box.yMin}, {box.xMin, box.yMax}, {box.xMax, box.yMax}, {box.xMax, box.yMin}};
}

GlyphContour triangle(const GlyphBox& box) {
    const auto middle = static_cast<std::int16_t>((box.xMin + box.xMax) / 2);
    return {{box.xMin, box.yMin}, {middle, box.yMax}, {box.xMax, box.yMin}};
}

Bytes SimpleGlyph::build() const {
    const std::vector<GlyphPoint> points = allPoints(contours);
    Bytes glyph;
    glyph.i16(contours.size());
    writeBox(glyph, box.value_or(boxAround(points)));

    std::size_t pointCount = 0;
    for (const GlyphContour& contour : contours) {
        pointCount += contour.size();
        glyph.u16(pointCount - 1);
    }
    glyph.u16(instructions.size()).bytes(instructions);

    for (const GlyphPoint& point : points)
        glyph.u8(point.onCurve ? kOnCurvePoint : 0);
    GlyphPoint last;
    for (const GlyphPoint& point : points) {
        glyph.i16(point.x - last.x);
        last.x = point.x;
    }
    for (const GlyphPoint& point : points) {
        glyph.i16(point.y - last.y);
        last.y = point.y;
    }
    return glyph;
}

Bytes CompositeGlyph::build() const {
    Bytes glyph;
    glyph.i16(-1);
    writeBox(glyph, box);
    for (std::size_t i = 0; i < components.size(); ++i) {
        const GlyphComponent& component = components[i];
        const bool more = endlessComponents || i + 1 < components.size();
        glyph.u16(component.extraFlags | kArgsAreXYValues | scaleFlag(component.scale.size()) |
                  (component.wordArguments ? kArgsAreWords : 0) | (more ? kMoreComponents : 0));
        glyph.u16(component.glyphIndex);
        if (component.wordArguments)
            glyph.i16(component.x).i16(component.y);
        else
            glyph.u8(component.x).u8(component.y);
        for (const double number : component.scale)
            glyph.f2dot14(number);
    }
    return glyph;
}

GlyfLoca& GlyfLoca::add(Bytes glyph) {
    glyphs.push_back(std::move(glyph));
    return *this;
}

std::vector<std::uint32_t> GlyfLoca::offsets() const {
    std::vector<std::uint32_t> result{0};
    Bytes table;
    for (const Bytes& glyph : glyphs) {
        table.bytes(glyph).padTo(alignment);
        result.push_back(static_cast<std::uint32_t>(table.size()));
    }
    return result;
}

Bytes GlyfLoca::glyf() const {
    Bytes table;
    for (const Bytes& glyph : glyphs)
        table.bytes(glyph).padTo(alignment);
    return table;
}

Bytes GlyfLoca::loca() const {
    return locaOf(offsets(), longLoca);
}

Bytes locaOf(const std::vector<std::uint32_t>& offsets, bool longLoca) {
    Bytes table;
    for (const std::uint32_t offset : offsets) {
        if (longLoca)
            table.u32(offset);
        else
            table.u16(offset / 2);
    }
    return table;
}

} // namespace KWTest
