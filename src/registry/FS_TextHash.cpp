#include "registry/FS_TextHash.h"

#include "common/TextView.h"

#include <KWCommon15/KWUUID.h>

#include <array>
#include <bit>
#include <cstdint>

namespace KWFontService_NS {

namespace {

using Key = std::array<std::uint64_t, 2>;

Key drawKey() {
    Key key{};
    const KWCommonNS::KWUUID random;
    for (std::size_t i = 0; i < random.getBytes().size(); ++i)
        key[i / 8] = key[i / 8] << 8 | random.getBytes()[i];
    return key;
}

/// Aumasson and Bernstein, "SipHash: a fast short-input PRF", with one round for each word.
class SipHash {
public:
    explicit SipHash(const Key& key)
        : v0_(key[0] ^ 0x736F6D6570736575), v1_(key[1] ^ 0x646F72616E646F6D),
          v2_(key[0] ^ 0x6C7967656E657261), v3_(key[1] ^ 0x7465646279746573) {}

    void take(std::uint64_t word) {
        v3_ ^= word;
        round();
        v0_ ^= word;
    }
    std::uint64_t finish() {
        v2_ ^= 0xFF;
        for (int i = 0; i < 3; ++i)
            round();
        return v0_ ^ v1_ ^ v2_ ^ v3_;
    }

private:
    void round() {
        v0_ += v1_;
        v1_ = std::rotl(v1_, 13) ^ v0_;
        v0_ = std::rotl(v0_, 32);
        v2_ += v3_;
        v3_ = std::rotl(v3_, 16) ^ v2_;
        v0_ += v3_;
        v3_ = std::rotl(v3_, 21) ^ v0_;
        v2_ += v1_;
        v1_ = std::rotl(v1_, 17) ^ v2_;
        v2_ = std::rotl(v2_, 32);
    }

    std::uint64_t v0_;
    std::uint64_t v1_;
    std::uint64_t v2_;
    std::uint64_t v3_;
};

} // namespace

std::size_t FS_TextHash::operator()(const UnicodeString& text) const noexcept {
    static const Key kKey = drawKey();
    constexpr std::size_t kUnits = 4; // in one word
    const std::u16string_view units = KWCommonNS::toView(text);
    SipHash hash(kKey);
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < units.size(); ++i) {
        word = word << 16 | units[i];
        if (i % kUnits == kUnits - 1) {
            hash.take(word);
            word = 0;
        }
    }
    // The last word holds the length, in bytes as the paper has it, beside what is left over.
    hash.take(word | static_cast<std::uint64_t>(units.size() * 2) << 56);
    return static_cast<std::size_t>(hash.finish());
}

} // namespace KWFontService_NS
