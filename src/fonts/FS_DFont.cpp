#include "fonts/FS_DFont.h"

#include "common/ByteView.h"
#include "common/KWLimits.h"
#include "common/StreamBytes.h"

#include <array>
#include <optional>

namespace KWFontService_NS {

using KWCommonNS::ByteView;
using KWCommonNS::readStreamAt;

namespace {

constexpr std::size_t kHeaderSize = 16;
constexpr std::size_t kMapHeaderSize = 30;
constexpr std::size_t kTypeListOffsetAt = 24;
constexpr std::size_t kTypeCountAt = 28;
constexpr std::size_t kTypeEntrySize = 8;
constexpr std::size_t kReferenceSize = 12;
constexpr std::size_t kDataOffsetAt = 5;
constexpr std::size_t kLengthWordSize = 4;

/// The resources of one type: how many, and where their references stand in the type list.
struct ResourceType {
    std::uint32_t count = 0;
    std::uint16_t references = 0;
};

/// Looks for `sfnt` among the types.
/// @param first  place of the first type entry
/// @return  false on a short read
bool findSfntType(std::istream& stream, std::uint64_t first, std::uint32_t typeCount,
                  std::optional<ResourceType>& sfnt) {
    for (std::uint32_t i = 0; i < typeCount; ++i) {
        std::array<std::uint8_t, kTypeEntrySize> entry;
        if (readStreamAt(stream, first + i * kTypeEntrySize, entry) != entry.size())
            return false;
        if (ByteView::loadU32(entry.data()) != sfntTag("sfnt"))
            continue;
        sfnt = ResourceType{ByteView::loadU16(&entry[4]) + 1U, ByteView::loadU16(&entry[6])};
        return true;
    }
    return true;
}

} // namespace

FS_DFont::FS_DFont(const KWUri& fontUri) : FS_FaceForwarder(fontUri) {}

unsigned int FS_DFont::getClassId() const {
    return FS_CLASSID_DFONT;
}

bool FS_DFont::isKindOf(unsigned int id) const {
    return id == FS_CLASSID_DFONT || FS_BaseFont::isKindOf(id);
}

UnicodeString FS_DFont::getClassName() const {
    return UnicodeString("FS_DFont");
}

FS_FontFileType FS_DFont::getFontFileType(int) const {
    return FS_FILETYPE_DFONT;
}
bool FS_DFont::isType1OrNoCID(int) const {
    return false;
}
bool FS_DFont::isTrueTypeOrCID(int) const {
    return true;
}

bool FS_DFont::failScan(KWError& error, FS_ERROR code) const {
    return fontError(error, code, UnicodeString());
}

bool FS_DFont::scanFont(KWError& error, std::istream& stream) {
    startScan(stream);
    std::array<std::uint8_t, kHeaderSize> header;
    if (readStreamAt(stream, 0, header) != header.size())
        return failScan(error, FS_ERROR_FONT_READ);
    const std::uint64_t dataAt = ByteView::loadU32(header.data());
    const std::uint64_t mapAt = ByteView::loadU32(&header[4]);

    std::array<std::uint8_t, kMapHeaderSize> map;
    if (readStreamAt(stream, mapAt, map) != map.size())
        return failScan(error, FS_ERROR_FONT_READ);
    const std::uint64_t typesAt = mapAt + ByteView::loadU16(&map[kTypeListOffsetAt]);
    // The count is one less than the number of types, so 0xFFFF stands for none.
    const auto typeCount = static_cast<std::uint16_t>(ByteView::loadU16(&map[kTypeCountAt]) + 1);

    std::optional<ResourceType> sfnt;
    if (!findSfntType(stream, typesAt + 2, typeCount, sfnt))
        return failScan(error, FS_ERROR_FONT_READ);
    if (!sfnt)
        return failScan(error, FS_ERROR_FONT_FILE);

    std::vector<std::uint8_t> references;
    const std::size_t size = kReferenceSize * sfnt->count;
    if (readStreamAt(stream, typesAt + sfnt->references, size, references) != size)
        return failScan(error, FS_ERROR_FONT_READ);
    if (sfnt->count > KWCommonNS::kMaxFaces)
        return failScan(error, FS_ERROR_FONT_FILE);

    faceCount = static_cast<int>(sfnt->count);
    ScanBudget budget(KWCommonNS::kMaxFacesScanBytes);
    for (std::size_t at = 0; at < references.size(); at += kReferenceSize) {
        const std::uint64_t offset =
            ByteView::loadU32(&references[at + kDataOffsetAt - 1]) & 0xFFFFFF;
        if (!scanFace(error, stream, dataAt + offset + kLengthWordSize, budget))
            return false;
    }
    finishScan();
    return true;
}

} // namespace KWFontService_NS
