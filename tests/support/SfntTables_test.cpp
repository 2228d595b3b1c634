#include "support/SfntTables.h"

#include "support/FreeTypeFace.h"
#include "support/ProcessRunner.h"
#include "support/TempDir.h"
#include "support/TestFont.h"

#include <gtest/gtest.h>

namespace KWTest {
namespace {

TEST(SfntTables, SizesAreThoseOfTheFormat) {
    EXPECT_EQ(Head{}.build().size(), 54u);
    EXPECT_EQ(Hhea{}.build().size(), 36u);
    EXPECT_EQ(Vhea{}.build().size(), 36u);
    EXPECT_EQ(Maxp{}.build().size(), 32u);
    EXPECT_EQ(Maxp{.version = 0x00005000}.build().size(), 6u);
    EXPECT_EQ(Post{}.build().size(), 32u);
}

TEST(SfntTables, TheVersionOfOS2DecidesItsSize) {
    const std::size_t sizes[] = {78, 86, 96, 96, 96, 100};
    for (std::uint16_t version = 0; version < 6; ++version)
        EXPECT_EQ(OS2{.version = version}.build().size(), sizes[version]) << version;
}

TEST(SfntTables, LabelledFieldsStandAtTheirOffsets) {
    EXPECT_EQ(Head{}.build().offsetOf("unitsPerEm"), 18u);
    EXPECT_EQ(Head{}.build().offsetOf("indexToLocFormat"), 50u);
    EXPECT_EQ(Hhea{}.build().offsetOf("numberOfHMetrics"), 34u);
    EXPECT_EQ(OS2{}.build().offsetOf("panose"), 32u);
    EXPECT_EQ(OS2{}.build().offsetOf("fsSelection"), 62u);
    EXPECT_EQ(OS2{}.build().offsetOf("usWinDescent"), 76u);
    EXPECT_EQ(OS2{}.build().offsetOf("sxHeight"), 86u);
    EXPECT_EQ(Post{}.build().offsetOf("isFixedPitch"), 12u);
}

TEST(Metrics, FullMetricsComeBeforeBareBearings) {
    EXPECT_EQ((Hmtx{.metrics = {{600, -5}}, .bearings = {7}}.build()),
              Bytes().u16(600).i16(-5).i16(7));
    EXPECT_EQ((Vmtx{.metrics = {{1000, 80}}, .bearings = {9}}.build()),
              Bytes().u16(1000).i16(80).i16(9));
}

TEST(Vorg, TheCountCanLie) {
    EXPECT_EQ((Vorg{.origins = {{5, 900}}, .numVertOriginYMetrics = 2}.build()),
              Bytes().u16(1).u16(0).i16(880).u16(2).u16(5).i16(900));
}

TEST(Name, RecordsAndStringsStandInTheOrderGiven) {
    const Bytes table = Name{.records = {windowsName(1, u"A"), macName(4, "xyz"),
                                         windowsBytesName(1, "\x82\xA0", 2, 0x0411)}}
                            .build();
    EXPECT_EQ(table, Bytes()
                         .u16s({0, 3, 42})
                         .u16s({3, 1, 0x0409, 1, 2, 0})
                         .u16s({1, 0, 0, 4, 3, 2})
                         .u16s({3, 2, 0x0411, 1, 4, 5})
                         .bytes(Bytes{0x00, 0x41, 'x', 'y', 'z', 0x00, 0x82, 0x00, 0xA0}));
}

TEST(Name, CountLengthAndOffsetCanLie) {
    NameRecord record = windowsName(1, u"A");
    record.length = 0xFFFF;
    record.offset = 0x1234;
    const Bytes table = Name{.records = {record}, .count = 7, .stringOffset = 0}.build();
    EXPECT_EQ(table.slice(0, 18), Bytes().u16s({0, 7, 0, 3, 1, 0x0409, 1, 0xFFFF, 0x1234}));
}

TEST(Kern, FreeTypeFindsAPair) {
    TestFont font = TestFont::latin();
    font.with("kern", Kern{.subtables = {{.pairs = {{TestFont::kA, TestFont::kB, -80},
                                                    {TestFont::kA, TestFont::kC, -40}}}}});
    const FreeTypeFace face(font.build());
    FT_Vector kerning{};
    FT_Get_Kerning(face.get(), TestFont::kA, TestFont::kC, FT_KERNING_UNSCALED, &kerning);
    EXPECT_EQ(kerning.x, -40);
}

TEST(Kern, OtherFormatsHaveABodyAndLengthsCanLie) {
    const Bytes table = Kern{.subtables = {{.coverage = 0x0201, .body = Bytes{1, 2, 3}},
                                           {.coverage = 0, .length = 5, .nPairs = 1}}}
                            .build();
    EXPECT_EQ(table, Bytes()
                         .u16s({0, 2})
                         .u16s({0, 9, 0x0201})
                         .bytes(Bytes{1, 2, 3})
                         .u16s({0, 5, 0, 1, 0, 0, 0}));
}

TEST(Kern, TheLengthOfALongTableKeepsItsLow16Bits) {
    const KernSubtable subtable{.pairs = std::vector<KernPair>(10923)};
    EXPECT_EQ(subtable.build().u16At(2), (14 + 10923 * 6) & 0xFFFF);
}

TEST(SfntTables, FontToolsReadsTheOptionalTables) {
    if (!kForeignPrograms)
        GTEST_SKIP() << "foreign programs are not run here";
    const TempDir scratch;
    TestFont font = TestFont::vertical();
    font.with("cvt ", Cvt{.values = {1, -1}})
        .with("kern", Kern{.subtables = {{.pairs = {{2, 3, -5}}}}});
    const auto file = scratch.write("font.ttf", font.build());
    const ProcessResult result = runPython(R"(
import sys
from fontTools.ttLib import TTFont
font = TTFont(sys.argv[1], checkChecksums=2)
print(list(font['cvt '].values))
print(list(font['kern'].kernTables[0].kernTable.values()))
print(font['vhea'].numberOfVMetrics, font['vmtx']['uni300C'])
print(font['VORG']['uni300C'], font['VORG']['glyph00004'])
print(font['name'].getDebugName(6))
)",
                                           {file.string()});
    EXPECT_EQ(result.output, "[1, -1]\n[-5]\n5 (1000, 80)\n880 900\nKWTestVertical-Regular\n")
        << result.describe();
}

} // namespace
} // namespace KWTest
