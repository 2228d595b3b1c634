#include "type1/PFMFile.h"

#include "common/ByteView.h"
#include "common/KWLimits.h"
#include "common/StreamBytes.h"
#include "type1/Type1Text.h"

#include <algorithm>
#include <cstddef>
#include <istream>
#include <string_view>

namespace KWFontService_NS {

namespace {

constexpr std::size_t kHeaderSize = 117;
constexpr std::size_t kExtensionSize = 30;
constexpr std::size_t kTextMetricsSize = 52;
constexpr std::size_t kPairSize = 4;
constexpr std::size_t kCopyrightSize = 60;

constexpr int kFirstChar = 32;
constexpr int kLastChar = 255;

/// Little-endian fields of a part of the file that was read whole; nothing when it is shorter.
class Part {
public:
    static std::optional<Part> read(std::istream& stream, std::uint64_t offset, std::size_t size) {
        Part part;
        if (KWCommonNS::readStreamAt(stream, offset, size, part.bytes_) < size)
            return std::nullopt;
        return part;
    }

    std::uint8_t u8(std::size_t offset) const { return bytes_[offset]; }
    std::uint16_t u16(std::size_t offset) const {
        return static_cast<std::uint16_t>(bytes_[offset] | bytes_[offset + 1] << 8);
    }
    std::int16_t i16(std::size_t offset) const { return static_cast<std::int16_t>(u16(offset)); }
    std::uint32_t u32(std::size_t offset) const {
        return u16(offset) | std::uint32_t{u16(offset + 2)} << 16;
    }
    /// Up to the first zero.
    UnicodeString text(std::size_t offset, std::size_t longest) const {
        const std::string_view field(reinterpret_cast<const char*>(bytes_.data()) + offset,
                                     longest);
        return textOfBytes(field.substr(0, field.find('\0')));
    }

private:
    std::vector<std::uint8_t> bytes_;
};

Type1FileError readError(const char* detail) {
    return {FS_ERROR_FONT_READ, UnicodeString(detail)};
}

/// Where the parts of a file are; 0 for one that it does not have.
struct Offsets {
    std::uint32_t device = 0;
    std::uint32_t extMetrics = 0;
    std::uint32_t extentTable = 0;
    std::uint32_t pairKernTable = 0;
};

void readHeader(const Part& header, PFMFile& file, Offsets& offsets) {
    file.copyright = header.text(6, kCopyrightSize);
    file.dfAscent = header.u16(74);
    file.dfInternalLeading = header.u16(76);
    file.dfItalic = header.u8(80) != 0;
    file.dfWeight = header.u16(83);
    file.dfCharSet = header.u8(85);
    file.dfPixWidth = header.u16(86);
    file.dfPixHeight = header.u16(88);
    file.dfPitchAndFamily = header.u8(90);
    file.dfAvgWidth = header.u16(91);
    file.dfMaxWidth = header.u16(93);
    file.dfFirstChar = header.u8(95);
    file.dfLastChar = header.u8(96);
    file.dfBreakChar = header.u8(98);
    offsets.device = header.u32(101);
}

void mendCharacterRange(PFMFile& file) {
    if (file.dfLastChar <= file.dfFirstChar)
        file.dfLastChar = kLastChar;
    file.dfFirstChar = kFirstChar;
}

/// Cuts a name with its zero off the text; false when it has none, or a name too long.
bool cutName(std::string_view& text, UnicodeString& name) {
    const std::size_t end = text.find('\0'); // far away when there is none
    if (end > KWCommonNS::kMaxPFMName)
        return false;
    name = textOfBytes(text.substr(0, end));
    text.remove_prefix(end + 1);
    return true;
}

bool readNames(std::istream& stream, std::uint32_t offset, PFMFile& file) {
    std::vector<std::uint8_t> bytes;
    KWCommonNS::readStreamAt(stream, offset, 3 * (KWCommonNS::kMaxPFMName + 1), bytes);
    std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    return cutName(text, file.deviceName) && cutName(text, file.faceName) &&
           cutName(text, file.postScriptName);
}

bool readExtents(std::istream& stream, std::uint32_t offset, PFMFile& file) {
    const auto count =
        static_cast<std::size_t>(std::max(file.dfLastChar - file.dfFirstChar + 1, 0));
    const auto table = Part::read(stream, offset, 2 * count);
    if (!table)
        return false;
    file.extents.emplace(count);
    for (std::size_t i = 0; i < count; ++i)
        (*file.extents)[i] = table->u16(2 * i);
    return true;
}

bool readKernPairs(std::istream& stream, std::uint32_t offset, std::size_t count, PFMFile& file) {
    constexpr std::size_t kCountSize = 2;
    const auto table = Part::read(stream, offset, kCountSize + count * kPairSize);
    if (!table)
        return false;
    for (std::size_t at = kCountSize; at < kCountSize + count * kPairSize; at += kPairSize)
        file.kernPairs.add(table->u8(at), table->u8(at + 1), table->i16(at + 2));
    return true;
}

} // namespace

int PFMFile::widthOf(int code) const {
    if (!hasCode(code))
        return 0;
    return extents ? (*extents)[static_cast<std::size_t>(code - dfFirstChar)] : dfPixWidth;
}

std::optional<Type1FileError> readPFM(std::istream& stream, bool mendRange, PFMFile& file) {
    Offsets offsets;
    const auto header = Part::read(stream, 0, kHeaderSize);
    if (!header)
        return readError("");
    readHeader(*header, file, offsets);
    if (mendRange)
        mendCharacterRange(file);

    const auto extension = Part::read(stream, kHeaderSize, kExtensionSize);
    if (!extension)
        return readError("Extension read error");
    offsets.extMetrics = extension->u32(2);
    offsets.extentTable = extension->u32(6);
    offsets.pairKernTable = extension->u32(14);

    std::size_t kernPairs = 0;
    if (offsets.extMetrics != 0) {
        const auto metrics = Part::read(stream, offsets.extMetrics, kTextMetricsSize);
        if (!metrics)
            return readError("Extension Text Metrics read error");
        const int masterUnits = metrics->i16(12);
        if (masterUnits != 0)
            file.xHeight = static_cast<float>(metrics->i16(16)) / static_cast<float>(masterUnits);
        kernPairs = metrics->u16(48);
    }
    if (offsets.device != 0 && !readNames(stream, offsets.device, file))
        return readError("PostScript Information read error");
    if (offsets.extentTable != 0 && !readExtents(stream, offsets.extentTable, file))
        return readError("Extent Table read error");
    if (kernPairs != 0 && !readKernPairs(stream, offsets.pairKernTable, kernPairs, file))
        return readError("Pair Kerning Table read error");
    return std::nullopt;
}

} // namespace KWFontService_NS
