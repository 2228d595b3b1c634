#pragma once

#include "embed/GlyphReader.h"

#include "support/GlyfTables.h"

#include <cstdint>
#include <sstream>
#include <utility>

namespace KWTest {

/// Glyphs in a file of their own, a few bytes from its start.
struct GlyphFile {
    static constexpr std::uint32_t kGlyfOffset = 3;

    explicit GlyphFile(const GlyfLoca& outlines)
        : GlyphFile(outlines.glyf(), outlines.loca(), outlines.longLoca,
                    static_cast<std::uint16_t>(outlines.glyphs.size())) {}
    GlyphFile(const Bytes& glyf, Bytes locaBytes, bool isLong, std::uint16_t numGlyphs)
        : loca(std::move(locaBytes)), stream(Bytes().zero(kGlyfOffset).bytes(glyf).str()),
          source(stream), locator(KWCommonNS::ByteView(loca.data(), loca.size()), isLong ? 1 : 0,
                                  static_cast<std::uint32_t>(glyf.size()), numGlyphs),
          reader(source, kGlyfOffset, locator) {}

    Bytes loca;
    std::istringstream stream;
    KWFontService_NS::EmbedSource source;
    KWFontService_NS::GlyphLocator locator;
    KWFontService_NS::GlyphReader reader;
};

} // namespace KWTest
