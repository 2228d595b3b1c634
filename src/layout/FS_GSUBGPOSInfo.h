#pragma once

#include "layout/TTI_LayoutTable.h"

#include <cstdint>

namespace KWFontService_NS {

struct TTI_Gdef;

/// The layout handle: what a font has for one script and language. It owns nothing and stays valid
/// as long as the font. Each half, GSUB and GPOS, is found or not without regard to the other.
struct FS_GSUBGPOSInfo {
    /// The script that was asked for.
    std::uint32_t script = 0;
    /// Where the glyph classes are.
    const TTI_Gdef* gdef = nullptr;
    /// Null when there is no language system of this table.
    const TTI_LayoutTable* gsubTable = nullptr;
    const TTI_LayoutTable* gposTable = nullptr;
    const TTI_LangSys* gsubLangSys = nullptr;
    const TTI_LangSys* gposLangSys = nullptr;
    /// True when the script is there and its default language system was taken or missed.
    bool gsubDefault = false;
    bool gposDefault = false;
};

/// Finds the language systems of exactly this script; no other script stands in for it. A language
/// that the script does not list, and language 0, take the script's default language system.
FS_GSUBGPOSInfo findLayout(std::uint32_t script, std::uint32_t language, const TTI_Gdef* gdef,
                           const TTI_LayoutTable& gsub, const TTI_LayoutTable& gpos);

} // namespace KWFontService_NS
