#pragma once

#include <KWFontService17/FS_BaseFont.h>

#include <KWCommon15/KWPtr.h>

#include <istream>

namespace KWFontService_NS {

/// The type of an sfnt by its signature alone: 7 for CFF outlines, else 5. Leaves the stream where
/// it was.
FS_FontFileType sfntTypeOf(std::istream& stream);

/// A font object of a type, constructed and not yet scanned; null for a type that has no class.
KWCommonNS::KWPtr<FS_BaseFont> createFontObject(const KWUri& uri, FS_FontFileType type);

} // namespace KWFontService_NS
