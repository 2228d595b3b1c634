#include "GposOracle.h"

#include <gtest/gtest.h>

namespace KWTest::oracle {
namespace {

Coverage covering(const std::vector<Glyph>& glyphs) {
    Coverage coverage;
    for (const Glyph glyph : glyphs)
        coverage.indices.emplace(glyph, static_cast<int>(coverage.indices.size()));
    return coverage;
}

Placed placed(Glyph glyph, int glyphClass, int width, unsigned flag = 0) {
    Placed p;
    p.slot = {glyph, glyphClass};
    p.width = static_cast<std::int16_t>(width);
    p.x2 = p.width;
    p.flag = static_cast<std::uint16_t>(flag);
    return p;
}

class Gpos : public testing::Test {
protected:
    /// What one lookup of one subtable makes of a line.
    int apply(const SubTable& subtable, Line& line, bool rtl = false, int flag = 0) {
        font_.gpos.lookups = {{typeOf(subtable, Kind::Gpos), flag, false, {subtable}}};
        font_.gpos.features = {{1, {0}}};
        font_.gpos.scripts[1][0] = {0};
        return GposOracle(findHandle(font_, 1, 0)).processGPOS3(0, line, rtl);
    }

private:
    Font font_;
};

constexpr unsigned kStrict = Placed::kStrict;

TEST_F(Gpos, PlacementMovesTheGlyphAndNotThePen) {
    Line line{placed(1, 1, 500)};
    EXPECT_EQ(apply(SinglePos{1, covering({1}), 3, {{30, 50}}}, line), 0);
    EXPECT_EQ(line[0].x1, 30);
    EXPECT_EQ(line[0].x2, 470);
    EXPECT_EQ(line[0].y, -50);
}

TEST_F(Gpos, ADeviceAloneDoesNothing) {
    Line line{placed(1, 1, 500, Placed::kOutside)};
    const Line before = line;
    EXPECT_EQ(apply(SinglePos{1, covering({1}), 0x10, {{30, 50}}}, line), -1);
    EXPECT_EQ(line, before);
}

TEST_F(Gpos, PositionsFromOutsideAreForgottenFirst) {
    Line line{placed(1, 1, 500, Placed::kOutside)};
    line[0].x1 = 7;
    line[0].x2 = 8;
    EXPECT_EQ(apply(SinglePos{1, covering({1}), 2, {{0, 50}}}, line), 0);
    EXPECT_EQ(line[0].x1, 0);
    EXPECT_EQ(line[0].x2, 500);
    EXPECT_EQ(line[0].flag, 0);
}

TEST_F(Gpos, AMarkBlocksAPairUnlessTheFirstGlyphIsStrict) {
    const PairGlyphs kern{covering({1}), 4, 0, {{{2, {0, 0, -10}}}}};
    constexpr int kIgnoreMarks = 8;
    Line loose{placed(1, 1, 500), placed(9, 3, 0), placed(2, 1, 500)};
    EXPECT_EQ(apply(kern, loose, false, kIgnoreMarks), -1);
    Line strict{placed(1, 1, 500, kStrict), placed(9, 3, 0), placed(2, 1, 500)};
    EXPECT_EQ(apply(kern, strict, false, kIgnoreMarks), 1) << "the glyph before the second";
    EXPECT_EQ(strict[0].x2, 490);
}

TEST_F(Gpos, UnknownClassesAreClass0ForStrictGlyphsAlone) {
    const PairClasses kern{covering({1}),        4, 0, {1, {{1, 1}}}, {1, {{1, 1}}},
                           {{{{0, 0, -10}, {}}}}};
    Line loose{placed(1, 1, 500), placed(1, 1, 500)};
    EXPECT_EQ(apply(kern, loose), -1);
    Line strict{placed(1, 1, 500, kStrict), placed(1, 1, 500)};
    EXPECT_EQ(apply(kern, strict), 0);
    EXPECT_EQ(strict[0].x2, 490);
}

TEST_F(Gpos, AMarkGoesOnTheBaseBeforeIt) {
    const MarkAttach mark{4, covering({9}),         covering({1}),
                          1, {{0, Anchor{10, 20}}}, {{Anchor{250, 700}}}};
    Line line{placed(1, 1, 500), placed(9, 3, 0)};
    EXPECT_EQ(apply(mark, line), 1);
    EXPECT_EQ(line[1].x1, 250 - 10 - 500);
    EXPECT_EQ(line[1].x2, 260);
    EXPECT_EQ(line[1].y, 20 - 700);

    Line narrow{placed(1, 1, 0), placed(9, 3, 0)};
    EXPECT_EQ(apply(mark, narrow), -1) << "no base without a width";
    narrow[1].flag = Placed::kZeroWidthBase;
    EXPECT_EQ(apply(mark, narrow), 1);
}

TEST_F(Gpos, AMarkFindsItsComponentThroughSkipInfo) {
    const MarkLigature mark{covering({9}),
                            covering({1}),
                            1,
                            {{0, Anchor{0, 0}}},
                            {{{Anchor{1, 0}}, {Anchor{2, 0}}, {Anchor{3, 0}}}}};
    for (const auto& [skipInfo, x] : {std::pair(0, 3), std::pair(2, 2), std::pair(4, 3)}) {
        Line line{placed(1, 2, 500, Placed::kComponentInfo), placed(9, 3, 0)};
        line[1].skipInfo = static_cast<std::int16_t>(skipInfo);
        EXPECT_EQ(apply(mark, line, true), 1);
        EXPECT_EQ(line[1].x1, x) << skipInfo;
    }
}

TEST_F(Gpos, CursiveAttachmentFromTheRightLiftsTheGroupBeforeIt) {
    const Cursive cursive{covering({1}), {{Anchor{0, 0}, std::nullopt}}};
    Cursive both = cursive;
    both.coverage = covering({1, 2});
    both.anchors.emplace_back(std::nullopt, Anchor{10, 100});
    Line line{placed(3, 1, 500), placed(3, 1, 500), placed(2, 1, 500), placed(1, 1, 400, kStrict)};
    line[0].decomposition = 4;
    EXPECT_EQ(apply(both, line, true), 2);
    EXPECT_EQ(line[0].y, 0) << "the end of another group";
    EXPECT_EQ(line[1].y, 100);
    EXPECT_EQ(line[2].y, 100);
    EXPECT_EQ(line[2].x1, 0 - 400 - 10);
}

TEST_F(Gpos, AContextAppliesItsLookupsWhereItIs) {
    Font font;
    ChainCoverages chain;
    chain.input = {covering({1}), covering({2})};
    chain.records = {{1, 1}};
    font.gpos.lookups = {{8, 0, false, {chain}},
                         {1, 0, false, {SinglePos{1, covering({1, 2}), 4, {{0, 0, 5}}}}}};
    font.gpos.features = {{1, {0}}};
    font.gpos.scripts[1][0] = {0};
    Line line{placed(1, 1, 500), placed(2, 1, 500)};
    EXPECT_EQ(GposOracle(findHandle(font, 1, 0)).processGPOS3(0, line, false), 0);
    EXPECT_EQ(line[0].x2, 505) << "whatever the sequence index";
    EXPECT_EQ(line[1].x2, 500);
}

} // namespace
} // namespace KWTest::oracle
