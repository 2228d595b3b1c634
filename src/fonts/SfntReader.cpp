#include "fonts/SfntReader.h"

#include "common/StreamBytes.h"
#include "fonts/FontErrors.h"

namespace KWFontService_NS {

std::size_t SfntReader::readUpTo(std::uint64_t offset, std::span<std::uint8_t> out) {
    return charge(out.size()) ? KWCommonNS::readStreamAt(stream_, offset, out) : 0;
}

bool SfntReader::read(std::uint64_t offset, std::span<std::uint8_t> out) {
    return readUpTo(offset, out) == out.size();
}

std::size_t SfntReader::readUpTo(std::uint64_t offset, std::size_t length,
                                 std::vector<std::uint8_t>& out) {
    out.clear();
    return charge(length) ? KWCommonNS::readStreamAt(stream_, offset, length, out) : 0;
}

bool SfntReader::read(std::uint64_t offset, std::size_t length, std::vector<std::uint8_t>& out) {
    return readUpTo(offset, length, out) == length;
}

bool SfntReader::readTable(std::uint32_t tag, std::vector<std::uint8_t>& out) {
    const TTI_TableRecord* record = table(tag);
    return record != nullptr && read(record->offset, record->length, out);
}

bool SfntReader::fail(FS_ERROR code, const UnicodeString& detail) {
    if (owner_ != nullptr)
        return owner_->fontError(error_, code, detail);
    error_ = makeFontError(code, detail, UnicodeString());
    return false;
}

} // namespace KWFontService_NS
