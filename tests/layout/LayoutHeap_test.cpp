// What the layout tables of a face take of the heap. It has a program of its own, since it counts
// every allocation.

#include "support/HeldNew.h"

#include "layout/LayoutFixture.h"
#include "layout/TTI_Gdef.h"
#include "support/FontPackages.h"
#include "support/FontTables.h"

#include <gtest/gtest.h>

#include <cstddef>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using Kind = TTI_LayoutTable::Kind;

struct Sizes {
    std::size_t file = 0;
    std::size_t heap = 0;
};

/// Reads the three tables and counts what they hold.
Sizes layoutOf(const std::filesystem::path& font) {
    const Bytes gdefBytes = fontTable(font, "GDEF");
    const Bytes gsubBytes = fontTable(font, "GSUB");
    const Bytes gposBytes = fontTable(font, "GPOS");
    const std::size_t before = g_heldBytes;
    TTI_Gdef gdef;
    TTI_LayoutTable gsub;
    TTI_LayoutTable gpos;
    gdef.read(viewOf(gdefBytes));
    gsub.read(gsubBytes.vector(), Kind::Gsub);
    gpos.read(gposBytes.vector(), Kind::Gpos);
    return {.file = gdefBytes.size() + gsubBytes.size() + gposBytes.size(),
            .heap = g_heldBytes - before};
}

TEST(LayoutHeap, TheGraphOfPackagedFontsTakesOneAndAHalfTimesTheirTablesAtMost) {
    // What a table of a kilobyte takes beside its bytes is of no account.
    constexpr std::size_t kSmall = 8192;
    std::size_t fonts = 0;
    for (const PackagedFont& font : packagedFonts()) {
        const Sizes sizes = layoutOf(packagedFont(font.name));
        fonts += sizes.file > kSmall ? 1 : 0;
        EXPECT_LE(sizes.heap, std::max(sizes.file + sizes.file / 2, sizes.file + kSmall))
            << font.name << ": " << sizes.file << " bytes of tables";
    }
    EXPECT_GT(fonts, 20U);
}

TEST(LayoutHeap, NothingIsKeptForEachGlyph) {
    // One subtable with 30000 substitutes, behind one coverage of 30000 glyphs.
    std::vector<GlyphSubstitution> pairs;
    for (std::uint16_t i = 0; i < 30000; ++i)
        pairs.push_back({i, static_cast<std::uint16_t>(i + 30000)});
    // Both have 16-bit offsets: the coverage is one range.
    const Bytes bytes =
        LayoutBytes{.lookups = lookupList({lookupTable(
                        1, {SingleSubst{.pairs = pairs, .coverageFormat = 2}.build()})})}
            .build();
    const std::size_t before = g_heldBytes;
    TTI_LayoutTable table;
    table.read(bytes.vector(), Kind::Gsub);
    ASSERT_EQ(table.lookup(0)->subtables[0]->substituteSingle(29999), 59999);
    EXPECT_LE(g_heldBytes - before, bytes.size() + 512);
}

} // namespace
} // namespace KWFontService_NS
