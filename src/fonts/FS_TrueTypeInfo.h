#pragma once

#include "cff/Type1CMap.h"
#include "fonts/EudcLink.h"
#include "fonts/FS_OperationMacros.h"
#include "fonts/TTI_Cmap.h"
#include "fonts/TTI_Directory.h"
#include "fonts/TTI_Header.h"
#include "fonts/TTI_Kern.h"
#include "fonts/TTI_Math.h"
#include "fonts/TTI_Metrics.h"
#include "fonts/TTI_Names.h"
#include "fonts/TTI_VerticalMetrics.h"
#include "layout/TTI_Gdef.h"
#include "layout/TTI_LayoutTable.h"
#include "layout/TTI_Mort.h"

#include <KWFontService17/FS_BaseFont.h>

#include <KWCommon15/KWLock.h>

#include <atomic>
#include <cstdint>
#include <istream>
#include <memory>
#include <vector>

namespace KWFontService_NS {

/// The tables of one sfnt face, read in two stages: `readOffsetTable` takes what identifies the
/// face, `loadTables` the rest on first use. It answers the face-wise operations of `FS_BaseFont`
/// for the font that owns it.
///
/// After a load the queries take no lock. The writers are called by one thread at a time.
class FS_TrueTypeInfo : public Type1CMap {
public:
    FS_TrueTypeInfo();
    ~FS_TrueTypeInfo() override;
    FS_TrueTypeInfo(const FS_TrueTypeInfo&) = delete;
    FS_TrueTypeInfo& operator=(const FS_TrueTypeInfo&) = delete;

    // --- reading --------------------------------------------------------------------------------

    /// The scan stage, from the stream's position on. False when this is not a usable face, with
    /// `error` set unless the version word or a missing table of an old Macintosh font says so.
    /// @param font      the font that owns this face: its file type decides what is tolerated
    /// @param embedded  a subset from a document: names may be missing
    bool readOffsetTable(KWError& error, std::istream& stream, FS_BaseFont& font, bool embedded);
    /// The same from `start` on, for one of the faces that share `budget`.
    bool readOffsetTable(KWError& error, std::istream& stream, std::uint64_t start,
                         FS_BaseFont& font, ScanBudget& budget);

    /// The load stage, once; later calls answer the first result and its error. One bad table
    /// neither stops nor undoes the others. A null stream means that the face opens its own, under
    /// `loadLock`.
    bool loadTables(KWError& error, std::istream* stream, bool embedded);

    /// What the tables that a load reads claim, each no more than the file has.
    std::uint64_t loadSize(std::uint64_t fileSize) const;

    bool isLoaded() const { return loaded.load(std::memory_order_acquire); }

    /// Null when the font lacks the table.
    const TTI_TableRecord* getTableEntry(std::uint32_t tag) const {
        return tableDirectory.find(tag);
    }

    // --- the face-wise operations ---------------------------------------------------------------

#define FS_DECLARE_ALL(result, name, parameters, arguments, qualifier, missing)                    \
    result name parameters qualifier;
#define FS_DECLARE_NODFONT FS_DECLARE_ALL
#define FS_DECLARE_CFF FS_DECLARE_ALL
#define FS_DECLARE_OWN(...)
#define FS_OPERATION(faces, wrapper, facade, ...) FS_DECLARE_##faces(__VA_ARGS__)
#include "fonts/FS_FaceOperations.inc"
#undef FS_DECLARE_ALL
#undef FS_DECLARE_NODFONT
#undef FS_DECLARE_CFF
#undef FS_DECLARE_OWN

    /// The typographic descender itself, which files with one face do not tell.
    float getTypoDescender() const;
    void setPostScriptName(const UnicodeString& name);
    void setHasVerticalGlyph() {
        verticalGlyphsGiven_.store(true, std::memory_order_relaxed);
    }
    /// The face's file as it stands: `output` becomes a stream over `source`, which the caller
    /// keeps alive as long; null opens the font's own, which `output` then owns. Of a face with
    /// `CFF ` outlines that table is appended instead.
    bool getEmbedFontStream(KWMemStream& output, std::istream* source);
    /// The same from `source`; null opens the font's own.
    bool makePostScriptCIDFontType0(const std::vector<unsigned short>& glyphs, KWMemStream& output,
                                    UnicodeString& fontName, FS_CIDSystemInfo& info,
                                    std::istream* source);
    /// False before a load, too.
    bool isCIDFont() const {
        return isLoaded() && isCID;
    }

    // --- tables ---------------------------------------------------------------------------------

    /// What only the load stage fills; a face that was only scanned does not have it.
    struct LoadedTables {
        TTI_Cmap cmap;
        TTI_Metrics metrics;
        TTI_VerticalMetrics vertical;
        TTI_Kern kern;
        TTI_Gdef gdef;
        TTI_LayoutTable gsub;
        TTI_LayoutTable gpos;
        TTI_Mort mort;
        TTI_Math math;
    };

    const TTI_Directory& getTableDirectory() const {
        return tableDirectory;
    }
    const TTI_Header& header() const {
        return headerTables_;
    }
    const TTI_Names& names() const {
        return nameTable_;
    }
    /// Empty tables before the load is over.
    const LoadedTables& tables() const {
        return *usableTables_.load(std::memory_order_acquire);
    }
    FS_BaseFont* ownerFont() const {
        return owner;
    }

    /// The source's whole `loca`, kept from the first subset on.
    std::vector<std::uint8_t> locaCache;

private:
    bool scan(SfntReader& reader, std::uint64_t start, bool embedded);
    bool readRequiredTables(SfntReader& reader, bool embedded);
    bool readOptionalScanTables(SfntReader& reader);
    void finishLoad() noexcept;
    bool answerLoad(KWError& error) const;
    bool loadEveryTable(KWError& error, std::istream& stream, bool embedded);
    bool loadCff(SfntReader& reader, std::istream& stream);
    bool loadGdef(SfntReader& reader);
    bool loadLayout(SfntReader& reader, TTI_LayoutTable::Kind kind, TTI_LayoutTable& table);
    bool loadMaxp(SfntReader& reader);
    bool loadHmtx(SfntReader& reader);
    bool loadMort(SfntReader& reader);
    bool loadVorg(SfntReader& reader);
    bool loadMath(SfntReader& reader);
    bool loadVerticalAdvances(SfntReader& reader);

    bool hasLoadedCff() const;
    bool hasVertLookups() const {
        return tables().gsub.hasVertFeature();
    }
    unsigned short lookUpGlyph(const LoadedTables& present, int ch, bool vertical) const;
    /// What a size stands for in font units: the em below zero, else the height of a line.
    int sizeDivisor(int size) const;
    /// The size rule of the metric operations.
    float scaled(int value, int size) const;
    /// The advance in font units that `getGlyphWidth` scales.
    std::uint16_t unscaledAdvance(unsigned short gid, bool vertical) const;
    /// This face's own or the service's font that has an end-user-defined character.
    FS_FontRef findEudcGlyph(int ch, unsigned short& gid) const;

    FS_BaseFont* owner = nullptr;
    TTI_Directory tableDirectory;
    TTI_Header headerTables_;
    TTI_Names nameTable_;
    std::unique_ptr<LoadedTables> loadedTables_;
    std::atomic<const LoadedTables*> usableTables_;
    EudcLink eudcLink_;
    bool macFont = false;
    bool allowGlyphZero = false;
    std::atomic<bool> verticalGlyphsGiven_ = false; ///< set by whoever opens the font
    bool loadOk = false;
    std::unique_ptr<KWError> loadError_; ///< null unless the load failed
    std::atomic<bool> loaded = false;
    KWCommonNS::KWLock loadLock;
};

} // namespace KWFontService_NS
