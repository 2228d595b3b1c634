#pragma once

#include <cstdint>
#include <span>

namespace KWFontService_NS {

/// A small superset of a set of glyphs: it tells nearly all glyphs that are far from the set, and
/// most that are near, without a search. A glyph is told by two things: where it lies between the
/// first and the last of the set, in up to 64 buckets of equal width, and the low six bits of its
/// id. A set that spans no more than 64 glyphs is exact.
class GlyphDigest {
public:
    /// Holds nothing.
    GlyphDigest() = default;
    /// Holds nothing yet, and has room for the glyphs from `first` to `last`.
    GlyphDigest(std::uint16_t first, std::uint16_t last);
    static GlyphDigest everything();
    /// Holds what any of them holds.
    static GlyphDigest unionOf(std::span<const GlyphDigest> digests);

    /// Adds glyphs that the digest has room for.
    void add(std::uint16_t first, std::uint16_t last);

    /// False for a glyph that is not in the set.
    bool mayHold(unsigned short gid) const {
        // A glyph before the first wraps to a bucket far behind the last.
        const std::uint32_t bucket = (std::uint32_t{gid} - first_) >> shift_;
        return bucket < kBuckets && ((places_[bucket / 32] >> (bucket % 32)) &
                                     (lowBits_[gid % kBuckets / 32] >> (gid % 32)) & 1U) != 0;
    }

private:
    static constexpr std::uint32_t kBuckets = 64;

    std::uint64_t places() const { return std::uint64_t{places_[1]} << 32 | places_[0]; }
    void addPlaces(std::uint16_t first, std::uint16_t last);
    /// The glyphs of a bucket.
    std::uint16_t bucketStart(int bucket) const;
    std::uint16_t bucketEnd(int bucket) const;

    // Halves, so that the digest packs without padding.
    std::uint32_t places_[2] = {0, 0};
    std::uint32_t lowBits_[2] = {0, 0};
    std::uint16_t first_ = 0;
    std::uint16_t shift_ = 0;
};

} // namespace KWFontService_NS
