#include "layout/GlyphDigest.h"

#include <algorithm>
#include <bit>

namespace KWFontService_NS {

namespace {

constexpr std::uint32_t kLastGlyph = 0xFFFF;

} // namespace

GlyphDigest::GlyphDigest(std::uint16_t first, std::uint16_t last)
    : first_(first),
      shift_(static_cast<std::uint16_t>(std::bit_width((std::uint32_t{last} - first) / kBuckets))) {
}

GlyphDigest GlyphDigest::everything() {
    GlyphDigest all(0, kLastGlyph);
    all.add(0, kLastGlyph);
    return all;
}

void GlyphDigest::add(std::uint16_t first, std::uint16_t last) {
    addPlaces(first, last);
    // A range as long as all the low bits have values has each of them.
    const std::uint32_t count = std::min<std::uint32_t>(std::uint32_t{last} - first + 1, kBuckets);
    for (std::uint32_t gid = first; gid < first + count; ++gid)
        lowBits_[gid % kBuckets / 32] |= std::uint32_t{1} << (gid % 32);
}

void GlyphDigest::addPlaces(std::uint16_t first, std::uint16_t last) {
    const std::uint32_t from = (std::uint32_t{first} - first_) >> shift_;
    const std::uint32_t to = (std::uint32_t{last} - first_) >> shift_;
    const std::uint64_t added = (~std::uint64_t{0} >> (kBuckets - 1 - (to - from))) << from;
    places_[0] |= static_cast<std::uint32_t>(added);
    places_[1] |= static_cast<std::uint32_t>(added >> 32);
}

std::uint16_t GlyphDigest::bucketStart(int bucket) const {
    return static_cast<std::uint16_t>(first_ + (static_cast<std::uint32_t>(bucket) << shift_));
}

std::uint16_t GlyphDigest::bucketEnd(int bucket) const {
    const std::uint32_t end = first_ + ((static_cast<std::uint32_t>(bucket) + 1) << shift_) - 1;
    return static_cast<std::uint16_t>(std::min(end, kLastGlyph));
}

GlyphDigest GlyphDigest::unionOf(std::span<const GlyphDigest> digests) {
    std::uint16_t first = kLastGlyph;
    std::uint16_t last = 0;
    for (const GlyphDigest& digest : digests) {
        if (const std::uint64_t bits = digest.places()) {
            first = std::min(first, digest.bucketStart(std::countr_zero(bits)));
            last = std::max(last, digest.bucketEnd(63 - std::countl_zero(bits)));
        }
    }
    if (first > last)
        return {};
    GlyphDigest all(first, last);
    for (const GlyphDigest& digest : digests) {
        for (std::uint64_t bits = digest.places(); bits != 0; bits &= bits - 1) {
            const int bucket = std::countr_zero(bits);
            all.addPlaces(digest.bucketStart(bucket), digest.bucketEnd(bucket));
        }
        all.lowBits_[0] |= digest.lowBits_[0];
        all.lowBits_[1] |= digest.lowBits_[1];
    }
    return all;
}

} // namespace KWFontService_NS
