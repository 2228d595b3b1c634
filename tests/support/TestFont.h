#pragma once

#include "Bytes.h"
#include "CffTable.h"
#include "CmapTables.h"
#include "GlyfTables.h"
#include "LayoutTables.h"
#include "SfntBuilder.h"
#include "SfntTables.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace KWTest {

/// A whole small font whose tables lie open. Change what a test is about, then build:
///
///     TestFont font = TestFont::latin();
///     font.os2.usWeightClass = 5;
///     Bytes file = font.build();
///
///     Bytes file = TestFont::latin().without("OS/2").with("kern", kern).build();
///
/// The fonts of `latin`, `vertical` and `openType` are sound: FreeType, fontTools and OpenType
/// Sanitizer accept them. What a test changes changes nothing else: `maxp` still counts seven
/// glyphs after an eighth was added. Only `outlines.longLoca` sets `indexToLocFormat` along.
struct TestFont {
    // Glyphs of `latin`. Advances: 500, 250, 600, 650, 700, 300; Aacute has no full metric in
    // `hmtx` and so the advance of the acute before it.
    static constexpr std::uint16_t kNotdef = 0; // a rectangle
    static constexpr std::uint16_t kSpace = 1;  // empty
    static constexpr std::uint16_t kA = 2;      // a triangle
    static constexpr std::uint16_t kB = 3;      // a rectangle in a rectangle
    static constexpr std::uint16_t kC = 4;      // with curves
    static constexpr std::uint16_t kAcute = 5;
    static constexpr std::uint16_t kAacute = 6; // composite of A and acute
    static constexpr std::uint16_t kLatinGlyphs = 7;

    // Glyphs of `vertical`, besides .notdef and space: U+3042, U+300C and the vertical form of the
    // latter. Advance widths are the em but for space (half of it); advance heights likewise.
    static constexpr std::uint16_t kHiraganaA = 2;
    static constexpr std::uint16_t kBracket = 3;
    static constexpr std::uint16_t kBracketVertical = 4;
    static constexpr std::uint16_t kVerticalGlyphs = 5;

    // Glyphs of `openType`, besides .notdef and space: A is kA, B is kB, both rectangles.
    static constexpr std::uint16_t kOpenTypeGlyphs = 4;

    std::uint32_t version = kTrueTypeVersion;
    Head head{};
    Hhea hhea{};
    Maxp maxp{};
    OS2 os2{};
    Post post{};
    Name name{};
    Cmap cmap{};
    Hmtx hmtx{};
    GlyfLoca outlines{};  // no glyphs: no `glyf`, no `loca`
    SfntBuilder extras{}; // further tables, and those that take the place of the ones above

    /// Space, A, B, C, acute, Aacute in `glyf`; family "KWTest Latin". Outlines and metrics are
    /// laid out on 1000 units and scaled (rounding down) to the em that is asked for.
    static TestFont latin(std::uint16_t unitsPerEm = 1000);
    /// A font with `vhea`, `vmtx`, `VORG` and a `vert` feature; family "KWTest Vertical".
    static TestFont vertical();
    /// A name-keyed 'OTTO' font; family "KWTest OpenType".
    static TestFont openType();

    /// Adds or replaces a table.
    TestFont& with(std::string_view tag, Bytes data);
    template <BytesMaker Maker>
    TestFont& with(std::string_view tag, const Maker& maker) {
        return with(tag, Bytes(maker.build()));
    }
    /// Leaves a table out.
    TestFont& without(std::string_view tag);

    /// All tables, for tests that lie about the directory or change the order.
    SfntBuilder sfnt() const;
    Bytes build() const { return sfnt().build(); }

private:
    std::vector<std::string> dropped_{};
};

} // namespace KWTest
