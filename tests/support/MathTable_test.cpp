#include "support/MathTable.h"

#include "support/ProcessRunner.h"
#include "support/TempDir.h"
#include "support/TestFont.h"

#include <gtest/gtest.h>

namespace KWTest {
namespace {

using KWFontService_NS::FS_MATHConstants;

TEST(Math, WhatIsLeftOutHasOffsetZero) {
    EXPECT_EQ(Math{}.build(), Bytes().u32(0x00010000).zero(6));
    EXPECT_EQ(MathGlyphInfo{}.build(), Bytes().zero(8));
    EXPECT_EQ(MathVariants{}.build(), Bytes().u16(20).zero(8));
}

TEST(Math, ConstantsAreTwoHundredAndFourteenBytes) {
    const Bytes table =
        mathConstantsTable({{FS_MATHConstants::scriptPercentScaleDown, 70},
                            {FS_MATHConstants::axisHeight, -3},
                            {FS_MATHConstants::radicalDegreeBottomRaisePercent, 60}});
    EXPECT_EQ(table.size(), 214U);
    EXPECT_EQ(table.u16At(0), 70);
    EXPECT_EQ(table.i16At(12), -3);
    EXPECT_EQ(table.u16At(212), 60);
}

TEST(Math, FontToolsReadsIt) {
    if (!kForeignPrograms)
        GTEST_SKIP() << "foreign programs are not run here";
    TestFont font = TestFont::latin();
    font.with(
        "MATH",
        Math{.constants = MathConstants{{FS_MATHConstants::displayOperatorMinHeight, 900},
                                        {FS_MATHConstants::axisHeight, 250},
                                        {FS_MATHConstants::radicalKernAfterDegree, -7},
                                        {FS_MATHConstants::radicalDegreeBottomRaisePercent, 60}},
             .glyphInfo = MathGlyphInfo{.italicsCorrections = {{TestFont::kB, -30}}},
             .variants = MathVariants{.vertical = {{TestFont::kA, {{TestFont::kB, 700}}},
                                                   {TestFont::kB, {{TestFont::kC, 900}}, true}},
                                      .horizontal = {{TestFont::kC, {{TestFont::kA, 650}}}},
                                      .coverageFormat = 2}});
    const TempDir scratch;
    const auto file = scratch.write("font.ttf", font.build());
    const ProcessResult result = runPython(
        R"(import sys
from fontTools.ttLib import TTFont
math = TTFont(sys.argv[1], checkChecksums=2)['MATH'].table
c = math.MathConstants
print(c.DisplayOperatorMinHeight, c.AxisHeight.Value, c.RadicalKernAfterDegree.Value,
      c.RadicalDegreeBottomRaisePercent)
i = math.MathGlyphInfo.MathItalicsCorrectionInfo
print(i.Coverage.glyphs, [v.Value for v in i.ItalicsCorrection])
v = math.MathVariants
for coverage, constructions in ((v.VertGlyphCoverage, v.VertGlyphConstruction),
                                (v.HorizGlyphCoverage, v.HorizGlyphConstruction)):
    print(coverage.glyphs, [[(r.VariantGlyph, r.AdvanceMeasurement)
                             for r in c.MathGlyphVariantRecord] for c in constructions],
          [c.GlyphAssembly is not None for c in constructions])
)",
        {file.string()});
    EXPECT_TRUE(result.ok()) << result.describe();
    EXPECT_EQ(result.output, "900 250 -7 60\n"
                             "['B'] [-30]\n"
                             "['A', 'B'] [[('B', 700)], [('C', 900)]] [False, True]\n"
                             "['C'] [[('A', 650)]] [False]\n");
}

} // namespace
} // namespace KWTest
