#pragma once

#include "common/ByteView.h"
#include "embed/EmbedSource.h"
#include "embed/GlyphReader.h"
#include "embed/TableSet.h"

#include <KWFontService17/FS_TTGlyphMap.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <span>

namespace KWFontService_NS {

/// The bytes of one table, given when their turn comes.
struct TableContents {
    std::uint32_t length = 0;
    std::function<bool(KWMemStream& output)> write; // false ends the file

    /// Bytes that outlive the call of the writer.
    static TableContents of(KWCommonNS::ByteView bytes);
};

/// New contents of tables; a table without comes from the source as it stands.
struct ReplacedTables {
    std::optional<TableContents> glyf{};
    std::optional<TableContents> loca{};
    std::optional<TableContents> cff{};
    std::optional<TableContents> head{};
};

/// Appends an sfnt of the tables in the set, by ascending tag, each from a multiple of four on and
/// the last one unpadded. Check sums are worked out for new contents only; `head` has the source's
/// `checkSumAdjustment`, which does not count for its own sum.
/// @return false when the source is short or asked too often, when the result passes 4 GiB, and
///         when the output takes no more
bool writeSfnt(EmbedSource& source, KWMemStream& output, const ReplacedTables& replaced,
               const TableSet& tables);

/// Appends every table of a face as an sfnt of its own, for a face that shares its file with
/// others.
/// @return false for a face without outlines, and when the source is short
bool writeWholeSfnt(std::istream& stream, const TTI_Directory& directory, KWMemStream& output);

/// Appends the sfnt of a Type 42 font whose glyphs are kept apart: `kPostScriptTables` of the set
/// and an empty `gdir` (Adobe Technical Note 5012, `GlyphDirectory`). The glyphs of `closure`,
/// which ascends, go to `glyphMap`.
/// @return false when the source is short or asked too often, when the result passes 4 GiB, and
///         when the output takes no more
bool writePSSfnt(EmbedSource& source, GlyphReader& reader, std::span<const std::uint16_t> closure,
                 KWMemStream& output, FS_TTGlyphMap& glyphMap, const TableSet& tables);

} // namespace KWFontService_NS
