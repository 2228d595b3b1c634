#pragma once

#include "embed/CFFToType1.h"

#include <KWFontService17/FS_Types.h>

#include <cstddef>
#include <string>

namespace KWFontService_NS {

/// Bytes of the numbers in the binary section of a CIDFont.
struct CIDFontWidths {
    int fontDict = 0; ///< FDBytes
    int offset = 0;   ///< GDBytes
    int subr = 0;     ///< SDBytes

    /// @param glyphs, subrs, fontDicts     how many there are
    /// @param glyphLength, subrLength      of their charstrings together
    CIDFontWidths(std::size_t glyphs, std::size_t subrs, std::size_t fontDicts,
                  std::size_t glyphLength, std::size_t subrLength);
};

/// Appends a CIDFont of type 0 (Adobe Technical Note 5014) as text: every glyph is a CID, in its
/// order, and the binary section is hexadecimal.
/// @param fontName  its characters must be those of a PostScript name
void writeCIDFont(Type1Glyphs& source, const KWValue& topDict, const std::string& fontName,
                  const FS_CIDSystemInfo& info, KWMemStream& output);

/// Appends the bytes of `source` as lower-case hexadecimal digits, with a line feed behind every
/// 32nd byte.
/// @param column  bytes in the line so far
/// @return        bytes in the last line then
std::size_t writeHexStream(KWMemStream& source, KWMemStream& output, std::size_t column);

} // namespace KWFontService_NS
