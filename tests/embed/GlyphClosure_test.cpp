#include "embed/GlyphClosure.h"

#include "GlyphFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using KWTest::Bytes;
using KWTest::CompositeGlyph;
using KWTest::GlyfLoca;
using KWTest::GlyphComponent;
using KWTest::GlyphFile;
using KWTest::locaOf;
using KWTest::SimpleGlyph;
using testing::ElementsAre;

std::vector<std::uint16_t> closureOf(const GlyfLoca& outlines,
                                     const std::vector<unsigned short>& wanted) {
    GlyphFile file(outlines);
    const auto closure = collectGlyphClosure(file.reader, wanted);
    EXPECT_TRUE(closure);
    return closure.value_or(std::vector<std::uint16_t>());
}

SimpleGlyph simple() {
    return {.contours = {KWTest::triangle({0, 0, 100, 100})}};
}
CompositeGlyph compositeOf(std::vector<GlyphComponent> components) {
    return {.components = std::move(components), .box = {0, 0, 100, 100}};
}

TEST(GlyphClosure, StartsWithGlyphZero) {
    const GlyfLoca outlines = (GlyfLoca().add(simple()).add(simple()));
    EXPECT_THAT(closureOf(outlines, {}), ElementsAre(0));
}

TEST(GlyphClosure, IsSortedAndWithoutRepeats) {
    GlyfLoca outlines;
    for (int i = 0; i < 6; ++i)
        outlines.add(simple());
    EXPECT_THAT(closureOf(outlines, {5, 2, 5, 0, 3, 2}), ElementsAre(0, 2, 3, 5));
}

TEST(GlyphClosure, DropsFFFF) {
    const GlyfLoca outlines =
        (GlyfLoca().add(simple()).add(compositeOf({{.glyphIndex = 0xFFFF}, {.glyphIndex = 0}})));
    EXPECT_THAT(closureOf(outlines, {0xFFFF}), ElementsAre(0));
    EXPECT_THAT(closureOf(outlines, {1}), ElementsAre(0, 1));
}

TEST(GlyphClosure, KeepsIdsOfNoGlyph) {
    const GlyfLoca outlines = (GlyfLoca().add(simple()));
    ASSERT_THAT(closureOf(outlines, {1, 500, 65534}), ElementsAre(0, 1, 500, 65534));
}

TEST(GlyphClosure, BringsInComponentsOfComponents) {
    const GlyfLoca outlines = (GlyfLoca()
                                   .add(simple())
                                   .add(simple())
                                   .add(compositeOf({{.glyphIndex = 1}, {.glyphIndex = 5}}))
                                   .add(simple())
                                   .add(compositeOf({{.glyphIndex = 2}}))
                                   .add(simple()));
    EXPECT_THAT(closureOf(outlines, {4}), ElementsAre(0, 1, 2, 4, 5));
}

TEST(GlyphClosure, WalksGlyphZeroToo) {
    const GlyfLoca outlines = (GlyfLoca().add(compositeOf({{.glyphIndex = 1}})).add(simple()));
    EXPECT_THAT(closureOf(outlines, {}), ElementsAre(0, 1));
}

TEST(GlyphClosure, SkipsArgumentsAndScalesOfEveryKind) {
    const GlyfLoca outlines =
        (GlyfLoca()
             .add()
             .add(compositeOf({{.glyphIndex = 2, .wordArguments = true},
                               {.glyphIndex = 3, .wordArguments = false},
                               {.glyphIndex = 4, .scale = {0.5}},
                               {.glyphIndex = 5, .scale = {0.5, 0.25}},
                               {.glyphIndex = 6, .scale = {1, 0, 0, 1}},
                               {.glyphIndex = 7, .scale = {0.5}, .wordArguments = false},
                               {.glyphIndex = 8}}))
             .add()
             .add()
             .add()
             .add()
             .add()
             .add()
             .add());
    EXPECT_THAT(closureOf(outlines, {1}), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8));
}

TEST(GlyphClosure, OneScaleGoesBeforeTheOthersWhereFlagsSaySeveral) {
    // 0x08 | 0x40 | 0x80: two bytes of scale, then the next component.
    const GlyfLoca outlines = (GlyfLoca().add().add(Bytes()
                                                        .i16(-1)
                                                        .zero(8)
                                                        .u16(0x08 | 0x40 | 0x80 | 0x20)
                                                        .u16(5)
                                                        .u16(0)
                                                        .u16(0x4000)
                                                        .u16(0)
                                                        .u16(6)
                                                        .u16(0)));
    EXPECT_THAT(closureOf(outlines, {1}), ElementsAre(0, 1, 5, 6));
}

TEST(GlyphClosure, GlyphsOfTenBytesAreKeptButNotWalked) {
    const GlyfLoca outlines = (GlyfLoca().add().add(Bytes().i16(-1).zero(8)));
    EXPECT_THAT(closureOf(outlines, {1}), ElementsAre(0, 1));
}

TEST(GlyphClosure, ACompositeOfThirteenBytesHasNoComponent) {
    GlyfLoca outlines{.longLoca = true, .alignment = 1};
    outlines.add()
        .add(Bytes().i16(-1).zero(8).u16(0).u8(0))
        .add(Bytes().i16(-1).zero(8).u16(0).u16(1));
    EXPECT_THAT(closureOf(outlines, {1}), ElementsAre(0, 1));
    EXPECT_THAT(closureOf(outlines, {2}), ElementsAre(0, 1, 2));
}

TEST(GlyphClosure, ACompositeThatPromisesMoreStopsAtItsEnd) {
    const GlyfLoca outlines =
        (GlyfLoca()
             .add()
             .add(CompositeGlyph{.components = {{.glyphIndex = 2}}, .endlessComponents = true})
             .add()
             .add(simple()));
    EXPECT_THAT(closureOf(outlines, {1}), ElementsAre(0, 1, 2));
}

TEST(GlyphClosure, ASimpleGlyphNamesNoComponents) {
    const GlyfLoca outlines =
        (GlyfLoca().add().add(Bytes().i16(0).zero(8).u16(0).u16(3)).add().add());
    EXPECT_THAT(closureOf(outlines, {1}), ElementsAre(0, 1));
}

TEST(GlyphClosure, EndsOnComponentsThatLoop) {
    const GlyfLoca outlines = (GlyfLoca()
                                   .add()
                                   .add(compositeOf({{.glyphIndex = 1}}))
                                   .add(compositeOf({{.glyphIndex = 3}}))
                                   .add(compositeOf({{.glyphIndex = 2}, {.glyphIndex = 1}})));
    EXPECT_THAT(closureOf(outlines, {2}), ElementsAre(0, 1, 2, 3));
}

TEST(GlyphClosure, FollowsAChainThroughEveryGlyph) {
    constexpr int kCount = 5000;
    GlyfLoca outlines{.longLoca = true};
    outlines.add();
    for (int i = 1; i < kCount; ++i)
        outlines.add(compositeOf({{.glyphIndex = static_cast<std::uint16_t>(i + 1)}}));
    outlines.add();
    EXPECT_EQ(closureOf(outlines, {1}).size(), std::size_t{kCount + 1});
}

TEST(GlyphClosure, FollowsALongChainDownwards) {
    // Each round finds one glyph, before all that are known.
    constexpr int kCount = 60000;
    GlyfLoca outlines{.longLoca = true};
    outlines.add();
    for (int i = 1; i < kCount; ++i)
        outlines.add(compositeOf({{.glyphIndex = static_cast<std::uint16_t>(i - 1)}}));
    EXPECT_EQ(closureOf(outlines, {kCount - 1}).size(), std::size_t{kCount});
}

TEST(GlyphClosure, FansOutOnceEach) {
    constexpr std::uint16_t kCount = 300;
    GlyfLoca outlines{.longLoca = true};
    outlines.add();
    std::vector<GlyphComponent> all;
    for (std::uint16_t i = 1; i < kCount; ++i)
        all.push_back({.glyphIndex = i});
    for (std::uint16_t i = 1; i < kCount; ++i)
        outlines.add(compositeOf(all));
    EXPECT_EQ(closureOf(outlines, {1}).size(), std::size_t{kCount});
}

TEST(GlyphClosure, RoundsBehindTheThirdReadNoGaps) {
    // Each round finds glyphs some 700 bytes apart: with the gaps it would read most of the file.
    constexpr std::uint16_t kCount = 2000;
    const auto orZero = [](int gid) {
        return static_cast<std::uint16_t>(gid < int{kCount} ? gid : 0);
    };
    GlyfLoca outlines{.longLoca = true};
    outlines.add();
    for (int i = 1; i < int{kCount}; ++i)
        outlines.add(compositeOf({{.glyphIndex = orZero(i + 1)}, {.glyphIndex = orZero(i + 30)}}));
    EXPECT_EQ(closureOf(outlines, {1}).size(), std::size_t{kCount});
}

TEST(GlyphClosure, FailsWhereAGlyphLeavesTheFile) {
    const auto read = [](unsigned short gid) {
        GlyphFile file(Bytes().zero(40), locaOf({0, 10, 41}, true), true, 2);
        return collectGlyphClosure(file.reader, {gid}).has_value();
    };
    EXPECT_TRUE(read(0));
    EXPECT_FALSE(read(1));
}

} // namespace
} // namespace KWFontService_NS
