#include "raster/GlyphTransform.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <numbers>

namespace KWFontService_NS {
namespace {

using Setting = FS_GlyphBMPSetting;

void expectMatrix(const Setting& setting, double xx, double xy, double yx, double yy) {
    const FT_Matrix matrix = glyphMatrix(setting);
    const auto near = [](FT_Fixed got, double expected) {
        EXPECT_NEAR(static_cast<double>(got) / 65536.0, expected, 4.0 / 65536.0);
    };
    near(matrix.xx, xx);
    near(matrix.xy, xy);
    near(matrix.yx, yx);
    near(matrix.yy, yy);
}

TEST(GlyphTransform, TheDefaultIsTheIdentity) {
    const FT_Matrix matrix = glyphMatrix({});
    EXPECT_EQ(matrix.xx, 0x10000);
    EXPECT_EQ(matrix.xy, 0);
    EXPECT_EQ(matrix.yx, 0);
    EXPECT_EQ(matrix.yy, 0x10000);
}

TEST(GlyphTransform, SlantShearsXOrY) {
    const double t = std::tan(20.0 * std::numbers::pi / 180);
    expectMatrix({.slantAngle = 20}, 1, t, 0, 1);
    expectMatrix({.slantVertically = true, .slantAngle = 20}, 1, 0, -t, 1);
}

TEST(GlyphTransform, ScaleStretchesXOrY) {
    expectMatrix({.scale = 1.5F}, 1.5, 0, 0, 1);
    expectMatrix({.scaleVertically = true, .scale = 1.5F}, 1, 0, 0, 1.5);
}

TEST(GlyphTransform, RotationIsClockwise) {
    expectMatrix({.rotationAngle = 90}, 0, 1, -1, 0);
    const double c = std::cos(30.0 * std::numbers::pi / 180);
    expectMatrix({.rotationAngle = 30}, c, 0.5, -0.5, c);
}

TEST(GlyphTransform, SlantComesFirstThenScaleThenRotation) {
    // Shear (1 t; 0 1), times 2 in x: (2 2t; 0 1), a quarter turn clockwise: (0 1; -2 -2t).
    const double t = std::tan(45.0 * std::numbers::pi / 180);
    expectMatrix({.slantAngle = 45, .rotationAngle = 90, .scale = 2}, 0, 1, -2, -2 * t);
}

TEST(GlyphTransform, FactorsAreTruncatedTo16Bits) {
    EXPECT_EQ(glyphMatrix({.scale = 1.9999999F / 65536.0F}).xx, 1);
    EXPECT_EQ(glyphMatrix({.scale = -1.5F / 65536.0F}).xx, -1);
}

TEST(GlyphTransform, FactorsOutOfRangeAreHeld) {
    EXPECT_GT(glyphMatrix({.scale = 1e30F}).xx, 0);
    EXPECT_LT(glyphMatrix({.scale = -1e30F}).xx, 0);
    EXPECT_EQ(glyphMatrix({.scale = std::numeric_limits<float>::quiet_NaN()}).xx, 0);
}

TEST(GlyphTransform, TheEstimateFollowsScaleEmboldeningAndSlant) {
    EXPECT_DOUBLE_EQ(estimatePixels(50, {}), 50);
    EXPECT_DOUBLE_EQ(estimatePixels(50, {.scaleVertically = true, .slantVertically = true}), 50);
    EXPECT_DOUBLE_EQ(estimatePixels(50, {.scale = 0.5F}), 25);
    EXPECT_DOUBLE_EQ(estimatePixels(50, {.emboldenPixels = 9}), 50); // only thinning counts
    EXPECT_DOUBLE_EQ(estimatePixels(50, {.emboldenPixels = -9}), 41);
    EXPECT_NEAR(estimatePixels(50, {.slantAngle = -45}), 100, 1e-9);
    EXPECT_NEAR(estimatePixels(50, {.slantAngle = 45, .scale = 2, .emboldenPixels = -10}), 180,
                1e-9);
    EXPECT_DOUBLE_EQ(estimatePixels(50, {.rotationAngle = 45}), 50);
}

TEST(GlyphTransform, TheStepGoesDownToTheBaselineAndBackByTheMiddle) {
    const auto step = stepFromVertOrigin({}, 44.4, 72, 25);
    ASSERT_TRUE(step);
    EXPECT_EQ(step->rows, 44);
    EXPECT_EQ(step->cols, -25);
}

TEST(GlyphTransform, TheStepTurnsWithTheGlyph) {
    const auto step = stepFromVertOrigin({.rotationAngle = 90}, 44, 72, 25);
    ASSERT_TRUE(step);
    EXPECT_EQ(step->rows, -25);
    EXPECT_EQ(step->cols, -44);
}

TEST(GlyphTransform, TheStepScalesItsHeightAndTakesOffAVerticalShear) {
    const auto scaled = stepFromVertOrigin({.scale = 2}, 44, 72, 25);
    ASSERT_TRUE(scaled);
    EXPECT_EQ(scaled->rows, 88);
    EXPECT_EQ(scaled->cols, -25);
    const auto sheared =
        stepFromVertOrigin({.slantVertically = true, .slantAngle = 45, .scale = 2}, 44, 72, 25);
    ASSERT_TRUE(sheared);
    EXPECT_EQ(sheared->rows, 88 - 50);
    const auto turned = stepFromVertOrigin(
        {.slantVertically = true, .slantAngle = 45, .rotationAngle = 180}, 44, 72, 25);
    ASSERT_TRUE(turned);
    EXPECT_EQ(turned->rows, -44 + 25);
    const auto horizontal = stepFromVertOrigin({.slantAngle = 45}, 44, 72, 25);
    ASSERT_TRUE(horizontal);
    EXPECT_EQ(horizontal->rows, 44);
}

TEST(GlyphTransform, HalvesRoundAwayFromZero) {
    const auto up = stepFromVertOrigin({}, 44.5, 72, 0);
    ASSERT_TRUE(up);
    EXPECT_EQ(up->rows, 45);
    const auto down = stepFromVertOrigin({}, -44.5, 72, 0);
    ASSERT_TRUE(down);
    EXPECT_EQ(down->rows, -45);
}

TEST(GlyphTransform, OriginsThatAreOnePointGiveNoStep) {
    EXPECT_FALSE(stepFromVertOrigin({}, 0.4, 72, 0));
    EXPECT_TRUE(stepFromVertOrigin({}, 0.5, 72, 0));
}

TEST(StepFromVertOrigin, ExactHalvesAreRoundedAfterTheFactorsInTheirOrder) {
    // 42.75 * 0.88 * 200 / 72 is 104.5 on paper and a little less in this order.
    const auto step = stepFromVertOrigin({}, 42.75 * 0.88, 200, 0);
    ASSERT_TRUE(step);
    EXPECT_EQ(step->rows, 104);
}

TEST(GlyphTransform, PixelsAreHeldToTheRangeOfInt) {
    EXPECT_EQ(toPixels(1e300), INT_MAX);
    EXPECT_EQ(toPixels(-1e300), INT_MIN);
    EXPECT_EQ(toPixels(std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_EQ(toPixels(-7.0), -7);
}

} // namespace
} // namespace KWFontService_NS
