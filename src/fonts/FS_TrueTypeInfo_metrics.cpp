#include "fonts/CodePoints.h"
#include "fonts/FS_ServiceContext.h"
#include "fonts/FS_TextMetricSource.h"
#include "fonts/FS_TrueTypeInfo.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace KWFontService_NS {

namespace {

// Bits of the pitch and the family in text metrics.
constexpr int kVariablePitch = 0x01;
constexpr int kSerif = 0x10;
constexpr int kScript = 0x40;

/// The absolute value as a real number, which the lowest int has too.
double magnitude(int size) {
    return std::fabs(static_cast<double>(size));
}

float perEm(int value, int unitsPerEm) {
    return unitsPerEm == 0 ? 0.0F : static_cast<float>(static_cast<double>(value) / unitsPerEm);
}

} // namespace

int FS_TrueTypeInfo::sizeDivisor(int size) const {
    return size < 0 ? int{headerTables_.unitsPerEm}
                    : headerTables_.usWinAscent + headerTables_.usWinDescent;
}

float FS_TrueTypeInfo::scaled(int value, int size) const {
    if (size == 0)
        return static_cast<float>(value);
    const int divisor = sizeDivisor(size);
    if (divisor == 0)
        return 0.0F;
    return static_cast<float>(value * magnitude(size) / divisor);
}

std::uint16_t FS_TrueTypeInfo::unscaledAdvance(unsigned short gid, bool vertical) const {
    const LoadedTables& present = tables();
    return vertical && present.vertical.hasAdvances() ? present.vertical.advance(gid)
                                                      : present.metrics.advance(gid);
}

float FS_TrueTypeInfo::getGlyphWidth(unsigned short gid, int size, bool vertical) const {
    return gid == FS_NO_GLYPH ? 0.0F : scaled(unscaledAdvance(gid, vertical), size);
}

float FS_TrueTypeInfo::getDefaultCharWidth(int size) const {
    return scaled(tables().metrics.mostCommonAdvance, size);
}

float FS_TrueTypeInfo::getTextWidth(const UnicodeString& text, int size, bool vertical,
                                    int* firstMissing) const {
    if (firstMissing != nullptr)
        *firstMissing = -1;
    std::int64_t units = 0;
    double eudcWidth = 0;
    const char16_t* chars = text.getBuffer();
    const std::int32_t length = text.length();
    for (std::int32_t i = 0; i < length;) {
        const std::int32_t start = i;
        const UChar32 ch = nextCodePoint(chars, i, length);
        unsigned short gid = getGlyphID(ch, vertical);
        if (gid == FS_NO_GLYPH) {
            if (ch < 0x10000 && FS_ServiceContext::isEudcCodePoint(ch)) {
                unsigned short eudcGid = FS_NO_GLYPH;
                if (const FS_FontRef eudc = findEudcGlyph(ch, eudcGid)) {
                    eudcWidth +=
                        double{eudc.font->getGlyphWidth(eudcGid, size, vertical, eudc.face)};
                    continue;
                }
            }
            if (firstMissing != nullptr && *firstMissing < 0)
                *firstMissing = start;
            gid = 0;
        }
        units += unscaledAdvance(gid, vertical);
    }
    // Size 0 measures the end-user-defined characters alone: there is no form in font units.
    const int divisor = sizeDivisor(size);
    const double ownWidth =
        divisor == 0 ? 0.0 : static_cast<double>(units) / divisor * magnitude(size);
    return static_cast<float>(ownWidth + eudcWidth);
}

bool FS_TrueTypeInfo::hasVerticalMetrics() const {
    return tables().vertical.hasAdvances();
}

float FS_TrueTypeInfo::getDefaultVertOriginY(int size) const {
    return scaled(tables().vertical.defaultVertOriginY, size);
}

float FS_TrueTypeInfo::getGlyphVertOriginY(unsigned short gid, int size) const {
    return scaled(tables().vertical.vertOriginY(gid), size);
}

bool FS_TrueTypeInfo::hasPairKerningInfo(bool vertical) const {
    return tables().kern.hasPairs(vertical);
}

float FS_TrueTypeInfo::getPairKerningValue(unsigned short left, unsigned short right, int size,
                                           bool vertical) const {
    const TTI_Kern& kern = tables().kern;
    if (!kern.hasPairs(vertical))
        return 0.0F;
    const std::int16_t value = kern.find(left, right).value_or(0);
    // Only em sizes scale; callers take any other answer in font units.
    return scaled(value, size < 0 ? size : 0);
}

bool FS_TrueTypeInfo::getNewTextMetricEx(FS_NewTextMetricEx& metric) const {
    return getOutlineTextMetrics(metric, -headerTables_.unitsPerEm);
}

bool FS_TrueTypeInfo::getOutlineTextMetrics(FS_NewTextMetricEx& metric, int size) const {
    const TTI_Header& from = headerTables_;
    FS_TextMetricSource source;
    source.unitsPerEm = from.unitsPerEm;
    source.lineHeight = from.usWinAscent + from.usWinDescent;
    source.ascent = from.usWinAscent;
    source.descent = from.usWinDescent;
    source.capHeight = from.sCapHeight;
    source.typoAscender = from.sTypoAscender;
    source.typoDescender = from.sTypoDescender;
    source.typoLineGap = from.sTypoLineGap;
    source.vertTypoAscender = from.vertAscender;
    source.vertTypoDescender = from.vertDescender;
    source.vertTypoLineGap = from.vertLineGap;
    source.externalLeading = from.lineGap;
    source.aveCharWidth = from.xAvgCharWidth;
    source.maxCharWidth = from.xMax - from.xMin;
    source.italicAngle = from.italicAngle;
    source.pitchAndFamily = (from.isFixedPitch ? 0 : kVariablePitch) |
                            (isSerifLikeFont() ? kSerif : 0) | (isScriptLikeFont() ? kScript : 0);
    source.symbolFont = isSymbolicFont();
    source.unicodeRanges = from.ulUnicodeRange;
    source.codePages = {from.ulCodePageRange1, from.ulCodePageRange2};
    const std::array corners{from.xMin, from.yMin, from.xMax, from.yMax};
    std::copy(corners.begin(), corners.end(), source.fontBBox.begin());
    if (owner != nullptr)
        source.fontEntrySettings = owner->getFontEntrySettings();
    source.fill(metric, size);
    return true;
}

float FS_TrueTypeInfo::getXHeight() const {
    return headerTables_.sxHeight > 0 ? perEm(headerTables_.sxHeight, headerTables_.unitsPerEm)
                                      : 0.0F;
}

float FS_TrueTypeInfo::getCapHeight() const {
    return headerTables_.sCapHeight > 0 ? perEm(headerTables_.sCapHeight, headerTables_.unitsPerEm)
                                        : 0.0F;
}

float FS_TrueTypeInfo::getTypoAscender() const {
    return perEm(headerTables_.sTypoAscender, headerTables_.unitsPerEm);
}

float FS_TrueTypeInfo::getTypoDescender() const {
    return perEm(headerTables_.sTypoDescender, headerTables_.unitsPerEm);
}

int FS_TrueTypeInfo::getUnitsPerEm() const {
    return headerTables_.unitsPerEm;
}

} // namespace KWFontService_NS
