#include "fonts/FS_TrueTypeInfo.h"

#include <KWCommon15/KWLang.h>

#include <array>
#include <string>

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

constexpr std::uint32_t kVersionTrueType = 0x00010000;
constexpr const char* kOffsetTableError = "Offset table read error";

/// Whether a file type may have faces without `OS/2`.
bool toleratesMissingOS2(FS_FontFileType type) {
    return type == FS_FILETYPE_TRUETYPE || type == FS_FILETYPE_OPENTYPE ||
           type == FS_FILETYPE_DFONT;
}

bool isVersionOf(FS_FontFileType type, std::uint32_t version) {
    if (type == FS_FILETYPE_OPENTYPE || type == FS_FILETYPE_OPENTYPE_CID)
        return version == sfntTag("OTTO");
    return version == kVersionTrueType || version == sfntTag("true") || version == sfntTag("typ1");
}

KWLang::LanguageID systemLanguage() {
    return static_cast<KWLang::LanguageID>(KWLang::getDefaultLocale().getLCID());
}

} // namespace

FS_TrueTypeInfo::FS_TrueTypeInfo() {
    static const LoadedTables kNone;
    usableTables_.store(&kNone, std::memory_order_relaxed);
}
FS_TrueTypeInfo::~FS_TrueTypeInfo() = default;

bool FS_TrueTypeInfo::readOffsetTable(KWError& error, std::istream& stream, FS_BaseFont& font,
                                      bool embedded) {
    owner = &font;
    SfntReader reader(stream, tableDirectory, error, owner);
    stream.clear();
    const std::streamoff start = stream.tellg();
    if (start < 0)
        return reader.fail(FS_ERROR_FONT_READ, kOffsetTableError);
    return scan(reader, static_cast<std::uint64_t>(start), embedded);
}

bool FS_TrueTypeInfo::readOffsetTable(KWError& error, std::istream& stream, std::uint64_t start,
                                      FS_BaseFont& font, ScanBudget& budget) {
    owner = &font;
    SfntReader reader(stream, tableDirectory, error, owner, &budget);
    return scan(reader, start, false);
}

bool FS_TrueTypeInfo::scan(SfntReader& reader, std::uint64_t start, bool embedded) {
    std::array<std::uint8_t, TTI_Directory::kHeaderSize> offsetTable;
    if (!reader.read(start, offsetTable))
        return reader.fail(FS_ERROR_FONT_READ, kOffsetTableError);
    const std::uint16_t numTables = ByteView::loadU16(&offsetTable[4]);
    if (numTables == 0)
        return reader.fail(FS_ERROR_FONT_FILE, "OffsetTable.numTables = 0");
    std::vector<std::uint8_t> records;
    if (!reader.read(start + offsetTable.size(), numTables * TTI_Directory::kRecordSize, records))
        return reader.fail(FS_ERROR_FONT_READ, "Table directory read error");
    // The offsets of a dfont count from the start of the font inside the resource.
    const auto rebase = owner->getFontFileType(0) == FS_FILETYPE_DFONT
                            ? static_cast<std::uint32_t>(start)
                            : std::uint32_t{0};
    tableDirectory = TTI_Directory(ByteView::loadU32(offsetTable.data()),
                                   ByteView(records.data(), records.size()), rebase);

    // Asked for now that the directory is there, from which a collection answers.
    if (!isVersionOf(owner->getFontFileType(0), tableDirectory.version()))
        return false;
    if (tableDirectory.version() == sfntTag("true") &&
        !(tableDirectory.has(sfntTag("head")) && tableDirectory.has(sfntTag("hhea")) &&
          tableDirectory.has(sfntTag("hmtx"))))
        return false;
    if (!tableDirectory.has(sfntTag("glyf")) && !tableDirectory.has(sfntTag("CFF ")))
        return reader.fail(FS_ERROR_FONT_FILE, "'glyf' or 'CFF' table not found");
    if (!readRequiredTables(reader, embedded) || !readOptionalScanTables(reader))
        return false;
    if (!embedded)
        nameTable_.chooseDefault(systemLanguage());
    return true;
}

bool FS_TrueTypeInfo::readRequiredTables(SfntReader& reader, bool embedded) {
    if (!headerTables_.readHead(reader) || !headerTables_.readHhea(reader))
        return false;

    const FS_FontFileType type = owner->getFontFileType(0);
    if (const TTI_TableRecord* os2 = tableDirectory.find(sfntTag("OS/2"))) {
        macFont = macFont || type == FS_FILETYPE_DFONT;
        if (!headerTables_.readOS2(reader, *os2))
            return false;
    } else if (toleratesMissingOS2(type)) {
        macFont = true;
        headerTables_.synthesizeOS2();
    } else {
        return reader.fail(FS_ERROR_FONT_FILE, "'OS/2' table not found");
    }
    headerTables_.completeWinMetrics();

    if (const TTI_TableRecord* name = tableDirectory.find(sfntTag("name"))) {
        if (!nameTable_.read(reader, *name, macFont))
            return false;
    } else if (!embedded) {
        return reader.fail(FS_ERROR_FONT_FILE, "'name' table not found");
    }

    if (const TTI_TableRecord* post = tableDirectory.find(sfntTag("post")))
        return headerTables_.readPost(reader, *post);
    return embedded || reader.fail(FS_ERROR_FONT_FILE, "'post' table not found");
}

bool FS_TrueTypeInfo::readOptionalScanTables(SfntReader& reader) {
    const TTI_TableRecord* vhea = tableDirectory.find(sfntTag("vhea"));
    if (vhea == nullptr)
        return true;
    if (!headerTables_.readVhea(reader, *vhea))
        return false;
    if (headerTables_.numOfLongVerMetrics == 0)
        return true;
    const TTI_TableRecord* vmtx = tableDirectory.find(sfntTag("vmtx"));
    if (vmtx == nullptr) {
        headerTables_.numOfLongVerMetrics = 0;
        return true;
    }
    return TTI_VerticalMetrics::checkVmtx(reader, *vmtx, headerTables_.numOfLongVerMetrics);
}

bool FS_TrueTypeInfo::hasLoadedCff() const {
    return isLoaded() && tableDirectory.has(sfntTag("CFF "));
}

FS_EncodingScheme FS_TrueTypeInfo::getEncodingScheme() const {
    return hasLoadedCff() ? Type1CMap::getEncodingScheme() : FS_ENCODING_NONE;
}

bool FS_TrueTypeInfo::getCIDSystemInfo(FS_CIDSystemInfo& info) const {
    return hasLoadedCff() && Type1CMap::getCIDSystemInfo(info);
}

unsigned short FS_TrueTypeInfo::getType1CharCode(int ch) {
    if (!hasLoadedCff())
        return 0;
    const unsigned short known = unicodeCode(ch);
    return known != 0 ? known : giveCharCode(ch, getGlyphID(ch, false));
}

unsigned short FS_TrueTypeInfo::getType1GlyphIDCode(unsigned short gid) {
    return hasLoadedCff() ? giveGlyphCode(gid) : static_cast<unsigned short>(0);
}

const FS_BaseFont::Type1CMapArray*
FS_TrueTypeInfo::getType1CMapArray(unsigned char fontNumber) const {
    return Type1CMap::getType1CMapArray(fontNumber);
}

bool FS_TrueTypeInfo::getType1CMapPair(unsigned char fontNumber, int index, unsigned char& code,
                                       std::string& name) const {
    return Type1CMap::getType1CMapPair(fontNumber, index, code, name);
}

bool FS_TrueTypeInfo::getType1GlyphName(unsigned char fontNumber, unsigned char code,
                                        std::string& name) const {
    return Type1CMap::getType1GlyphName(fontNumber, code, name);
}

const Type1CMap* FS_TrueTypeInfo::getCFFInfo() const {
    return isLoaded() ? this : nullptr;
}

} // namespace KWFontService_NS
