#include "embed/CFFSubsetInPlace.h"
#include "embed/CFFSubsetRenumbered.h"
#include "embed/EmbedSource.h"
#include "embed/GlyphClosure.h"
#include "embed/GlyphSubset.h"
#include "embed/SfntWriter.h"
#include "embed/SourceStream.h"
#include "embed/TableSet.h"
#include "fonts/FS_TrueTypeInfo.h"
#include "fonts/FontStream.h"

#include <KWFontService17/FS_TTGlyphMap.h>

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

constexpr unsigned kRestricted = 0x0002;
constexpr unsigned kPreviewAndPrint = 0x0004;
constexpr unsigned kEditable = 0x0008;
constexpr unsigned kBitmapOnly = 0x0200;

/// Null for a face without `CFF ` outlines.
const TTI_TableRecord* cffOf(const FS_TrueTypeInfo& face) {
    return face.getTableEntry(sfntTag("CFF "));
}

/// What the glyph writers work on: the tables asked for, and where the glyphs are.
struct SubsetJob {
    TableSet tables;
    const TTI_TableRecord* glyf = nullptr;

    /// False when the face has no `glyf` outlines, or its `loca` is not all there.
    bool prepare(FS_TrueTypeInfo& face, EmbedSource& source, const unsigned int* tags) {
        glyf = face.getTableEntry(sfntTag("glyf"));
        const TTI_TableRecord* loca = face.getTableEntry(sfntTag("loca"));
        if (glyf == nullptr || loca == nullptr ||
            !selectTables(face.getTableDirectory(), tags, tables))
            return false;
        if (!face.locaCache.empty() || loca->length == 0)
            return true;
        if (!source.contains(loca->offset, loca->length) || !source.charge(loca->length))
            return false;
        std::vector<std::uint8_t> bytes(loca->length);
        if (!source.read(loca->offset, bytes))
            return false;
        face.locaCache = std::move(bytes);
        return true;
    }

    GlyphLocator locator(const FS_TrueTypeInfo& face) const {
        return GlyphLocator(ByteView(face.locaCache.data(), face.locaCache.size()),
                            face.header().indexToLocFormat, glyf->length,
                            face.header().maxp.numGlyphs);
    }
};

bool writeSubset(FS_TrueTypeInfo& face, const std::vector<unsigned short>& glyphs,
                 KWMemStream& output, const unsigned int* tags, std::istream* given) {
    const SourceStream stream(given, face.ownerFont());
    if (!stream)
        return false;
    EmbedSource source(*stream);
    SubsetJob job;
    if (!job.prepare(face, source, tags))
        return false;
    const GlyphLocator locator = job.locator(face);
    GlyphReader reader(source, job.glyf->offset, locator);
    return subsetGlyphTables(source, reader, glyphs, output, job.tables);
}

/// The tables of the list as they stand, with `CFF ` outlines whole.
bool writeWithCff(const FS_TrueTypeInfo& face, KWMemStream& output, const unsigned int* tags,
                  std::istream* given) {
    const SourceStream stream(given, face.ownerFont());
    TableSet tables;
    if (!stream || !selectTables(face.getTableDirectory(), tags, tables))
        return false;
    EmbedSource source(*stream);
    return writeSfnt(source, output, {}, tables);
}

/// Every table, with `CFF ` outlines cut.
bool writeCffSubset(const FS_TrueTypeInfo& face, const TTI_TableRecord& record,
                    const std::vector<unsigned short>& glyphs, KWMemStream& output,
                    std::istream* given) {
    const SourceStream stream(given, face.ownerFont());
    TableSet tables;
    if (!stream || !selectTables(face.getTableDirectory(), nullptr, tables))
        return false;
    auto table = cffTable(*stream, record);
    if (!table)
        return false;
    CFFInPlaceSubset subset(*table);
    if (!subset.plan(glyphs, face.getGlyphID(0x20, false)))
        return false;
    const auto writeCff = [&subset](KWMemStream& to) { return subset.write(to); };
    EmbedSource source(*stream);
    ReplacedTables replaced;
    replaced.cff = TableContents{subset.size(), writeCff};
    return writeSfnt(source, output, replaced, tables);
}

} // namespace

bool FS_TrueTypeInfo::getEmbedFont(const std::vector<unsigned short>& glyphs, KWMemStream& output,
                                   const unsigned int* tables, std::istream* stream) {
    if (cffOf(*this) != nullptr)
        return writeWithCff(*this, output, tables, stream);
    return writeSubset(*this, glyphs, output, tables, stream);
}

bool FS_TrueTypeInfo::getEmbedFont(const std::vector<unsigned short>& glyphs, KWMemStream& output,
                                   std::istream* given) {
    const TTI_TableRecord* const record = cffOf(*this);
    if (record == nullptr)
        return writeSubset(*this, glyphs, output, kDocumentTables.data(), given);
    const Type1CMap* const font = getCFFInfo();
    const SourceStream stream(given, owner);
    if (font == nullptr || !stream)
        return false;
    auto table = cffTable(*stream, *record);
    return table && subsetCFFRenumbered(*table, *font, glyphs, output);
}

bool FS_TrueTypeInfo::getType1EmbedFont(const std::vector<unsigned short>& codes,
                                        KWMemStream& output, std::istream* stream) {
    if (cffOf(*this) == nullptr)
        return false;
    std::vector<unsigned short> glyphs;
    for (const unsigned short code : codes) {
        const unsigned short gid = glyphOfCode(code);
        if (gid != FS_NO_GLYPH)
            glyphs.push_back(gid);
    }
    return getEmbedFont(glyphs, output, stream);
}

bool FS_TrueTypeInfo::makeSubsetFont(const std::vector<unsigned short>& glyphs, KWMemStream& output,
                                     std::istream* stream) {
    if (const TTI_TableRecord* const record = cffOf(*this))
        return writeCffSubset(*this, *record, glyphs, output, stream);
    return writeSubset(*this, glyphs, output, nullptr, stream);
}

bool FS_TrueTypeInfo::getEmbedFontWithCmap(const std::vector<unsigned short>& glyphs,
                                           KWMemStream& output, std::istream* stream) {
    return writeSubset(*this, glyphs, output, kDocumentTablesWithCmap.data(), stream);
}

bool FS_TrueTypeInfo::getPSEmbedFont(const std::vector<unsigned short>& glyphs, KWMemStream& output,
                                     FS_TTGlyphMap& glyphMap, std::istream* given) {
    const SourceStream stream(given, owner);
    if (!stream)
        return false;
    EmbedSource source(*stream);
    SubsetJob job;
    if (!job.prepare(*this, source, kPostScriptTables.data()))
        return false;
    const GlyphLocator locator = job.locator(*this);
    GlyphReader reader(source, job.glyf->offset, locator);
    const auto closure = collectGlyphClosure(reader, glyphs);
    return closure && writePSSfnt(source, reader, *closure, output, glyphMap, job.tables);
}

bool FS_TrueTypeInfo::getEmbedFontStream(KWMemStream& output, std::istream* source) {
    if (const TTI_TableRecord* const record = cffOf(*this)) {
        const SourceStream stream(source, owner);
        if (!stream)
            return false;
        auto table = cffTable(*stream, *record);
        return table && table->copy(0, record->length, output);
    }
    if (owner == nullptr)
        return false;
    if (source != nullptr) {
        output.rdbuf()->setSource(source, true);
    } else {
        std::unique_ptr<std::istream> own = openFontStream(owner->getUri());
        if (!own)
            return false;
        output.rdbuf()->setSource(own.release(), false);
    }
    output.clear();
    output.seekg(0);
    return output.length() > 0;
}

unsigned short FS_TrueTypeInfo::getFontEmbeddingLicence() const {
    return headerTables_.fsType;
}

FS_EMBEDSTATUS FS_TrueTypeInfo::getEmbedStatus() const {
    const unsigned rights =
        headerTables_.fsType & (kRestricted | kPreviewAndPrint | kEditable | kBitmapOnly);
    if (rights == kRestricted)
        return FS_EMBED_RESTRICTED;
    if (rights == 0 || (rights & (kPreviewAndPrint | kEditable)) != 0)
        return FS_EMBED_OUTLINES;
    return FS_EMBED_BITMAP_ONLY;
}

bool FS_TrueTypeInfo::isEmbeddable() const {
    return getEmbedStatus() == FS_EMBED_OUTLINES;
}

} // namespace KWFontService_NS
