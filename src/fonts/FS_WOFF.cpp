#include "fonts/FS_WOFF.h"

#include "common/ByteView.h"
#include "common/KWLimits.h"
#include "common/StreamBytes.h"
#include "common/TagText.h"
#include "fonts/FS_OpenType.h"
#include "fonts/FS_ServiceContext.h"
#include "fonts/FontTyping.h"
#include "fonts/TTI_Directory.h"

#include <KWCommon15/KWUtil.h>

#include <algorithm>
#include <array>
#include <bit>
#include <limits>

namespace KWFontService_NS {

using KWCommonNS::ByteView;
using KWCommonNS::KWMutex;
using KWCommonNS::KWUtil;
using KWCommonNS::readStreamAt;
using KWCommonNS::streamSize;

namespace {

constexpr std::size_t kWoffHeaderSize = 44;
constexpr std::size_t kWoffEntrySize = 20;
constexpr std::size_t kWorkBufferSize = 1024;

/// Bytes that one byte of a zlib stream can become.
constexpr std::uint64_t kMostInflated = 1032;

/// How far an sfnt that comes out of a file of this size may go; offsets have 32 bits.
std::uint64_t sfntLimit(std::uint64_t fileSize) {
    constexpr std::uint64_t kMost = std::numeric_limits<std::uint32_t>::max();
    const std::uint64_t bounded = std::min(fileSize, kMost);
    return std::min(KWCommonNS::kWoffFreeBytes + KWCommonNS::kWoffInflateFactor * bounded, kMost);
}

/// The offset table: version, count, and the search fields that follow from it.
void storeOffsetTable(std::uint8_t* out, std::uint32_t flavor, std::uint16_t numTables) {
    const auto power = std::bit_floor(static_cast<unsigned>(numTables));
    ByteView::storeU32(out, flavor);
    ByteView::storeU16(out + 4, numTables);
    ByteView::storeU16(out + 6, static_cast<std::uint16_t>(16 * power));
    ByteView::storeU16(out + 8,
                       static_cast<std::uint16_t>(power > 0 ? std::bit_width(power) - 1 : 0));
    ByteView::storeU16(out + 10, static_cast<std::uint16_t>(16 * (numTables - power)));
}

} // namespace

/// What goes from one table to the next.
struct FS_WOFF::Unpacking {
    std::istream& file;
    std::uint64_t limit;                 ///< of the sfnt's size
    std::uint64_t unread;                ///< bytes of the file that tables may still take
    std::uint64_t nextOffset;            ///< where the next table goes
    std::vector<std::uint8_t> directory; ///< offset table and records
    std::vector<std::uint8_t> buffer;
};

FS_WOFF::FS_WOFF(const KWUri& fontUri) : FS_ExtraFont(fontUri) {}
FS_WOFF::~FS_WOFF() = default;

unsigned int FS_WOFF::getClassId() const {
    return FS_CLASSID_WOFF;
}

bool FS_WOFF::isKindOf(unsigned int id) const {
    return id == FS_CLASSID_WOFF || FS_ExtraFont::isKindOf(id);
}

UnicodeString FS_WOFF::getClassName() const {
    return UnicodeString("FS_WOFF");
}

FS_FontFileType FS_WOFF::getFontFileType(int) const {
    return FS_FILETYPE_WOFF;
}

KWMemStream* FS_WOFF::getFontStream() {
    return sfntStream.get();
}

bool FS_WOFF::loadFont(KWError& error, int faceIndex, std::istream*) {
    if (!innerFont)
        return false;
    KWMutex mutex(streamLock_);
    mutex.lock();
    return innerFont->loadFont(error, faceIndex, sfntStream.get());
}

FT_FaceRec_* FS_WOFF::getFTFace(int faceIndex) {
    {
        // An open face does not wait for a writer, which has the stream for long.
        KWMutex mutex(FS_ServiceContext::freeTypeLock());
        mutex.lock();
        if (ftFaceTried)
            return ftFace.get();
    }
    KWMutex mutex(streamLock_);
    mutex.lock();
    // Not the font inside, whose file is the packed one.
    return FS_BaseFont::getFTFace(faceIndex); // NOLINT(bugprone-parent-virtual-call)
}

bool FS_WOFF::makePostScriptCIDFontType0(const std::vector<unsigned short>& glyphs,
                                         KWMemStream& output, UnicodeString& fontName,
                                         FS_CIDSystemInfo& info, int faceIndex) {
    // The font inside would open its file, which is the packed one.
    auto* const font = dynamic_cast<FS_OpenType*>(innerFont.get());
    if (font == nullptr)
        return false;
    KWMutex mutex(streamLock_);
    mutex.lock();
    return font->face(faceIndex)->makePostScriptCIDFontType0(glyphs, output, fontName, info,
                                                             sfntStream.get());
}

bool FS_WOFF::getEmbedFontStream(KWMemStream& output, std::istream* stream, int faceIndex) {
    if (!innerFont)
        return false;
    if (stream != nullptr)
        return innerFont->getEmbedFontStream(output, stream, faceIndex);
    KWMutex mutex(streamLock_);
    mutex.lock();
    // Asking for the bytes makes of a stream over them one that has them.
    return innerFont->getEmbedFontStream(output, sfntStream.get(), faceIndex) &&
           output.data() != nullptr;
}

bool FS_WOFF::failRead(KWError& error) const {
    return fontError(error, FS_ERROR_FONT_READ, UnicodeString());
}

bool FS_WOFF::failFile(KWError& error, const char* detail) const {
    return fontError(error, FS_ERROR_FONT_FILE, UnicodeString(detail));
}

bool FS_WOFF::scanFont(KWError& error, std::istream& stream) {
    if (!unpack(error, stream))
        return false;
    sfntStream->clear();
    sfntStream->seekg(0);
    innerFont = createFontObject(uri, sfntTypeOf(*sfntStream));
    if (!innerFont)
        return false;
    innerFont->setFontEntrySettings(getFontEntrySettings());
    return innerFont->scanFont(error, *sfntStream);
}

bool FS_WOFF::unpack(KWError& error, std::istream& stream) {
    std::array<std::uint8_t, kWoffHeaderSize> header;
    if (readStreamAt(stream, 0, header) != header.size())
        return failRead(error);
    const std::uint32_t totalSfntSize = ByteView::loadU32(&header[16]);
    if (ByteView::loadU32(header.data()) != KWCommonNS::sfntTag("wOFF") ||
        totalSfntSize < TTI_Directory::kHeaderSize)
        return failFile(error, "Invalid WOFF header.");
    const std::uint16_t numTables = ByteView::loadU16(&header[12]);

    const std::uint64_t fileSize = streamSize(stream);
    const std::size_t tablesAt =
        TTI_Directory::kHeaderSize + TTI_Directory::kRecordSize * numTables;
    Unpacking state{stream, sfntLimit(fileSize), fileSize, tablesAt, {}, {}};
    state.directory.resize(tablesAt);
    state.buffer.reserve(kWorkBufferSize);
    storeOffsetTable(state.directory.data(), ByteView::loadU32(&header[4]), numTables);

    sfntStream = std::make_unique<KWMemStream>();
    // What the file promises, if all of it could come to that; a size that does not count the
    // padding of tables is common.
    const std::uint64_t promised = totalSfntSize + std::uint64_t{3} * numTables;
    sfntStream->rdbuf()->reserve(static_cast<std::size_t>(
        std::min({promised, state.limit, kMostInflated * fileSize + tablesAt})));
    for (std::size_t i = 0; i < numTables; ++i) {
        if (!unpackTable(error, state, i))
            return false;
    }
    sfntStream->seekp(0);
    sfntStream->write(reinterpret_cast<const char*>(state.directory.data()),
                      static_cast<std::streamsize>(state.directory.size()));
    return sfntStream->good() || failFile(error, "Uncompress error.");
}

bool FS_WOFF::unpackTable(KWError& error, Unpacking& state, std::size_t index) {
    std::array<std::uint8_t, kWoffEntrySize> entry;
    if (readStreamAt(state.file, kWoffHeaderSize + index * kWoffEntrySize, entry) != entry.size())
        return failRead(error);
    const std::uint32_t offset = ByteView::loadU32(&entry[4]);
    const std::uint32_t compLength = ByteView::loadU32(&entry[8]);
    const std::uint32_t origLength = ByteView::loadU32(&entry[12]);

    std::uint8_t* const record =
        &state.directory[TTI_Directory::kHeaderSize + index * TTI_Directory::kRecordSize];
    std::copy_n(&entry[0], 4, record);
    std::copy_n(&entry[16], 4, record + 4);
    ByteView::storeU32(record + 8, static_cast<std::uint32_t>(state.nextOffset));
    ByteView::storeU32(record + 12, origLength);

    // Tables that share their bytes could ask for the file again and again.
    if (compLength > state.unread ||
        readStreamAt(state.file, offset, compLength, state.buffer) != compLength)
        return failRead(error);
    state.unread -= compLength;
    if (state.nextOffset + origLength > state.limit)
        return failFile(error, "Uncompress error.");

    sfntStream->seekp(static_cast<std::streamoff>(state.nextOffset));
    if (compLength != origLength) {
        if (!KWUtil::inflate(*sfntStream, state.buffer.data(), state.buffer.size(), origLength))
            return failFile(error, "Uncompress error.");
    } else {
        sfntStream->write(reinterpret_cast<const char*>(state.buffer.data()), compLength);
    }
    // Padded from where the data really ended.
    const auto end = static_cast<std::uint64_t>(sfntStream->tellp());
    const std::uint64_t padding = (4 - end % 4) % 4;
    static constexpr char kZeros[3] = {};
    sfntStream->write(kZeros, static_cast<std::streamsize>(padding));
    state.nextOffset += origLength + padding;
    return sfntStream->good() || failFile(error, "Uncompress error.");
}

} // namespace KWFontService_NS
