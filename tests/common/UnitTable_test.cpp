#include "common/UnitTable.h"

#include <gtest/gtest.h>

#include <numbers>

using namespace KWCommonNS;

namespace {

struct UnitName {
    KWUnitType unit;
    std::u16string_view text;
};

constexpr UnitName kNames[] = {
    {KWUnitType::Percent, u"%"}, {KWUnitType::Px, u"px"},     {KWUnitType::Pt, u"pt"},
    {KWUnitType::Pc, u"pc"},     {KWUnitType::In, u"in"},     {KWUnitType::Cm, u"cm"},
    {KWUnitType::Mm, u"mm"},     {KWUnitType::Q, u"q"},       {KWUnitType::Em, u"em"},
    {KWUnitType::Ex, u"ex"},     {KWUnitType::Ch, u"ch"},     {KWUnitType::Rem, u"rem"},
    {KWUnitType::Vw, u"vw"},     {KWUnitType::Vh, u"vh"},     {KWUnitType::Vmin, u"vmin"},
    {KWUnitType::Vmax, u"vmax"}, {KWUnitType::Deg, u"deg"},   {KWUnitType::Grad, u"grad"},
    {KWUnitType::Rad, u"rad"},   {KWUnitType::Turn, u"turn"}, {KWUnitType::S, u"s"},
    {KWUnitType::Ms, u"ms"},     {KWUnitType::Hz, u"hz"},     {KWUnitType::KHz, u"khz"},
    {KWUnitType::Dpi, u"dpi"},   {KWUnitType::Dpcm, u"dpcm"}, {KWUnitType::Dppx, u"dppx"},
};

TEST(UnitTable, EveryUnitHasItsText) {
    for (const UnitName& row : kNames) {
        EXPECT_EQ(unitText(row.unit), row.text);
        EXPECT_EQ(findUnit(row.text), row.unit);
    }
}

TEST(UnitTable, UnitTextsIgnoreCase) {
    EXPECT_EQ(findUnit(u"PX"), KWUnitType::Px);
    EXPECT_EQ(findUnit(u"Q"), KWUnitType::Q);
    EXPECT_EQ(findUnit(u"kHz"), KWUnitType::KHz);
}

TEST(UnitTable, OtherTextsAreNoUnit) {
    for (const std::u16string_view text : {u"", u"p", u"pxx", u"foo", u"\u212A", u"e3"})
        EXPECT_EQ(findUnit(text), std::nullopt);
}

TEST(UnitTable, PlainNumbersAndTextSortsHaveNoUnitText) {
    EXPECT_EQ(unitText(KWUnitType::None), u"");
    EXPECT_EQ(unitText(KWUnitType::List), u"");
}

TEST(UnitTable, AbsoluteLengthsConvertExactlyWhereTheRatioIsWhole) {
    EXPECT_EQ(convertUnit(1, KWUnitType::In, KWUnitType::Px), 96.0);
    EXPECT_EQ(convertUnit(1, KWUnitType::In, KWUnitType::Pt), 72.0);
    EXPECT_EQ(convertUnit(1, KWUnitType::In, KWUnitType::Pc), 6.0);
    EXPECT_EQ(convertUnit(1, KWUnitType::In, KWUnitType::Mm), 25.4);
    EXPECT_EQ(convertUnit(1, KWUnitType::In, KWUnitType::Cm), 2.54);
    EXPECT_EQ(convertUnit(1, KWUnitType::In, KWUnitType::Q), 101.6);
    EXPECT_EQ(convertUnit(1, KWUnitType::Cm, KWUnitType::Mm), 10.0);
    EXPECT_EQ(convertUnit(1, KWUnitType::Cm, KWUnitType::Q), 40.0);
    EXPECT_EQ(convertUnit(12, KWUnitType::Pt, KWUnitType::Px), 16.0);
    EXPECT_EQ(convertUnit(16, KWUnitType::Px, KWUnitType::Pt), 12.0);
}

TEST(UnitTable, OtherDimensionsConvertAmongThemselves) {
    EXPECT_EQ(convertUnit(1, KWUnitType::Turn, KWUnitType::Deg), 360.0);
    EXPECT_EQ(convertUnit(100, KWUnitType::Grad, KWUnitType::Deg), 90.0);
    EXPECT_DOUBLE_EQ(*convertUnit(std::numbers::pi, KWUnitType::Rad, KWUnitType::Deg), 180.0);
    EXPECT_EQ(convertUnit(2, KWUnitType::S, KWUnitType::Ms), 2000.0);
    EXPECT_EQ(convertUnit(2, KWUnitType::KHz, KWUnitType::Hz), 2000.0);
    EXPECT_EQ(convertUnit(2, KWUnitType::Dppx, KWUnitType::Dpi), 192.0);
    EXPECT_EQ(convertUnit(254, KWUnitType::Dpi, KWUnitType::Dpcm), 100.0);
}

TEST(UnitTable, UnitsWithoutAFixedRatioDoNotConvert) {
    EXPECT_EQ(convertUnit(1, KWUnitType::Em, KWUnitType::Px), std::nullopt);
    EXPECT_EQ(convertUnit(1, KWUnitType::Px, KWUnitType::S), std::nullopt);
    EXPECT_EQ(convertUnit(1, KWUnitType::Percent, KWUnitType::Em), std::nullopt);
    EXPECT_EQ(convertUnit(1, KWUnitType::None, KWUnitType::Px), std::nullopt);
    EXPECT_EQ(convertUnit(1.5, KWUnitType::Em, KWUnitType::Em), 1.5);
}

} // namespace
