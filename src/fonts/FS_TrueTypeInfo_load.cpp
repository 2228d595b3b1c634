#include "fonts/FS_TrueTypeInfo.h"

#include "fonts/FS_FontFileOptions.h"
#include "fonts/FontErrors.h"
#include "fonts/FontStream.h"

#include <KWCommon15/KWLock.h>

#include <algorithm>
#include <utility>

namespace KWFontService_NS {

using KWCommonNS::ByteView;
using KWCommonNS::KWMutex;

void FS_TrueTypeInfo::finishLoad() noexcept {
    if (loadedTables_)
        usableTables_.store(loadedTables_.get(), std::memory_order_release);
    loaded.store(true, std::memory_order_release);
}

bool FS_TrueTypeInfo::loadTables(KWError& error, std::istream* stream, bool embedded) {
    if (isLoaded())
        return answerLoad(error);
    KWMutex mutex(loadLock);
    mutex.lock();
    if (isLoaded())
        return answerLoad(error);

    // However the stage is left: a reader that throws leaves a failed load, which is not tried
    // again.
    const struct LoadEnd {
        FS_TrueTypeInfo& face;
        ~LoadEnd() { face.finishLoad(); }
    } end{*this};
    loadOk = false;
    if (const FS_FontFileOptions* settings = owner->getFontEntrySettings())
        allowGlyphZero = settings->useZeroGlyphId;
    std::unique_ptr<std::istream> own;
    if (stream == nullptr) {
        own = openFontStream(owner->getUri());
        stream = own.get();
    }
    if (stream != nullptr)
        loadOk = loadEveryTable(error, *stream, embedded);
    else
        error = cannotReadFontError(owner->getUri());
    if (!loadOk)
        loadError_ = std::make_unique<KWError>(error);
    return loadOk;
}

bool FS_TrueTypeInfo::answerLoad(KWError& error) const {
    // A load that was left by an exception has kept no error of its own.
    if (!loadOk)
        error = loadError_ ? *loadError_ : cannotReadFontError(owner->getUri());
    return loadOk;
}

bool FS_TrueTypeInfo::loadEveryTable(KWError& error, std::istream& stream, bool embedded) {
    loadedTables_ = std::make_unique<LoadedTables>();
    SfntReader reader(stream, tableDirectory, error, owner);
    // One bad table neither stops the others nor undoes them.
    bool allOk = true;
    const auto step = [&allOk](bool ok) { allOk = ok && allOk; };

    step(loadCff(reader, stream));
    step(loadGdef(reader));
    step(loadLayout(reader, TTI_LayoutTable::Kind::Gpos, loadedTables_->gpos));
    step(loadLayout(reader, TTI_LayoutTable::Kind::Gsub, loadedTables_->gsub));
    step(loadedTables_->cmap.read(reader, embedded, macFont));
    step(loadedTables_->kern.read(reader));
    step(loadMaxp(reader));
    step(loadHmtx(reader));
    step(loadMort(reader));
    step(loadVorg(reader));
    step(loadMath(reader));
    step(loadVerticalAdvances(reader));
    // Font program 0 is left to an encoding that is the font's own.
    if (nextCode == 0 && Type1CMap::getEncodingScheme() != FS_ENCODING_STANDARD)
        nextCode = kCodesOfAFont;
    return allOk;
}

std::uint64_t FS_TrueTypeInfo::loadSize(std::uint64_t fileSize) const {
    std::uint64_t size = 0;
    for (const std::uint32_t tag :
         {sfntTag("CFF "), sfntTag("GDEF"), sfntTag("GPOS"), sfntTag("GSUB"), sfntTag("cmap"),
          sfntTag("kern"), sfntTag("maxp"), sfntTag("hmtx"), sfntTag("mort"), sfntTag("VORG"),
          sfntTag("MATH"), sfntTag("vmtx")}) {
        if (const TTI_TableRecord* const record = tableDirectory.find(tag))
            size += std::min<std::uint64_t>(record->length, fileSize);
    }
    return size;
}

bool FS_TrueTypeInfo::loadCff(SfntReader& reader, std::istream& stream) {
    const TTI_TableRecord* cff = tableDirectory.find(sfntTag("CFF "));
    if (cff == nullptr) {
        if (!owner->isOpenType())
            return true;
        return reader.fail(FS_ERROR_FONT_FILE, tableDirectory.has(sfntTag("CFF2"))
                                                   ? "'CFF2' table not supported"
                                                   : "'CFF' table not found");
    }
    CFFStream table(stream, cff->offset, cff->length);
    return readCFFTable(table) || reader.fail(FS_ERROR_FONT_READ, "'CFF' table read error");
}

bool FS_TrueTypeInfo::loadGdef(SfntReader& reader) {
    if (!tableDirectory.has(sfntTag("GDEF")))
        return true;
    std::vector<std::uint8_t> bytes;
    if (!reader.readTable(sfntTag("GDEF"), bytes))
        return reader.fail(FS_ERROR_FONT_READ, "'GDEF' table read error");
    switch (loadedTables_->gdef.read(ByteView(bytes.data(), bytes.size()))) {
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
    if (!tableDirectory.has(tag))
        return true;
    const auto fail = [&](FS_ERROR code, const char* what) {
        return reader.fail(code,
                           UnicodeString(gsub ? "'GSUB'" : "'GPOS'").append(UnicodeString(what)));
    };
    std::vector<std::uint8_t> bytes;
    if (!reader.readTable(tag, bytes))
        return fail(FS_ERROR_FONT_READ, " table read error");
    bool ok = true;
    for (const TTI_LayoutTable::List list : table.read(std::move(bytes), kind)) {
        switch (list) {
        case TTI_LayoutTable::List::Features:
            ok = fail(FS_ERROR_FONT_FILE, " feature list read error");
            break;
        case TTI_LayoutTable::List::Lookups:
            ok = fail(FS_ERROR_FONT_FILE, " lookup list read error");
            break;
        case TTI_LayoutTable::List::Scripts:
            ok = fail(FS_ERROR_FONT_FILE, " sclipt list read error");
            break;
        }
    }
    return ok;
}

bool FS_TrueTypeInfo::loadMaxp(SfntReader& reader) {
    const TTI_TableRecord* maxp = tableDirectory.find(sfntTag("maxp"));
    return maxp == nullptr || headerTables_.readMaxp(reader, *maxp);
}

bool FS_TrueTypeInfo::loadHmtx(SfntReader& reader) {
    if (headerTables_.numberOfHMetrics == 0)
        return true;
    const TTI_TableRecord* hmtx = tableDirectory.find(sfntTag("hmtx"));
    if (hmtx == nullptr)
        return reader.fail(FS_ERROR_FONT_FILE, "'hmtx' table not found");
    return loadedTables_->metrics.read(reader, *hmtx, headerTables_.numberOfHMetrics,
                                       headerTables_.maxp.numGlyphs);
}

bool FS_TrueTypeInfo::loadMort(SfntReader& reader) {
    if (loadedTables_->gsub.hasVertFeature() || !tableDirectory.has(sfntTag("mort")))
        return true;
    std::vector<std::uint8_t> bytes;
    if (!reader.readTable(sfntTag("mort"), bytes))
        return reader.fail(FS_ERROR_FONT_READ, "'mort' table read error");
    loadedTables_->mort.read(ByteView(bytes.data(), bytes.size()));
    return true;
}

bool FS_TrueTypeInfo::loadVorg(SfntReader& reader) {
    const TTI_TableRecord* vorg = tableDirectory.find(sfntTag("VORG"));
    return vorg == nullptr || loadedTables_->vertical.readVorg(reader, *vorg);
}

bool FS_TrueTypeInfo::loadMath(SfntReader& reader) {
    if (!tableDirectory.has(sfntTag("MATH")))
        return true;
    std::vector<std::uint8_t> bytes;
    if (!reader.readTable(sfntTag("MATH"), bytes))
        return reader.fail(FS_ERROR_FONT_READ, "'MATH' table read error");
    loadedTables_->math.read(ByteView(bytes.data(), bytes.size()));
    return true;
}

bool FS_TrueTypeInfo::loadVerticalAdvances(SfntReader& reader) {
    // They count only for a font that can also substitute vertical forms.
    if (!loadedTables_->gsub.hasVertFeature() && loadedTables_->mort.empty())
        headerTables_.numOfLongVerMetrics = 0;
    if (headerTables_.numOfLongVerMetrics == 0)
        return true;
    // The scan has found `vmtx` wherever it left a number of metrics.
    if (loadedTables_->vertical.readVmtx(reader, *tableDirectory.find(sfntTag("vmtx")),
                                         headerTables_.numOfLongVerMetrics))
        return true;
    headerTables_.numOfLongVerMetrics = 0;
    return false;
}

} // namespace KWFontService_NS
