#pragma once

#include "UsedGlyphs.h"

#include <KWFontService17/FS_FontInfo.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace typeset {

enum class SubsetFormat { trueType, cffWithCids, cffWithNames };

/// A subset that was made in parts.
struct JoinedSubset {
    std::string bytes;
    std::vector<std::size_t> parts; ///< bytes of each
};

/// Asks the library for a subset of each part and joins them. Nothing when fewer than two parts use
/// the font, and when the library does not join them.
std::optional<JoinedSubset> joinSubsets(const KWFontService_NS::FS_FontInfo& font,
                                        const std::vector<UsedGlyphs>& parts, SubsetFormat format);

} // namespace typeset
