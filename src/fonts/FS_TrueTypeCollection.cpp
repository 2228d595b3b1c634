#include "fonts/FS_TrueTypeCollection.h"

#include "common/ByteView.h"
#include "common/KWLimits.h"
#include "common/StreamBytes.h"

#include <array>
#include <cstdio>

namespace KWFontService_NS {

using KWCommonNS::ByteView;
using KWCommonNS::kMaxFaces;
using KWCommonNS::readStreamAt;

namespace {

constexpr std::size_t kHeaderSize = 12;
constexpr std::size_t kNumFontsAt = 8;
constexpr std::size_t kOffsetSize = 4;

/// A message with one number in it.
UnicodeString withNumber(const char* format, std::uint32_t number) {
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), format, static_cast<unsigned>(number));
    return UnicodeString(text.data());
}

bool hasCff(const FS_TrueTypeInfo& face) {
    return face.getTableEntry(sfntTag("CFF ")) != nullptr;
}

} // namespace

FS_TrueTypeCollection::FS_TrueTypeCollection(const KWUri& fontUri) : FS_CffFaceForwarder(fontUri) {}

unsigned int FS_TrueTypeCollection::getClassId() const {
    return FS_CLASSID_COLLECTION;
}

bool FS_TrueTypeCollection::isKindOf(unsigned int id) const {
    return id == FS_CLASSID_COLLECTION || FS_BaseFont::isKindOf(id);
}

UnicodeString FS_TrueTypeCollection::getClassName() const {
    return UnicodeString("FS_TrueTypeCollection");
}

FS_FontFileType FS_TrueTypeCollection::getFontFileType(int faceIndex) const {
    const FS_TrueTypeInfo* const info = face(faceIndex);
    if (info == nullptr || !hasCff(*info))
        return FS_FILETYPE_COLLECTION;
    return info->isCIDFont() ? FS_FILETYPE_OPENTYPE_CID : FS_FILETYPE_OPENTYPE;
}

bool FS_TrueTypeCollection::isType1OrNoCID(int faceIndex) const {
    return getFontFileType(faceIndex) == FS_FILETYPE_OPENTYPE;
}

bool FS_TrueTypeCollection::isTrueTypeOrCID(int faceIndex) const {
    return !isType1OrNoCID(faceIndex);
}

bool FS_TrueTypeCollection::isFontCollection() const {
    return true;
}

bool FS_TrueTypeCollection::scanFont(KWError& error, std::istream& stream) {
    startScan(stream);
    std::array<std::uint8_t, kHeaderSize> header;
    if (readStreamAt(stream, 0, header) != header.size())
        return fontError(error, FS_ERROR_FONT_READ, "TTC header read error");
    const std::uint32_t tag = ByteView::loadU32(header.data());
    if (tag != sfntTag("ttcf"))
        return fontError(error, FS_ERROR_FONT_FILE, withNumber("Unknown TTC tag %08X", tag));
    const std::uint32_t numFonts = ByteView::loadU32(&header[kNumFontsAt]);
    if (numFonts == 0)
        return fontError(error, FS_ERROR_FONT_FILE, withNumber("numTables = %u", numFonts));

    // Only the last byte is asked for before the number is believed.
    std::array<std::uint8_t, 1> last;
    const std::uint64_t end = kHeaderSize + std::uint64_t{kOffsetSize} * numFonts;
    if (readStreamAt(stream, end - 1, last) != last.size())
        return fontError(error, FS_ERROR_FONT_READ, "Offset table read error");
    if (numFonts > kMaxFaces)
        return fontError(error, FS_ERROR_FONT_FILE, withNumber("numTables = %u", numFonts));
    std::vector<std::uint8_t> offsets;
    if (readStreamAt(stream, kHeaderSize, kOffsetSize * numFonts, offsets) !=
        kOffsetSize * numFonts)
        return fontError(error, FS_ERROR_FONT_READ, "Offset table read error");

    faceCount = static_cast<int>(numFonts);
    const bool usable = scanFaces(error, stream, offsets);
    finishScan();
    return usable;
}

bool FS_TrueTypeCollection::scanFaces(KWError& error, std::istream& stream,
                                      const std::vector<std::uint8_t>& offsets) {
    ScanBudget budget(KWCommonNS::kMaxFacesScanBytes);
    for (std::size_t at = 0; at < offsets.size(); at += kOffsetSize) {
        if (!scanFace(error, stream, ByteView::loadU32(&offsets[at]), budget))
            return false;
        if (hasCff(faces.back()) != hasCff(faces.front()))
            return false;
    }
    return true;
}

} // namespace KWFontService_NS
