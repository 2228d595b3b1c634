// What a CFF font takes of the heap once it is loaded. It has a program of its own, since it counts
// every allocation.

#include "support/HeldNew.h"

#include "cff/CffFixture.h"
#include "support/FontPackages.h"
#include "support/FontTables.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

/// Bytes that the members hold for themselves, as the file has them.
std::size_t keptBytes(const Type1CMap& cff) {
    return cff.strings.dataSize() + 4 * (cff.strings.size() + 1) + cff.encodingCodes.size() +
           2 * cff.charsetSIDs.size() +
           sizeof(CharsetRange) * (cff.charsetByValue.size() + cff.charsetByGlyph.size());
}

TEST(CffHeap, OnlyCharsetEncodingStringsAndTopDictStay) {
    constexpr std::size_t kTopDict = 4096; // a few dozen entries
    for (const char* name : {"NotoSansCJK", "LMRoman10", "TeXGyreTermesMath", "C059-Roman",
                             "D050000L", "LinLibertine"}) {
        const Bytes table = fontTable(packagedFont(name), "CFF ");
        ASSERT_FALSE(table.empty()) << name;
        std::istringstream stream(table.str());
        CFFStream file(stream, 0, static_cast<std::uint32_t>(table.size()));
        Type1CMap cff;
        const std::size_t before = g_heldBytes;
        ASSERT_TRUE(cff.readCFFTable(file)) << name;
        EXPECT_LE(g_heldBytes - before, keptBytes(cff) + kTopDict) << name;
    }
}

TEST(CffHeap, SmallItemsCostNoMoreThanTheirBytes) {
    CffSections table;
    table.strings = std::vector<Bytes>(60000);
    table.charStrings = std::vector<Bytes>(2, Bytes{14});
    TableStream stream(table.build());
    Type1CMap cff;
    const std::size_t before = g_heldBytes;
    ASSERT_TRUE(cff.readCFFTable(stream.table));
    EXPECT_LE(g_heldBytes - before, 60001 + 4096U);
}

} // namespace
} // namespace KWFontService_NS
