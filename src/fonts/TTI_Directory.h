#pragma once

#include "common/ByteView.h"
#include "common/TagText.h"

#include <cstdint>
#include <vector>

namespace KWFontService_NS {

using KWCommonNS::sfntTag;

/// One entry of an sfnt table directory; offsets count from the start of the stream.
struct TTI_TableRecord {
    std::uint32_t tag = 0;
    std::uint32_t checkSum = 0;
    std::uint32_t offset = 0;
    std::uint32_t length = 0;
};

/// The table directory of one face (OpenType, Font File): records sorted by tag, one a tag. Where
/// a file repeats a tag its first record stays.
class TTI_Directory {
public:
    static constexpr std::size_t kHeaderSize = 12;
    static constexpr std::size_t kRecordSize = 16;

    /// @param version    the version word of the offset table
    /// @param records    the records as in the file, 16 bytes each
    /// @param rebase     added to each offset: where the sfnt starts, for files that count from
    /// there
    TTI_Directory(std::uint32_t version, KWCommonNS::ByteView records, std::uint32_t rebase);
    TTI_Directory() = default;

    std::uint32_t version() const { return version_; }
    const std::vector<TTI_TableRecord>& records() const { return records_; }
    /// Null when the font lacks the table.
    const TTI_TableRecord* find(std::uint32_t tag) const;
    bool has(std::uint32_t tag) const { return find(tag) != nullptr; }

private:
    std::uint32_t version_ = 0;
    std::vector<TTI_TableRecord> records_;
};

} // namespace KWFontService_NS
