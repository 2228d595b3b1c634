#pragma once

#include "Bytes.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace KWTest {

/// The 32-bit value of a four-character tag; a shorter one is padded with spaces.
std::uint32_t tagValue(std::string_view tag);

/// The OpenType table checksum: the sum of big-endian 32-bit words, the last one padded with zeros.
std::uint32_t tableChecksum(std::span<const std::uint8_t> table);

inline constexpr std::uint32_t kTrueTypeVersion = 0x00010000;
inline constexpr std::uint32_t kOttoVersion = 0x4F54544F; // 'OTTO'
inline constexpr std::uint32_t kTrueVersion = 0x74727565; // 'true'
inline constexpr std::uint32_t kTyp1Version = 0x74797031; // 'typ1'

/// What a directory record says in place of the truth; what is not given stays true.
struct RecordLie {
    std::optional<std::uint32_t> checkSum{};
    std::optional<std::uint32_t> offset{};
    std::optional<std::uint32_t> length{};
};

/// Puts tables together to an sfnt file:
///
///     Bytes file = SfntBuilder()
///                      .table("head", Head{.unitsPerEm = 0})
///                      .table("hhea", Hhea{})
///                      .lie("hhea", {.length = 0xFFFFFFFF})
///                      .build();
///
/// The result is in order (sorted directory, padded tables, right checksums) but for what a test
/// asks to be otherwise.
class SfntBuilder {
public:
    explicit SfntBuilder(std::uint32_t version = kTrueTypeVersion) : version_(version) {}

    SfntBuilder& version(std::uint32_t version);

    /// Adds a table, or replaces the first one of that tag in its place.
    SfntBuilder& table(std::string_view tag, Bytes data);
    template <BytesMaker Maker>
    SfntBuilder& table(std::string_view tag, const Maker& maker) {
        return table(tag, Bytes(maker.build()));
    }
    /// Adds a further record and table of a tag that is there already.
    SfntBuilder& duplicate(std::string_view tag, Bytes data);
    /// Removes every table of that tag.
    SfntBuilder& drop(std::string_view tag);

    bool has(std::string_view tag) const;
    /// The first table of that tag; throws std::out_of_range without one.
    const Bytes& get(std::string_view tag) const;
    std::vector<std::string> tags() const;

    /// Makes the (first) record of that tag lie; the table itself stays where it is.
    SfntBuilder& lie(std::string_view tag, RecordLie lie);
    /// `numTables` of the header, whatever the directory holds.
    SfntBuilder& numTables(std::uint16_t count);
    /// Directory records in the order of the calls; without this sorted by tag.
    SfntBuilder& inGivenOrder();
    /// Tables follow each other without padding to four bytes.
    SfntBuilder& unpadded();
    /// Adds to every offset: for a font that starts at that place of a larger file.
    SfntBuilder& offsetShift(std::uint32_t shift);
    /// Leaves `checkSumAdjustment` of `head` as it is given.
    SfntBuilder& keepCheckSumAdjustment();

    Bytes build() const;
    std::string str() const { return build().str(); }

    /// Where `build` puts the first table of that tag, without shift and lies.
    std::size_t offsetOf(std::string_view tag) const;
    /// Where `build` puts the first directory record of that tag.
    std::size_t recordOffsetOf(std::string_view tag) const;

private:
    struct Table {
        std::string tag;
        Bytes data;
        RecordLie lie;
    };
    struct Placed {
        const Table* table;
        std::size_t offset;
    };

    Table* find(std::string_view tag);
    const Table& require(std::string_view tag) const;
    std::vector<Placed> place() const;

    std::uint32_t version_;
    std::vector<Table> tables_;
    std::optional<std::uint16_t> numTables_;
    std::uint32_t shift_ = 0;
    bool sorted_ = true;
    bool padded_ = true;
    bool adjustHead_ = true;
};

/// A TrueType collection of whole fonts, each with tables of its own.
struct SfntCollection {
    std::uint32_t version = 0x00010000; // 0x00020000 adds three empty DSIG fields
    std::vector<SfntBuilder> fonts{};
    std::optional<std::uint32_t> numFonts{};

    Bytes build() const;
};

/// A Macintosh resource file with one `sfnt` resource for each font. Fields that a test may want to
/// lie about are labels of the result: "dataOffset", "mapOffset", "typeListOffset", "typeCount",
/// "sfntType", "sfntCount", "sfntReferences", and "reference0", "reference1" ... (12 bytes each,
/// the data offset in the last three of bytes 4 to 7).
struct ResourceFile {
    std::vector<SfntBuilder> fonts{};
    std::vector<std::string> otherTypes{}; // empty types that come before `sfnt`
    bool withSfntType = true;

    Bytes build() const;
};

} // namespace KWTest
