#pragma once

#include "embed/EmbedSource.h"
#include "embed/TableSet.h"
#include "fonts/FS_TrueTypeInfo.h"

namespace KWFontService_NS {

/// One of two sfnt files that become one.
struct MergeFace {
    EmbedSource& source;
    const FS_TrueTypeInfo& face;
};

/// Appends an sfnt of the tables in the set, those of `a`, with the glyphs of both: a glyph has its
/// bytes from `a`, or where there are none from `b`. Glyph ids stay. `loca` has long offsets where
/// either has.
/// @param tables      of `a`
/// @param changeHead  false leaves `head` as it is in `a`, whatever `loca` has come to be
/// @return            false for faces that differ in `head`, `hhea`, `hmtx`, `maxp`, `cvt `, `fpgm`
///                    or `prep`; see `FS_MergeEmbeddedFonts::mergeTrueType`
bool mergeGlyphTables(const MergeFace& a, const MergeFace& b, const TableSet& tables,
                      bool changeHead, KWMemStream& output);

} // namespace KWFontService_NS
