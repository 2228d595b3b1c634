#include "fonts/TTI_Cmap.h"

#include "fonts/SfntPlatforms.h"
#include "fonts/cmap/CmapEncoding.h"
#include "fonts/cmap/CmapFormat0.h"
#include "fonts/cmap/CmapFormat14.h"
#include "fonts/cmap/CmapFormat2.h"
#include "fonts/cmap/CmapFormat4.h"
#include "fonts/cmap/CmapGroups.h"

#include <algorithm>
#include <array>
#include <optional>

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

constexpr std::size_t kHeaderSize = 4;
constexpr std::size_t kRecordSize = 8;

/// Unicode records below this encoding date from before Unicode 2.0; only `macFont` takes them.
constexpr std::uint16_t kUnicode20 = 3;

bool isReadEncoding(std::uint16_t platformID, std::uint16_t encodingID) {
    switch (platformID) {
    case kPlatformWindows:
        return encodingID <= 5 || encodingID == 10;
    case kPlatformMacintosh:
        return encodingID <= 3 || encodingID == 25;
    default:
        return true;
    }
}

} // namespace

struct TTI_Cmap::Slots {
    std::optional<CmapFormat0> cmapFormat0;
    std::optional<CmapFormat2> cmapFormat2;
    std::optional<CmapFormat4> cmapFormat4;
    std::optional<CmapFormat12> cmapFormat12;
    std::optional<CmapFormat13> cmapFormat13;
    std::optional<CmapFormat14> cmapFormat14;

    /// The format that answers, 0 also when there is none.
    int answering = 0;
    /// Of the subtable that answers; format 0 takes characters for codes.
    CmapEncoding encoding;
    unsigned int embedableCharCount = 0;

    bool holdsFormat(int format) const;
    bool holdsSubtable() const;
    /// Visits the records once. False after reporting what failed.
    bool readRecords(SfntReader& reader, std::uint64_t tableOffset, ByteView records, bool macFont,
                     std::optional<int>& unsupportedFormat);
    bool readSubtable(SfntReader& reader, std::uint64_t offset, int format,
                      std::uint16_t platformID, std::uint16_t encodingID);
    template <class Format>
    bool readFormat(SfntReader& reader, std::uint64_t offset, std::optional<Format>& slot,
                    int format, std::uint16_t platformID, std::uint16_t encodingID);
    void indexAnswering();
    unsigned short lookup(int ch, bool allowGlyphZero) const;
};

bool TTI_Cmap::Slots::holdsFormat(int format) const {
    switch (format) {
    case 0:
        return cmapFormat0.has_value();
    case 2:
        return cmapFormat2.has_value();
    case 4:
        return cmapFormat4.has_value();
    case 12:
        return cmapFormat12.has_value();
    case 13:
        return cmapFormat13.has_value();
    case 14:
        return cmapFormat14.has_value();
    default:
        return false;
    }
}

bool TTI_Cmap::Slots::holdsSubtable() const {
    return cmapFormat13 || cmapFormat12 || cmapFormat4 || cmapFormat2 || cmapFormat0;
}

bool TTI_Cmap::Slots::readRecords(SfntReader& reader, std::uint64_t tableOffset, ByteView records,
                                  bool macFont, std::optional<int>& unsupportedFormat) {
    for (std::size_t at = 0; at < records.size(); at += kRecordSize) {
        const std::uint8_t* record = records.data() + at;
        const std::uint16_t platformID = ByteView::loadU16(record);
        std::uint16_t encodingID = ByteView::loadU16(record + 2);
        if (platformID == kPlatformUnicode) {
            if (!macFont && encodingID < kUnicode20)
                continue;
            encodingID = 1;
        } else if (platformID != kPlatformMacintosh && platformID != kPlatformWindows) {
            continue;
        }
        const std::uint64_t offset = tableOffset + ByteView::loadU32(record + 4);
        std::array<std::uint8_t, 2> formatBytes;
        if (!reader.read(offset, formatBytes))
            return reader.fail(FS_ERROR_FONT_READ, "'cmap' table format read error");
        const int format = ByteView::loadU16(formatBytes.data());
        if (format != 0 && format != 2 && format != 4 && (format < 12 || format > 14)) {
            unsupportedFormat = format;
            continue;
        }
        if (!isReadEncoding(platformID, encodingID) || holdsFormat(format))
            continue;
        if (!readSubtable(reader, offset, format, platformID, encodingID))
            return false;
    }
    return true;
}

bool TTI_Cmap::Slots::readSubtable(SfntReader& reader, std::uint64_t offset, int format,
                                   std::uint16_t platformID, std::uint16_t encodingID) {
    switch (format) {
    case 0:
        return readFormat(reader, offset, cmapFormat0, format, platformID, encodingID);
    case 2:
        return readFormat(reader, offset, cmapFormat2, format, platformID, encodingID);
    case 4:
        return readFormat(reader, offset, cmapFormat4, format, platformID, encodingID);
    case 12:
        return readFormat(reader, offset, cmapFormat12, format, platformID, encodingID);
    case 13:
        return readFormat(reader, offset, cmapFormat13, format, platformID, encodingID);
    default:
        return readFormat(reader, offset, cmapFormat14, format, platformID, encodingID);
    }
}

template <class Format>
bool TTI_Cmap::Slots::readFormat(SfntReader& reader, std::uint64_t offset,
                                 std::optional<Format>& slot, int format, std::uint16_t platformID,
                                 std::uint16_t encodingID) {
    Format subtable;
    if (!subtable.read(reader, offset))
        return false;
    if constexpr (requires { subtable.charCount(); }) {
        embedableCharCount = std::max(embedableCharCount, subtable.charCount());
        // The higher format answers, whatever the order in the file.
        if (format >= answering) {
            answering = format;
            bool symbolRange = false;
            if constexpr (requires { subtable.isSymbolRange(); })
                symbolRange = subtable.isSymbolRange();
            if (format != 0)
                encoding = CmapEncoding(platformID, encodingID, symbolRange);
        }
    }
    slot = std::move(subtable);
    return true;
}

void TTI_Cmap::Slots::indexAnswering() {
    switch (answering) {
    case 4:
        cmapFormat4->buildIndex();
        break;
    case 12:
        cmapFormat12->buildIndex();
        break;
    case 13:
        cmapFormat13->buildIndex();
        break;
    default:
        break;
    }
}

unsigned short TTI_Cmap::Slots::lookup(int ch, bool allowGlyphZero) const {
    const int code = encoding.convert(ch);
    if (code == -1)
        return FS_NO_GLYPH;
    switch (answering) {
    case 4:
        return cmapFormat4->lookup(code, allowGlyphZero);
    case 12:
        return cmapFormat12->lookup(code, allowGlyphZero);
    case 13:
        return cmapFormat13->lookup(code, allowGlyphZero);
    case 2:
        return cmapFormat2->lookup(code);
    default:
        return cmapFormat0 ? cmapFormat0->lookup(code) : FS_NO_GLYPH;
    }
}

TTI_Cmap::TTI_Cmap() : slots_(std::make_unique<Slots>()) {}
TTI_Cmap::~TTI_Cmap() = default;

bool TTI_Cmap::read(SfntReader& reader, bool embedded, bool& macFont) {
    if (slots_->holdsSubtable())
        return true;
    const bool ok = readTable(reader, embedded, macFont);
    slots_->indexAnswering();
    return ok;
}

bool TTI_Cmap::readTable(SfntReader& reader, bool embedded, bool& macFont) {
    const TTI_TableRecord* table = reader.table(sfntTag("cmap"));
    if (!table)
        return embedded || reader.fail(FS_ERROR_FONT_FILE, "'cmap' table not found");
    std::array<std::uint8_t, kHeaderSize> header;
    if (!reader.read(table->offset, header))
        return reader.fail(FS_ERROR_FONT_READ, "'cmap' table read error");
    const std::size_t numTables = ByteView::loadU16(&header[2]);
    if (numTables == 0)
        return reader.fail(FS_ERROR_FONT_FILE, "'cmap' table has no record error");
    std::vector<std::uint8_t> bytes;
    if (!reader.read(std::uint64_t{table->offset} + kHeaderSize, numTables * kRecordSize, bytes))
        return reader.fail(FS_ERROR_FONT_READ, "'cmap' table record read error");
    const ByteView records(bytes);

    std::optional<int> unsupportedFormat;
    if (!slots_->readRecords(reader, table->offset, records, macFont, unsupportedFormat))
        return false;
    if (!slots_->holdsSubtable() && !macFont) {
        macFont = true;
        if (!slots_->readRecords(reader, table->offset, records, macFont, unsupportedFormat))
            return false;
    }
    if (slots_->holdsSubtable())
        return true;
    if (!unsupportedFormat)
        return reader.fail(FS_ERROR_FONT_FILE, "'cmap' table has no valid record error");
    const std::string number = std::to_string(*unsupportedFormat);
    UnicodeString detail("'cmap' table format ");
    detail.append(UnicodeString(number.c_str())).append(UnicodeString(" unsupported"));
    return reader.fail(FS_ERROR_FONT_FILE, detail);
}

bool TTI_Cmap::holdsSubtable() const {
    return slots_->holdsSubtable();
}

int TTI_Cmap::convertToCode(int ch) const {
    return slots_->encoding.convert(ch);
}

unsigned short TTI_Cmap::lookupGlyph(int ch, bool allowGlyphZero) const {
    return slots_->lookup(ch, allowGlyphZero);
}

bool TTI_Cmap::hasVariationSelector() const {
    return slots_->cmapFormat14.has_value();
}

unsigned short TTI_Cmap::variationSequence(int ch, int selector, bool allowGlyphZero) const {
    if (!slots_->cmapFormat14)
        return FS_NO_GLYPH;
    const CmapFormat14::Answer answer = slots_->cmapFormat14->lookup(ch, selector);
    switch (answer.kind) {
    case CmapFormat14::Answer::Kind::Default:
        return lookupGlyph(ch, allowGlyphZero);
    case CmapFormat14::Answer::Kind::Glyph:
        return answer.glyph;
    case CmapFormat14::Answer::Kind::NotListed:
        break;
    }
    return FS_NO_GLYPH;
}

unsigned int TTI_Cmap::embedableCharCount() const {
    return slots_->embedableCharCount;
}

} // namespace KWFontService_NS
