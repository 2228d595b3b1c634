#pragma once

#include "cff/CFFStream.h"
#include "common/ByteView.h"

#include <string_view>

namespace KWFontService_NS {

using KWCommonNS::ByteView;

/// Where the Name INDEX begins: behind a header of four bytes, whatever size that header states.
inline constexpr std::uint64_t kNameIndexAt = 4;

/// Count and offsets of an INDEX (Adobe Technical Note 5176), without its data: where items lie.
class CFFIndexHead {
public:
    struct Item {
        std::uint64_t offset = 0; ///< from the start of the table
        std::uint32_t length = 0;
    };

    /// Nothing on a short read, and for an INDEX with items whose offSize is not 1 to 4 or whose
    /// data would end before it begins.
    static std::optional<CFFIndexHead> read(CFFStream& table, std::uint64_t at);

    std::uint16_t count() const { return count_; }
    /// Bytes of an offset, 1 to 4 where there are items.
    std::uint8_t offSize() const { return offSize_; }
    /// Nothing beyond the count, and where two offsets contradict each other.
    std::optional<Item> item(std::size_t index) const;
    std::size_t arraySize() const { return offsets_.size(); }
    std::uint64_t dataStart() const { return dataStart_; }
    /// Where the next structure starts.
    std::uint64_t end() const { return end_; }

private:
    std::uint32_t offset(std::size_t index) const;

    std::uint16_t count_ = 0;
    std::uint8_t offSize_ = 0;
    std::uint64_t dataStart_ = 0;
    std::uint64_t end_ = 0;
    std::vector<std::uint8_t> offsets_;
};

/// The count of an INDEX alone; nothing for the offset 0, which stands for none.
std::optional<std::uint16_t> readIndexCount(CFFStream& table, std::uint32_t at);

/// An INDEX with its data, kept as the bytes that the table has. Items are views of them, alive as
/// long as this object stays in place.
class CFFIndex {
public:
    /// Nothing on a short read and where `CFFIndexHead` has nothing.
    static std::optional<CFFIndex> read(CFFStream& table, std::uint64_t at);

    std::size_t size() const { return head_.count(); }
    bool empty() const { return head_.count() == 0; }
    /// Empty beyond the count, and for an item whose offsets lie.
    ByteView operator[](std::size_t index) const;
    std::string_view text(std::size_t index) const;
    std::size_t dataSize() const { return data_.size(); }
    std::uint8_t offSize() const { return head_.offSize(); }
    std::uint64_t end() const { return head_.end(); }
    /// What is held of the table: offsets and data.
    std::size_t byteSize() const { return head_.arraySize() + data_.size(); }

private:
    CFFIndexHead head_;
    std::vector<std::uint8_t> data_;
};

/// What a charstring adds to a subr number to get the place in an INDEX of `count` subrs (Adobe
/// Technical Note 5177, callsubr).
constexpr int subrBias(std::size_t count) {
    return count < 1240 ? 107 : count < 33900 ? 1131 : 32768;
}

} // namespace KWFontService_NS
