#include <KWFontService17/FS_MergeEmbeddedFonts.h>

#include "common/StreamBytes.h"
#include "embed/CFFMerge.h"
#include "embed/GlyphTableMerge.h"
#include "fonts/FS_TrueType.h"

#include <KWCommon15/KWMemStream.h>
#include <KWCommon15/KWPtr.h>

#include <algorithm>

namespace KWFontService_NS {

namespace {

/// A bare table that fills its stream.
CFFStream wholeTable(std::istream& stream) {
    constexpr std::uint64_t kMost = 0xFFFFFFFF;
    return CFFStream(stream, 0,
                     static_cast<std::uint32_t>(std::min(KWCommonNS::streamSize(stream), kMost)));
}

bool mergeTables(KWMemStream& output, std::istream& a, std::istream& b, bool isCID) {
    CFFStream tableA = wholeTable(a);
    CFFStream tableB = wholeTable(b);
    return mergeCFFTables(tableA, tableB, isCID, output);
}

/// A font from a document, for the length of a merge.
class EmbeddedFont {
public:
    bool load(std::istream& stream) {
        stream.clear();
        stream.seekg(0);
        KWError error;
        return font_->scanEmbeddedFont(error, stream) && font_->loadEmbeddedFont(error, &stream);
    }
    const FS_TrueTypeInfo& face() const { return *font_->face(0); }

private:
    KWCommonNS::KWPtr<FS_TrueType> font_{new FS_TrueType(KWUri())};
};

} // namespace

bool FS_MergeEmbeddedFonts::mergeCFF(KWMemStream& output, std::istream* a, std::istream* b,
                                     bool isCID) {
    if (a == nullptr || b == nullptr)
        return false;
    return isCID ? mergeCIDFontType0C(output, *a, *b) : mergeType1C(output, *a, *b);
}

bool FS_MergeEmbeddedFonts::mergeCIDFontType0C(KWMemStream& output, std::istream& a,
                                               std::istream& b) {
    return mergeTables(output, a, b, true);
}

bool FS_MergeEmbeddedFonts::mergeType1C(KWMemStream& output, std::istream& a, std::istream& b) {
    return mergeTables(output, a, b, false);
}

bool FS_MergeEmbeddedFonts::mergeTrueType(KWMemStream& output, std::istream* a, std::istream* b,
                                          bool ignoreCmap) {
    if (a == nullptr || b == nullptr || output.fail())
        return false;
    EmbeddedFont first;
    EmbeddedFont second;
    if (!first.load(*a) || !second.load(*b))
        return false;
    const unsigned int* const tags =
        ignoreCmap ? kMergedTables.data() : kMergedTablesWithCmap.data();
    TableSet tables;
    TableSet others;
    constexpr std::uint32_t kCmap = sfntTag("cmap");
    if (!selectTables(first.face().getTableDirectory(), tags, tables) ||
        !selectTables(second.face().getTableDirectory(), tags, others) ||
        (!ignoreCmap && (first.face().getTableEntry(kCmap) == nullptr ||
                         second.face().getTableEntry(kCmap) == nullptr)))
        return false;
    EmbedSource sourceA(*a);
    EmbedSource sourceB(*b);
    return mergeGlyphTables({sourceA, first.face()}, {sourceB, second.face()}, tables, ignoreCmap,
                            output);
}

} // namespace KWFontService_NS
