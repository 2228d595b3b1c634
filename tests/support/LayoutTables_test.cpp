#include "support/LayoutTables.h"

#include "support/ProcessRunner.h"
#include "support/TempDir.h"
#include "support/TestFont.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace KWTest {
namespace {

/// What a Python expression over the opened `font` prints.
std::string fontToolsSays(const TestFont& font, const std::string& expression) {
    const TempDir scratch;
    const auto file = scratch.write("font.ttf", font.build());
    const ProcessResult result = runPython("import sys\nfrom fontTools.ttLib import TTFont\n"
                                           "font = TTFont(sys.argv[1], checkChecksums=2)\nprint(" +
                                               expression + ")",
                                           {file.string()});
    return result.ok() ? result.output : result.describe();
}

TEST(Coverage, FormatsOneAndTwo) {
    EXPECT_EQ(coverageTable({2, 3, 7}), Bytes().u16s({1, 3, 2, 3, 7}));
    EXPECT_EQ(coverageTable({2, 3, 7}, 2), Bytes().u16s({2, 2, 2, 3, 0, 7, 7, 2}));
}

TEST(SingleSubst, FormatOneStoresTheDistance) {
    EXPECT_EQ((SingleSubst{.format = 1, .pairs = {{3, 1}, {4, 2}}}.build()),
              Bytes().u16s({1, 6, 0xFFFE}).u16s({1, 2, 3, 4}));
    EXPECT_THROW((SingleSubst{.format = 1, .pairs = {{3, 1}, {4, 1}}}.build()),
                 std::invalid_argument);
}

TEST(SingleSubst, FormatTwoStoresTheSubstitutes) {
    EXPECT_EQ((SingleSubst{.format = 2, .pairs = {{3, 1}, {4, 9}}}.build()),
              Bytes().u16s({2, 10, 2, 1, 9}).u16s({1, 2, 3, 4}));
}

TEST(SingleSubstGsub, FontToolsReadsBothFormats) {
    if (!kForeignPrograms)
        GTEST_SKIP() << "foreign programs are not run here";
    const std::string lookup = "font['GSUB'].table.FeatureList.FeatureRecord[0].FeatureTag, "
                               "[t.mapping for t in font['GSUB'].table.LookupList.Lookup[0]"
                               ".SubTable]";
    TestFont font = TestFont::vertical();
    EXPECT_EQ(fontToolsSays(font, lookup), "vert [{'uni300C': 'glyph00004'}]\n");

    font.with("GSUB", SingleSubstGsub{.subtables = {{.format = 1, .pairs = {{3, 4}}},
                                                    {.pairs = {{2, 4}}, .coverageFormat = 2}}});
    EXPECT_EQ(fontToolsSays(font, lookup),
              "vert [{'uni300C': 'glyph00004'}, {'uni3042': 'glyph00004'}]\n");
}

TEST(Mort, AChainHoldsFeaturesThenSubtables) {
    EXPECT_EQ((Mort::vertical({{3, 4}}).build()), Bytes()
                                                      .u32(0x00010000)
                                                      .u32(1)  // chains
                                                      .u32(1)  // default flags
                                                      .u32(52) // chain length
                                                      .u16(1)  // features
                                                      .u16(1)  // subtables
                                                      .u16s({4, 0, 0, 1, 0xFFFF, 0xFFFF})
                                                      .u16(28) // subtable length
                                                      .u16(0x8004)
                                                      .u32(1)
                                                      .u16(6) // lookup format
                                                      .u16s({4, 1, 4, 0, 0})
                                                      .u16s({3, 4})
                                                      .u16s({0xFFFF, 0xFFFF}));
}

TEST(Mort, FontToolsReadsTheVerticalSubstitution) {
    if (!kForeignPrograms)
        GTEST_SKIP() << "foreign programs are not run here";
    TestFont font = TestFont::vertical();
    font.without("GSUB").with("mort", Mort::vertical({{3, 4}}));
    EXPECT_EQ(fontToolsSays(font, "font['mort'].table.MorphChain[0].MorphSubtable[0]"
                                  ".SubStruct.Substitution"),
              "{'uni300C': 'glyph00004'}\n");
}

TEST(Gdef, FontToolsReadsTheClasses) {
    if (!kForeignPrograms)
        GTEST_SKIP() << "foreign programs are not run here";
    TestFont font = TestFont::latin();
    font.with("GDEF", Gdef{.glyphClassDef = classDefFormat2({{2, 3, 1}}),
                           .markAttachClassDef = classDefFormat1(5, {2})});
    EXPECT_EQ(fontToolsSays(font, "font['GDEF'].table.GlyphClassDef.classDefs, "
                                  "font['GDEF'].table.MarkAttachClassDef.classDefs"),
              "{'A': 1, 'B': 1} {'acute': 2}\n");
}

TEST(Gdef, AnAbsentClassDefHasOffsetZero) {
    EXPECT_EQ(Gdef{}.build(), Bytes().u32(0x00010000).zero(8));
}

} // namespace
} // namespace KWTest
