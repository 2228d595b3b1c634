#pragma once

#include "cff/CFFIndex.h"

#include <algorithm>
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

    /// Bytes that are worth holding at a time: small beside the font, and such that they stay in
    /// the processor's cache between reading and use.
    std::uint32_t pieceSize() const { return std::min(table_.size() / 32, kMostPiece); }

    /// The bytes of a glyph; 0 for one that does not exist.
    std::uint32_t lengthOf(std::uint16_t gid) const {
        const auto item = head_.item(gid);
        return item ? item->length : 0;
    }

    /// What is visited from here on stays in memory, for the visits that follow.
    /// @param size  about how many bytes that will be
    void keep(std::size_t size) {
        kept_.reserve(kept_.size() + size);
        keptPlaces_.resize(head_.count());
        keeps_ = true;
    }
    /// Ends that for what has not been visited yet.
    void keepNoMore() { keeps_ = false; }

    /// Calls `each(bytes)` for every glyph in its turn; the bytes are gone when it returns. The
    /// glyphs ascend, and `sizeOf` has an answer for them.
    template <class Each>
    bool visit(std::span<const std::uint16_t> glyphs, const Each& each) {
        while (!glyphs.empty()) {
            if (const auto charString = kept(glyphs.front())) {
                each(*charString);
                glyphs = glyphs.subspan(1);
                continue;
            }
            const std::size_t count = readPiece(glyphs);
            if (count == 0)
                return false;
            for (const std::uint16_t gid : glyphs.first(count)) {
                const auto item = head_.item(gid);
                const ByteView charString =
                    ByteView(buffer_.data(), buffer_.size())
                        .sub(static_cast<std::size_t>(item->offset - start_), item->length);
                each(charString);
                if (keeps_)
                    add(gid, charString);
            }
            glyphs = glyphs.subspan(count);
        }
        return true;
    }

private:
    static constexpr std::uint32_t kMostPiece = std::uint32_t{64} << 10;

    /// Reads the first of these glyphs with one call; answers how many, 0 on a short read.
    std::size_t readPiece(std::span<const std::uint16_t> glyphs);

    std::optional<ByteView> kept(std::uint16_t gid) const {
        if (gid >= keptPlaces_.size() || keptPlaces_[gid] == 0)
            return std::nullopt;
        return ByteView(kept_.data(), kept_.size()).sub(keptPlaces_[gid] - 1, lengthOf(gid));
    }
    void add(std::uint16_t gid, ByteView charString);

    CFFStream& table_;
    const CFFIndexHead& head_;
    std::uint64_t start_ = 0; ///< where the bytes of the buffer come from
    std::vector<std::uint8_t> buffer_;
    bool keeps_ = false;
    std::vector<std::uint8_t> kept_;
    std::vector<std::uint32_t> keptPlaces_; ///< by glyph, from 1 on; 0 where it is not kept
};

} // namespace KWFontService_NS
