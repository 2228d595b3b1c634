#pragma once

#include "CffOutput.h"
#include "PackedFonts.h"

#include <KWFontService17/FS_MergeEmbeddedFonts.h>

#include <sstream>

namespace KWTest {

/// What a merge of two CFF tables makes; empty when it says no.
inline Bytes mergedCff(const Bytes& a, const Bytes& b, bool isCID) {
    std::istringstream first(a.str());
    std::istringstream second(b.str());
    KWCommonNS::KWMemStream output;
    if (!KWFontService_NS::FS_MergeEmbeddedFonts::mergeCFF(output, &first, &second, isCID))
        return {};
    return bytesOf(output);
}
inline Bytes mergedNames(const CffSections& a, const CffSections& b) {
    return mergedCff(a.build(), b.build(), false);
}
inline Bytes mergedCids(const CffSections& a, const CffSections& b) {
    return mergedCff(a.build(), b.build(), true);
}

/// The same of two sfnt files.
inline Bytes mergedSfnt(const Bytes& a, const Bytes& b, bool ignoreCmap = true) {
    std::istringstream first(a.str());
    std::istringstream second(b.str());
    KWCommonNS::KWMemStream output;
    if (!KWFontService_NS::FS_MergeEmbeddedFonts::mergeTrueType(output, &first, &second,
                                                                ignoreCmap))
        return {};
    return bytesOf(output);
}

/// A CID-keyed table whose charset has format 0.
inline CffSections cidSections(const CffCID& font) {
    CffSections table = font.sections();
    table.charset = Bytes{0};
    for (std::size_t gid = 1; gid < font.glyphs.size(); ++gid)
        table.charset->u16(font.glyphs[gid].cid);
    return table;
}

/// A name-keyed table of glyph 0 and these, by string id, all with the same two strings.
inline CffSections namedGlyphs(const std::vector<std::pair<int, Bytes>>& glyphs) {
    CffSections table;
    table.strings = {Bytes::ofText("one"), Bytes::ofText("two")};
    table.charset = Bytes{0};
    table.charStrings = {glyph(0)};
    for (const auto& [sid, charString] : glyphs) {
        table.charset->u16(static_cast<std::uint16_t>(sid));
        table.charStrings.push_back(charString);
    }
    table.privateDict = CffPrivate{.dict = Bytes{140, 20, 141, 21}};
    return table;
}

} // namespace KWTest
