#include "fonts/FS_TrueTypeInfo.h"

#include "cff/CFFKind.h"
#include "fonts/FS_FontFileOptions.h"

#include <KWCommon15/KWLock.h>

#include <algorithm>

namespace KWFontService_NS {

using KWCommonNS::ByteView;
using KWCommonNS::KWMutex;

bool FS_TrueTypeInfo::loadTables(KWError& error, std::istream* stream, bool embedded) {
    if (isLoaded())
        return loadOk;
    KWMutex mutex(loadLock);
    mutex.lock();
    if (isLoaded())
        return loadOk;

    if (const FS_FontFileOptions* settings = owner->getFontEntrySettings())
        allowGlyphZero = settings->useZeroGlyphId;
    std::unique_ptr<std::istream> own;
    if (stream == nullptr) {
        own.reset(owner->getUri().getIStream(nullptr, nullptr));
        stream = own.get();
    }
    if (stream != nullptr) {
        loadEveryTable(error, *stream, embedded);
    } else {
        UnicodeString detail("Cannot read font: ");
        detail.append(owner->getUri().getLocalPath()).append(u'\n');
        loadOk = owner->fontError(error, FS_ERROR_FONT_READ, detail);
    }
    loaded.store(true, std::memory_order_release);
    return loadOk;
}

void FS_TrueTypeInfo::loadEveryTable(KWError& error, std::istream& stream, bool embedded) {
    loadedTables = std::make_unique<LoadedTables>();
    SfntReader reader(stream, directory, error, owner);
    // One bad table neither stops the others nor undoes them.
    const auto step = [this](bool ok) { loadOk = ok && loadOk; };

    step(loadCff(reader));
    step(loadGdef(reader));
    step(loadLayout(reader, TTI_LayoutTable::Kind::Gpos, loadedTables->gpos));
    step(loadLayout(reader, TTI_LayoutTable::Kind::Gsub, loadedTables->gsub));
    step(loadedTables->cmap.read(reader, embedded, macFont));
    step(loadedTables->kern.read(reader));
    step(loadMaxp(reader));
    step(loadHmtx(reader));
    step(loadMort(reader));
    step(loadVertical(reader));
}

bool FS_TrueTypeInfo::loadCff(SfntReader& reader) {
    const TTI_TableRecord* cff = directory.find(sfntTag("CFF "));
    if (cff == nullptr) {
        if (!owner->isOpenType())
            return true;
        return reader.fail(FS_ERROR_FONT_FILE, directory.has(sfntTag("CFF2"))
                                                   ? "'CFF2' table not supported"
                                                   : "'CFF' table not found");
    }
    if (cidFont)
        return true;
    std::vector<std::uint8_t> start;
    reader.readUpTo(cff->offset, std::min<std::size_t>(cff->length, kCFFKindBytes), start);
    const CFFKind kind = readCFFKind(ByteView(start.data(), start.size()));
    cidFont = kind == CFFKind::CIDKeyed;
    return kind != CFFKind::Unreadable || reader.fail(FS_ERROR_FONT_READ, "'CFF' table read error");
}

bool FS_TrueTypeInfo::loadGdef(SfntReader& reader) {
    if (!directory.has(sfntTag("GDEF")))
        return true;
    std::vector<std::uint8_t> bytes;
    if (!reader.readTable(sfntTag("GDEF"), bytes))
        return reader.fail(FS_ERROR_FONT_READ, "'GDEF' table read error");
    switch (loadedTables->gdef.read(ByteView(bytes.data(), bytes.size()))) {
    case TTI_Gdef::Result::Ok:
        return true;
    case TTI_Gdef::Result::GlyphClassError:
        return reader.fail(FS_ERROR_FONT_FILE, "'GDEF' glyph ClassDef error");
    case TTI_Gdef::Result::MarkAttachClassError:
        // Told, but no reason to refuse the font: only the attachment classes are lost.
        reader.fail(FS_ERROR_FONT_FILE, "'GDEF' markAttach ClassDef error");
        return true;
    }
    return true;
}

bool FS_TrueTypeInfo::loadLayout(SfntReader& reader, TTI_LayoutTable::Kind kind,
                                 TTI_LayoutTable& table) {
    const bool gsub = kind == TTI_LayoutTable::Kind::Gsub;
    const std::uint32_t tag = gsub ? sfntTag("GSUB") : sfntTag("GPOS");
    if (!directory.has(tag))
        return true;
    const auto fail = [&](FS_ERROR code, const char* what) {
        return reader.fail(code,
                           UnicodeString(gsub ? "'GSUB'" : "'GPOS'").append(UnicodeString(what)));
    };
    std::vector<std::uint8_t> bytes;
    if (!reader.readTable(tag, bytes))
        return fail(FS_ERROR_FONT_READ, " table read error");
    switch (table.read(ByteView(bytes.data(), bytes.size()), kind)) {
    case TTI_LayoutTable::Result::Ok:
        return true;
    case TTI_LayoutTable::Result::FeatureListError:
        return fail(FS_ERROR_FONT_FILE, " feature list read error");
    case TTI_LayoutTable::Result::LookupListError:
        return fail(FS_ERROR_FONT_FILE, " lookup list read error");
    case TTI_LayoutTable::Result::ScriptListError:
        return fail(FS_ERROR_FONT_FILE, " sclipt list read error");
    }
    return true;
}

bool FS_TrueTypeInfo::loadMaxp(SfntReader& reader) {
    const TTI_TableRecord* maxp = directory.find(sfntTag("maxp"));
    return maxp == nullptr || headerTables.readMaxp(reader, *maxp);
}

bool FS_TrueTypeInfo::loadHmtx(SfntReader& reader) {
    if (headerTables.numberOfHMetrics == 0)
        return true;
    const TTI_TableRecord* hmtx = directory.find(sfntTag("hmtx"));
    if (hmtx == nullptr)
        return reader.fail(FS_ERROR_FONT_FILE, "'hmtx' table not found");
    return loadedTables->metrics.read(reader, *hmtx, headerTables.numberOfHMetrics,
                                      headerTables.maxp.numGlyphs);
}

bool FS_TrueTypeInfo::loadMort(SfntReader& reader) {
    if (hasVertLookups() || !directory.has(sfntTag("mort")))
        return true;
    std::vector<std::uint8_t> bytes;
    if (!reader.readTable(sfntTag("mort"), bytes))
        return reader.fail(FS_ERROR_FONT_READ, "'mort' table read error");
    loadedTables->mort.read(ByteView(bytes.data(), bytes.size()));
    return true;
}

bool FS_TrueTypeInfo::loadVertical(SfntReader& reader) {
    TTI_VerticalMetrics& vertical = loadedTables->vertical;
    bool ok = true;
    if (const TTI_TableRecord* vorg = directory.find(sfntTag("VORG")))
        ok = vertical.readVorg(reader, *vorg);
    // Vertical advances count only for a font that can also substitute vertical forms.
    if (!hasVertLookups() && loadedTables->mort.empty())
        headerTables.numOfLongVerMetrics = 0;
    if (headerTables.numOfLongVerMetrics == 0)
        return ok;
    const TTI_TableRecord* vmtx = directory.find(sfntTag("vmtx"));
    if (vmtx != nullptr && vertical.readVmtx(reader, *vmtx, headerTables.numOfLongVerMetrics))
        return ok;
    headerTables.numOfLongVerMetrics = 0;
    return false;
}

} // namespace KWFontService_NS
