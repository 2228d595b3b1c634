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
    bool mayHold(unsigned short gid) const { return Probe(*this).mayHold(gid); }

    /// A digest as it is best asked for a whole run: a copy that fits registers.
    class Probe {
    public:
        explicit Probe(const GlyphDigest& digest)
            : places_(digest.places()), lowBits_(digest.lowBits()), first_(digest.first_),
              shift_(digest.shift_) {}

        bool mayHold(unsigned short gid) const {
            // A glyph before the first wraps to a bucket far behind the last.
            const std::uint32_t bucket = (gid - first_) >> shift_;
            return bucket < kBuckets &&
                   ((places_ >> bucket) & (lowBits_ >> (gid % kBuckets)) & 1U) != 0;
        }

    private:
        std::uint64_t places_;
        std::uint64_t lowBits_;
        std::uint32_t first_;
        std::uint32_t shift_;
    };

private:
    static constexpr std::uint32_t kBuckets = 64;

    using Halves = std::uint32_t[2];
    static std::uint64_t whole(const Halves& halves) {
        return std::uint64_t{halves[1]} << 32 | halves[0];
    }
    std::uint64_t places() const { return whole(places_); }
    std::uint64_t lowBits() const { return whole(lowBits_); }
    void addPlaces(std::uint16_t first, std::uint16_t last);
    /// The glyphs of a bucket.
    std::uint16_t bucketStart(int bucket) const;
    std::uint16_t bucketEnd(int bucket) const;

    // Halves, so that the digest packs without padding.
    Halves places_ = {0, 0};
    Halves lowBits_ = {0, 0};
    std::uint16_t first_ = 0;
    std::uint16_t shift_ = 0;
};

} // namespace KWFontService_NS
