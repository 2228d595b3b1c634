#include "embed/GlyphReader.h"

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

// Small enough to stay in the processor's cache between reading and use.
constexpr std::uint64_t kPieceSize = std::uint64_t{64} << 10;

} // namespace

/// The first glyphs of `glyphs` that one read fetches.
GlyphReader::Piece GlyphReader::pieceOf(std::span<const std::uint16_t> glyphs,
                                        std::uint32_t maxGap) const {
    Piece piece;
    for (const std::uint16_t gid : glyphs) {
        const std::uint32_t length = locator_.length(gid);
        if (length != 0) {
            const std::uint64_t start = locator_.offset(gid);
            if (piece.end == 0)
                piece.begin = start;
            else if (start < piece.end || start - piece.end > maxGap ||
                     start + length - piece.begin > kPieceSize)
                break;
            piece.end = start + length;
        }
        ++piece.glyphCount;
    }
    return piece;
}

bool GlyphReader::read(const Piece& piece) {
    const std::uint64_t size = piece.end - piece.begin;
    if (!source_.contains(glyfOffset_ + piece.begin, size) || !source_.charge(size))
        return false;
    if (buffer_.size() < size)
        buffer_.resize(static_cast<std::size_t>(size));
    return source_.read(glyfOffset_ + piece.begin,
                        std::span(buffer_).first(static_cast<std::size_t>(size)));
}

void GlyphReader::showRuns(const Piece& piece, std::span<const std::uint16_t> glyphs,
                           const Visitor& visitor) const {
    std::size_t first = 0;
    std::uint64_t begin = piece.begin;
    std::uint64_t end = piece.begin;
    const auto show = [&](std::size_t last) {
        if (end != begin)
            visitor({glyphs.subspan(first, last - first),
                     ByteView(buffer_.data() + (begin - piece.begin),
                              static_cast<std::size_t>(end - begin))});
    };
    for (std::size_t i = 0; i < glyphs.size(); ++i) {
        const std::uint32_t length = locator_.length(glyphs[i]);
        if (length == 0)
            continue;
        const std::uint64_t start = locator_.offset(glyphs[i]);
        if (start != end) {
            show(i);
            first = i;
            begin = start;
        }
        end = start + length;
    }
    show(glyphs.size());
}

bool GlyphReader::visit(std::span<const std::uint16_t> glyphs, std::uint32_t maxGap,
                        const Visitor& visitor) {
    while (!glyphs.empty()) {
        const Piece piece = pieceOf(glyphs, maxGap);
        if (piece.end != piece.begin) {
            if (!read(piece))
                return false;
            showRuns(piece, glyphs.first(piece.glyphCount), visitor);
        }
        glyphs = glyphs.subspan(piece.glyphCount);
    }
    return true;
}

} // namespace KWFontService_NS
