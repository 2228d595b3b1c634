#include "fonts/cmap/CmapFormat2.h"

#include "common/ByteView.h"

#include <KWFontService17/FS_Types.h>

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {
constexpr std::size_t kLengthOffset = 2;
constexpr std::size_t kKeysOffset = 6;
constexpr std::size_t kKeysEnd = kKeysOffset + std::size_t{2} * 256;
constexpr std::size_t kSubHeaderSize = 8;
} // namespace

bool CmapFormat2::read(SfntReader& reader, std::uint64_t offset) {
    std::array<std::uint8_t, kKeysEnd> header;
    if (!reader.read(offset, header))
        return reader.fail(FS_ERROR_FONT_READ, "'cmap' table format 2 read error");
    const auto key = [&header](std::size_t highByte) {
        return ByteView::loadU16(&header[kKeysOffset + 2 * highByte]);
    };

    std::size_t subHeaderCount = 1;
    for (std::size_t highByte = 1; highByte < 256; ++highByte)
        subHeaderCount += key(highByte) != 0;
    std::vector<std::uint8_t> subHeaders;
    if (!reader.read(offset + kKeysEnd, subHeaderCount * kSubHeaderSize, subHeaders))
        return reader.fail(FS_ERROR_FONT_READ, "'cmap' table format 2 SubHeaders read error");

    const std::size_t arrayOffset = kKeysEnd + subHeaders.size();
    const std::size_t length = ByteView::loadU16(&header[kLengthOffset]);
    const std::size_t arrayCount = length > arrayOffset ? (length - arrayOffset) / 2 : 0;
    std::vector<std::uint8_t> array;
    if (!reader.read(offset + arrayOffset, arrayCount * 2, array))
        return reader.fail(FS_ERROR_FONT_READ, "'cmap' table format 2 glyphIndexArray read error");
    glyphIndexArray_.resize(arrayCount);
    for (std::size_t i = 0; i < arrayCount; ++i)
        glyphIndexArray_[i] = ByteView::loadU16(&array[2 * i]);

    for (std::size_t highByte = 0; highByte < 256; ++highByte) {
        const std::size_t index = key(highByte) / kSubHeaderSize;
        if ((highByte != 0 && key(highByte) == 0) || index >= subHeaderCount)
            continue;
        const std::uint8_t* fields = &subHeaders[index * kSubHeaderSize];
        SubHeader& subHeader = subHeaders_[highByte];
        subHeader.firstCode = ByteView::loadU16(fields);
        subHeader.entryCount = ByteView::loadU16(fields + 2);
        subHeader.idDelta = ByteView::loadU16(fields + 4);
        // The offset counts from its own field, 2 bytes before the end of its sub-header.
        if (const std::int32_t rangeOffset = ByteView::loadU16(fields + 6)) {
            const auto behind =
                static_cast<std::int32_t>((subHeaderCount - index - 1) * kSubHeaderSize);
            subHeader.glyphArrayIndex = (rangeOffset - behind) / 2;
        }
    }
    return true;
}

unsigned short CmapFormat2::lookup(int code) const {
    if (code < 0 || code > 0xFFFF)
        return FS_NO_GLYPH;
    const SubHeader& subHeader = subHeaders_[static_cast<std::size_t>(code / 256)];
    const std::int32_t low = code & 0xFF;
    if (low < subHeader.firstCode || low >= subHeader.firstCode + subHeader.entryCount ||
        subHeader.glyphArrayIndex == 0)
        return FS_NO_GLYPH;
    const std::int32_t place = subHeader.glyphArrayIndex - subHeader.firstCode - 1 + low;
    if (place < 0 || static_cast<std::size_t>(place) >= glyphIndexArray_.size())
        return FS_NO_GLYPH;
    const std::uint16_t element = glyphIndexArray_[static_cast<std::size_t>(place)];
    if (element == 0)
        return FS_NO_GLYPH;
    return static_cast<unsigned short>(element + subHeader.idDelta);
}

unsigned int CmapFormat2::charCount() const {
    unsigned int count = 0;
    for (const SubHeader& subHeader : subHeaders_)
        count += subHeader.entryCount;
    return count;
}

} // namespace KWFontService_NS
