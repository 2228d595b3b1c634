#include "KWCommon15/KWUUID.h"

#include "common/FallbackRandom.h"

#include <cstddef>
#include <exception>
#include <random>

namespace KWCommonNS {

namespace {

std::array<std::uint32_t, 4> randomWords() {
    std::array<std::uint32_t, 4> words{};
    try {
        std::random_device source;
        for (std::uint32_t& word : words)
            word = source();
    } catch (const std::exception&) { // there is no source, or it cannot be read
        for (std::uint32_t& word : words)
            word = fallbackRandom();
    }
    return words;
}

} // namespace

KWUUID::KWUUID() {
    const std::array<std::uint32_t, 4> words = randomWords();
    for (std::size_t i = 0; i < bytes_.size(); ++i)
        bytes_[i] = static_cast<std::uint8_t>(words[i / 4] >> (8 * (i % 4)));
    bytes_[6] = static_cast<std::uint8_t>((bytes_[6] & 0x0F) | 0x40); // version 4
    bytes_[8] = static_cast<std::uint8_t>((bytes_[8] & 0x3F) | 0x80); // RFC 9562 variant
}

UnicodeString KWUUID::toString() const {
    constexpr char16_t kDigits[] = u"0123456789abcdef";
    UnicodeString text;
    for (std::size_t i = 0; i < bytes_.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10)
            text.append(u'-');
        text.append(kDigits[bytes_[i] >> 4]).append(kDigits[bytes_[i] & 0x0F]);
    }
    return text;
}

} // namespace KWCommonNS
