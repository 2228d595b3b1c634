#include "type1/Type1CodePage.h"

#include <KWCommon15/KWLock.h>

#include <unicode/ucnv.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <memory>
#include <utility>

namespace KWFontService_NS {

namespace {

struct CharSetRow {
    std::uint8_t charSet;
    const char* converter;
    unsigned int rangeBit;
};
constexpr CharSetRow kCharSets[] = {
    {161, "cp1253", 3}, // Greek
    {162, "cp1254", 4}, // Turkish
    {163, "cp1258", 8}, // Vietnamese
    {177, "cp1255", 5}, // Hebrew
    {178, "cp1256", 6}, // Arabic
    {186, "cp1257", 7}, // Baltic
    {204, "cp1251", 2}, // Cyrillic
    {222, "cp874", 16}, // Thai
    {238, "cp1250", 1}, // Central Europe
};
constexpr const char* kWestern = "cp1252";

// Character sets without a code page of one byte that is read here, and the bit of each.
constexpr std::pair<std::uint8_t, unsigned int> kFurtherRangeBits[] = {
    {0, 0},    // Western Europe
    {2, 31},   // symbols
    {77, 29},  // Macintosh
    {128, 17}, // Japanese
    {129, 19}, // Korean
    {130, 21}, // Korean, Johab
    {134, 18}, // Chinese, simplified
    {136, 20}, // Chinese, traditional
};

/// The one character of a byte; 0xFFFD when there is none.
char16_t characterOfByte(UConverter* converter, std::uint8_t byte) {
    std::array<char16_t, 4> units{};
    const char source = static_cast<char>(byte);
    UErrorCode status = U_ZERO_ERROR;
    const std::int32_t length = ucnv_toUChars(
        converter, units.data(), static_cast<std::int32_t>(units.size()), &source, 1, &status);
    return U_SUCCESS(status) && length == 1 ? units[0] : char16_t{0xFFFD};
}

bool goesTo(UConverter* converter, char16_t ch, std::uint8_t byte) {
    std::array<char, 4> bytes{};
    UErrorCode status = U_ZERO_ERROR;
    const std::int32_t length = ucnv_fromUChars(
        converter, bytes.data(), static_cast<std::int32_t>(bytes.size()), &ch, 1, &status);
    return U_SUCCESS(status) && length == 1 && static_cast<std::uint8_t>(bytes[0]) == byte;
}

} // namespace

Type1CodePage::Type1CodePage(const char* converter) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::LocalUConverterPointer opened(ucnv_open(converter, &status));
    if (U_FAILURE(status))
        return;
    for (int code = 0; code < 256; ++code) {
        const auto byte = static_cast<std::uint8_t>(code);
        const char16_t ch = characterOfByte(opened.getAlias(), byte);
        if (goesTo(opened.getAlias(), ch, byte))
            codes_.emplace(ch, byte);
    }
}

const Type1CodePage& Type1CodePage::ofCharSet(std::uint8_t charSet) {
    static KWCommonNS::KWLock lock;
    static std::array<std::unique_ptr<const Type1CodePage>, std::size(kCharSets) + 1> pages;
    const auto* const row = std::ranges::find(kCharSets, charSet, &CharSetRow::charSet);
    KWCommonNS::KWMutex mutex(lock);
    mutex.lock();
    auto& page = pages[static_cast<std::size_t>(row - std::begin(kCharSets))];
    if (!page) {
        page = std::make_unique<const Type1CodePage>(row != std::end(kCharSets) ? row->converter
                                                                                : kWestern);
    }
    return *page;
}

std::uint32_t Type1CodePage::rangeBitOfCharSet(std::uint8_t charSet) {
    constexpr std::uint32_t kOne = 1;
    for (const CharSetRow& row : kCharSets) {
        if (row.charSet == charSet)
            return kOne << row.rangeBit;
    }
    for (const auto& [set, bit] : kFurtherRangeBits) {
        if (set == charSet)
            return kOne << bit;
    }
    return 0;
}

int Type1CodePage::codeOf(int ch) const {
    const auto found = codes_.find(ch);
    return found != codes_.end() ? int{found->second} : -1;
}

} // namespace KWFontService_NS
