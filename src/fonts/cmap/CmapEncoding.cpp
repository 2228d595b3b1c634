#include "fonts/cmap/CmapEncoding.h"

#include "fonts/SfntPlatforms.h"

#include <unicode/ucnv.h>

namespace KWFontService_NS {

namespace {

const char* converterOf(std::uint16_t platformID, std::uint16_t encodingID) {
    switch (platformID) {
    case kPlatformMacintosh:
        return macEastAsianConverter(encodingID);
    case kPlatformWindows:
        return windowsEastAsianConverter(encodingID);
    default:
        return nullptr;
    }
}

constexpr char kSubstitutionMark = 0x3F;

} // namespace

CmapEncoding::CmapEncoding(std::uint16_t platformID, std::uint16_t encodingID, bool symbolRange) {
    if (platformID == kPlatformWindows && encodingID <= 1 && symbolRange)
        way_ = Way::Symbol;
    converter_ = converterOf(platformID, encodingID);
    if (converter_ != nullptr)
        way_ = Way::Converter;
    simplifiedChinese_ = platformID == kPlatformWindows && encodingID == 3;
}

int CmapEncoding::convertByName(int ch) const {
    if (ch < 0 || ch > 0xFFFF)
        return -1;
    // Two marks that fonts and converters place differently.
    if (simplifiedChinese_ && ch == 0x00B7)
        return 0xA1A4;
    if (simplifiedChinese_ && ch == 0x2014)
        return 0xA1AA;

    UErrorCode status = U_ZERO_ERROR;
    const icu::LocalUConverterPointer converter(ucnv_open(converter_, &status));
    if (U_FAILURE(status))
        return -1;
    const auto unit = static_cast<char16_t>(ch);
    char bytes[4];
    const std::int32_t length =
        ucnv_fromUChars(converter.getAlias(), bytes, sizeof bytes, &unit, 1, &status);
    if (U_FAILURE(status))
        return -1;
    const auto byte = [&bytes](int i) {
        return static_cast<int>(static_cast<std::uint8_t>(bytes[i]));
    };
    if (length == 1)
        return bytes[0] == kSubstitutionMark && ch != u'?' ? -1 : byte(0);
    if (length == 2)
        return byte(0) * 256 + byte(1);
    return -1;
}

} // namespace KWFontService_NS
