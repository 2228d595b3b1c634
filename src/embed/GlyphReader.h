#pragma once

#include "common/ByteView.h"
#include "embed/EmbedSource.h"
#include "embed/GlyphLocator.h"

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace KWFontService_NS {

/// Glyphs whose bytes follow each other; glyphs without bytes may be among them.
struct GlyphRun {
    std::span<const std::uint16_t> glyphs;
    KWCommonNS::ByteView bytes;
};

/// The glyphs of a font file, read a piece of neighbours at a time.
class GlyphReader {
public:
    /// Takes a run, whose bytes are gone when it returns.
    using Visitor = std::function<void(const GlyphRun& run)>;

    /// @param glyfOffset  of the table's directory record
    GlyphReader(EmbedSource& source, std::uint32_t glyfOffset, const GlyphLocator& locator)
        : source_(source), glyfOffset_(glyfOffset), locator_(locator) {}

    const GlyphLocator& locator() const { return locator_; }

    /// Shows `visitor` the bytes of `glyphs`, which ascend, in runs as long as may be.
    /// @param maxGap  bytes between two glyphs that may be read for nothing
    /// @return        false when a glyph lies outside the file, or all together take more bytes
    ///                than the file justifies
    bool visit(std::span<const std::uint16_t> glyphs, std::uint32_t maxGap, const Visitor& visitor);

    /// Calls `each(gid, bytes)` for every glyph of a run that has bytes.
    template <class Each>
    void split(const GlyphRun& run, const Each& each) const {
        std::size_t at = 0;
        for (const std::uint16_t gid : run.glyphs) {
            const std::uint32_t length = locator_.length(gid);
            if (length != 0)
                each(gid, run.bytes.sub(at, length));
            at += length;
        }
    }

    /// Reading over a gap of this size costs less than another read.
    static constexpr std::uint32_t kWorthwhileGap = 4096;

private:
    struct Piece {
        std::uint64_t begin = 0;
        std::uint64_t end = 0;
        std::size_t glyphCount = 0;
    };

    Piece pieceOf(std::span<const std::uint16_t> glyphs, std::uint32_t maxGap) const;
    bool read(const Piece& piece);
    void showRuns(const Piece& piece, std::span<const std::uint16_t> glyphs,
                  const Visitor& visitor) const;

    EmbedSource& source_;
    std::uint32_t glyfOffset_;
    const GlyphLocator& locator_;
    std::vector<std::uint8_t> buffer_;
};

} // namespace KWFontService_NS
