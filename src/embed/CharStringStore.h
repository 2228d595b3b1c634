#pragma once

#include "cff/CFFIndex.h"

#include <cstdint>
#include <span>
#include <vector>

namespace KWFontService_NS {

/// Finds the charstrings of glyphs in a `CFF ` table and reads neighbours together.
class CharStringReader {
public:
    CharStringReader(CFFStream& table, const CFFIndexHead& head) : table_(table), head_(head) {}

    /// The bytes of these glyphs together; nothing when one does not exist, or when all together
    /// have more than the table, which only lying offsets lead to.
    std::optional<std::size_t> sizeOf(std::span<const std::uint16_t> glyphs) const;

    /// Calls `each(bytes)` for every glyph in its turn; the bytes are gone when it returns. The
    /// glyphs ascend, and `sizeOf` has an answer for them.
    template <class Each>
    bool visit(std::span<const std::uint16_t> glyphs, const Each& each) {
        while (!glyphs.empty()) {
            const std::size_t count = readPiece(glyphs);
            if (count == 0)
                return false;
            for (const std::uint16_t gid : glyphs.first(count)) {
                const auto item = head_.item(gid);
                each(ByteView(buffer_.data(), buffer_.size())
                         .sub(static_cast<std::size_t>(item->offset - start_), item->length));
            }
            glyphs = glyphs.subspan(count);
        }
        return true;
    }

private:
    /// Reads the first of these glyphs with one call; answers how many, 0 on a short read.
    std::size_t readPiece(std::span<const std::uint16_t> glyphs);

    CFFStream& table_;
    const CFFIndexHead& head_;
    std::uint64_t start_ = 0; ///< where the bytes of the buffer come from
    std::vector<std::uint8_t> buffer_;
};

/// The charstrings of some glyphs, in memory one after the other.
class CharStringStore {
public:
    /// Reads more glyphs, which ascend. False when one does not exist and on a short read.
    bool add(CharStringReader& reader, std::span<const std::uint16_t> glyphs);

    /// The charstring of a glyph by its place among those added.
    ByteView operator[](std::size_t place) const {
        return ByteView(bytes_.data(), bytes_.size())
            .sub(begins_[place], begins_[place + 1] - begins_[place]);
    }

private:
    std::vector<std::size_t> begins_{0};
    std::vector<std::uint8_t> bytes_;
};

} // namespace KWFontService_NS
