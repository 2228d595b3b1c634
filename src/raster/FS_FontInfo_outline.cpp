#include "raster/FTFaceSize.h"
#include "raster/RenderLock.h"

#include <KWFontService17/FS_FontInfo.h>
#include <KWFontService17/FS_GlyphDrawInfo.h>

#include <KWCommon15/KWLock.h>

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <new>
#include <type_traits>

namespace KWFontService_NS {

using KWCommonNS::KWMutex;

namespace {

/// How many 26.6 units stand for one font unit: many for a small em, which would be coarse
/// otherwise, and even.
int subdivision(int unitsPerEm) {
    constexpr int kFinest = 4096;
    constexpr int kLeast = 10;
    return unitsPerEm == 0 ? kLeast : std::max((kFinest / unitsPerEm) & ~1, kLeast);
}

template <class Number>
int toInt(Number value) {
    using Limits = std::numeric_limits<int>;
    // Compared as a type that holds both ends of int exactly.
    using Wide = std::conditional_t<std::is_floating_point_v<Number>, double, std::int64_t>;
    return static_cast<int>(std::clamp<Wide>(value, Limits::min(), Limits::max()));
}

/// Takes an outline apart into the contours and bounds of a draw info.
class OutlineSink {
public:
    OutlineSink(FS_GlyphDrawInfo& info, int unit) : info_(info), unit_(static_cast<float>(unit)) {}

    bool decompose(FT_Outline& outline) {
        FT_Outline_Funcs functions{};
        functions.move_to = [](const FT_Vector* to, void* sink) {
            return call(sink, [&](OutlineSink& self) { self.moveTo(*to); });
        };
        functions.line_to = [](const FT_Vector* to, void* sink) {
            return call(sink,
                        [&](OutlineSink& self) { self.addSegment(FS_GlyphDrawInfo::Line, {to}); });
        };
        functions.conic_to = [](const FT_Vector* control, const FT_Vector* to, void* sink) {
            return call(sink, [&](OutlineSink& self) {
                self.addSegment(FS_GlyphDrawInfo::Quadratic, {control, to});
            });
        };
        functions.cubic_to = [](const FT_Vector* first, const FT_Vector* second,
                                const FT_Vector* to, void* sink) {
            return call(sink, [&](OutlineSink& self) {
                self.addSegment(FS_GlyphDrawInfo::Cubic, {first, second, to});
            });
        };
        return FT_Outline_Decompose(&outline, &functions, this) == FT_Err_Ok;
    }

private:
    /// Exceptions do not pass through FreeType.
    template <class Function>
    static int call(void* sink, Function function) {
        try {
            function(*static_cast<OutlineSink*>(sink));
            return FT_Err_Ok;
        } catch (const std::bad_alloc&) {
            return FT_Err_Out_Of_Memory;
        }
    }

    void moveTo(const FT_Vector& to) {
        if (info_.contours.empty()) {
            info_.outlineXMin = info_.outlineXMax = static_cast<float>(to.x) / unit_;
            info_.outlineYMin = info_.outlineYMax = static_cast<float>(to.y) / unit_;
        }
        info_.contours.emplace_back();
        addPoint(to);
    }

    void addSegment(FS_GlyphDrawInfo::SegmentKind kind,
                    std::initializer_list<const FT_Vector*> points) {
        info_.contours.back().segments.push_back(kind);
        for (const FT_Vector* point : points)
            addPoint(*point);
    }

    void addPoint(const FT_Vector& point) {
        const float x = static_cast<float>(point.x) / unit_;
        const float y = static_cast<float>(point.y) / unit_;
        info_.contours.back().points.emplace_back(x, y);
        info_.outlineXMin = std::min(info_.outlineXMin, x);
        info_.outlineYMin = std::min(info_.outlineYMin, y);
        info_.outlineXMax = std::max(info_.outlineXMax, x);
        info_.outlineYMax = std::max(info_.outlineYMax, y);
    }

    FS_GlyphDrawInfo& info_;
    float unit_;
};

bool loadForOutline(FT_Face face, unsigned short gid, bool vertical) {
    if (vertical)
        return FT_Load_Glyph(face, gid, FT_LOAD_VERTICAL_LAYOUT) == FT_Err_Ok;
    return FT_Load_Glyph(face, gid, FT_LOAD_DEFAULT) == FT_Err_Ok ||
           FT_Load_Glyph(face, gid, FT_LOAD_IGNORE_GLOBAL_ADVANCE_WIDTH) == FT_Err_Ok;
}

} // namespace

bool FS_FontInfo::isGlyphDrawInfoAvialable() const {
    return font != nullptr && font->getFTFace(faceIndex) != nullptr;
}

bool FS_FontInfo::getGlyphDrawInfo(unsigned short gid, FS_GlyphDrawInfo& info,
                                   bool vertical) const {
    if (font == nullptr)
        return false;
    KWMutex mutex(g_glyphRenderLock);
    mutex.lock();
    FT_Face face = font->getFTFace(faceIndex);
    if (face == nullptr)
        return false;
    const int unit = subdivision(face->units_per_EM);
    if (setFTFaceSize(face, FT_F26Dot6{face->units_per_EM} * unit, 0) != FT_Err_Ok ||
        !loadForOutline(face, gid, vertical))
        return false;

    const FT_GlyphSlot slot = face->glyph;
    const FT_Glyph_Metrics& metrics = slot->metrics;
    const auto units = [unit](FT_Pos value) { return toInt(value / unit); };
    info = FS_GlyphDrawInfo{
        .xMin = toInt(face->bbox.xMin),
        .yMin = toInt(face->bbox.yMin),
        .xMax = toInt(face->bbox.xMax),
        .yMax = toInt(face->bbox.yMax),
        .width = units(metrics.width),
        .height = units(metrics.height),
        .horiBearingX = units(metrics.horiBearingX),
        .horiBearingY = units(metrics.horiBearingY),
        .horiAdvance = units(metrics.horiAdvance),
        .vertBearingX = units(metrics.vertBearingX),
        .vertBearingY = units(metrics.vertBearingY),
        .vertAdvance = units(metrics.vertAdvance),
        .evenOddFill = (slot->outline.flags & FT_OUTLINE_EVEN_ODD_FILL) != 0,
        .contours = {},
    };
    return OutlineSink(info, unit).decompose(slot->outline);
}

float FS_FontInfo::getGlyphVertOriginY(unsigned short gid, int size) const {
    if (font == nullptr)
        return 0.0F;
    const float own = font->getGlyphVertOriginY(gid, size, faceIndex);
    if (own != 0.0F || !font->hasVerticalMetrics(faceIndex))
        return own;
    // Only glyphs with a smaller advance than the em need adjusting.
    const int unitsPerEm = font->getUnitsPerEm(faceIndex);
    if (static_cast<int>(font->getGlyphWidth(gid, 0, true, faceIndex)) >= unitsPerEm)
        return 0.0F;
    const int shift = vertOriginShift(gid);
    if (size == 0)
        return static_cast<float>(shift);
    return static_cast<float>(std::fabs(static_cast<double>(size)) * shift / unitsPerEm);
}

struct FS_FontInfo::VertOriginCache {
    KWCommonNS::KWLock lock;
    std::map<unsigned short, int> shifts;
};

int FS_FontInfo::vertOriginShift(unsigned short gid) const {
    if (!vertOriginCache)
        vertOriginCache = std::make_shared<VertOriginCache>();
    VertOriginCache& cache = *vertOriginCache;
    {
        KWMutex mutex(cache.lock);
        mutex.lock();
        if (const auto known = cache.shifts.find(gid); known != cache.shifts.end())
            return known->second;
    }
    const int shift = computeVertOriginShift(gid);
    KWMutex mutex(cache.lock);
    mutex.lock();
    return cache.shifts.emplace(gid, shift).first->second;
}

int FS_FontInfo::computeVertOriginShift(unsigned short gid) const {
    FS_GlyphDrawInfo info;
    if (!getGlyphDrawInfo(gid, info, true) ||
        static_cast<float>(info.yMax - info.vertAdvance) <= info.outlineYMin)
        return 0;
    const FT_FaceRec_* face = font->getFTFace(faceIndex);
    if (face == nullptr)
        return 0;
    // Wide enough for whatever a hostile outline says.
    const std::int64_t ascender = face->ascender;
    const std::int64_t below = ascender - toInt(info.outlineYMax) - info.vertBearingY;
    return below > 0 ? toInt(ascender - below) : 0;
}

} // namespace KWFontService_NS
