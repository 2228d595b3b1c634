#pragma once

#include "common/ByteView.h"

#include <cstddef>

namespace KWFontService_NS {

/// How the glyphs of a `CFF ` table are keyed (Adobe Technical Note 5176, Top DICT ROS).
enum class CFFKind { Unreadable, NameKeyed, CIDKeyed };

/// How many bytes of a table `readCFFKind` wants to see at most: the header, the names and the
/// first Top DICT stand at the start.
inline constexpr std::size_t kCFFKindBytes = std::size_t{64} << 10;

/// Looks for the ROS operator in the first Top DICT.
/// @param start  the first bytes of the table
CFFKind readCFFKind(KWCommonNS::ByteView start);

} // namespace KWFontService_NS
