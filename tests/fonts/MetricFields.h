#pragma once

#include <KWFontService17/FS_NewTextMetricEx.h>

#include <vector>

namespace KWTest {

/// What a record of text metrics tells, in the order of its accessors, for comparisons.
inline std::vector<double> metricFields(const KWFontService_NS::FS_NewTextMetricEx& m) {
    std::vector<double> fields;
    for (const float value :
         {m.getAscent(), m.getDescent(), m.getCapHeight(), m.getInternalLeadingA(),
          m.getInternalLeadingD(), m.getTypoAscender(), m.getTypoDescender(), m.getTypoLineGap(),
          m.getVertTypoAscender(), m.getVertTypoDescender(), m.getVertTypoLineGap(),
          m.getExternalLeading(), m.getAveCharWidth(), m.getMaxCharWidth(), m.getItalicAngle()})
        fields.push_back(double{value});
    for (const float corner : m.getFontBBox())
        fields.push_back(double{corner});
    for (const bool flag : {m.isFixedPitch(), m.isSerifLike(), m.isScriptLike(), m.isSymbolFont()})
        fields.push_back(flag ? 1 : 0);
    for (unsigned int bit = 0; bit < 128; ++bit) {
        const auto block = static_cast<KWFontService_NS::UnicodeSubsetBitFields>(bit);
        fields.push_back(m.checkUSB(block) ? 1 : 0);
    }
    fields.push_back(static_cast<double>(m.getCodePageBits0()));
    return fields;
}

} // namespace KWTest
