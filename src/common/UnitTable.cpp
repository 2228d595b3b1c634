#include "common/UnitTable.h"

#include "common/CssChars.h"

#include <numbers>

namespace KWCommonNS {

namespace {

enum class Dimension { Lone, Length, Angle, Time, Frequency, Resolution };

struct UnitRow {
    KWUnitType unit;
    std::u16string_view text;
    Dimension dimension = Dimension::Lone;
    // One of this unit is numerator / denominator of the dimension's first row; two numbers keep
    // the ratios of lengths exact.
    double numerator = 1;
    double denominator = 1;
};

// CSS Values and Units Level 4, sections 5.1, 6 and 7.
constexpr UnitRow kUnits[] = {
    {KWUnitType::Percent, u"%"},
    {KWUnitType::Px, u"px", Dimension::Length},
    {KWUnitType::Pt, u"pt", Dimension::Length, 4, 3},
    {KWUnitType::Pc, u"pc", Dimension::Length, 16},
    {KWUnitType::In, u"in", Dimension::Length, 96},
    {KWUnitType::Cm, u"cm", Dimension::Length, 4800, 127},
    {KWUnitType::Mm, u"mm", Dimension::Length, 480, 127},
    {KWUnitType::Q, u"q", Dimension::Length, 120, 127},
    {KWUnitType::Em, u"em"},
    {KWUnitType::Ex, u"ex"},
    {KWUnitType::Ch, u"ch"},
    {KWUnitType::Rem, u"rem"},
    {KWUnitType::Vw, u"vw"},
    {KWUnitType::Vh, u"vh"},
    {KWUnitType::Vmin, u"vmin"},
    {KWUnitType::Vmax, u"vmax"},
    {KWUnitType::Deg, u"deg", Dimension::Angle},
    {KWUnitType::Grad, u"grad", Dimension::Angle, 9, 10},
    {KWUnitType::Rad, u"rad", Dimension::Angle, 180, std::numbers::pi},
    {KWUnitType::Turn, u"turn", Dimension::Angle, 360},
    {KWUnitType::S, u"s", Dimension::Time},
    {KWUnitType::Ms, u"ms", Dimension::Time, 1, 1000},
    {KWUnitType::Hz, u"hz", Dimension::Frequency},
    {KWUnitType::KHz, u"khz", Dimension::Frequency, 1000},
    {KWUnitType::Dppx, u"dppx", Dimension::Resolution},
    {KWUnitType::Dpi, u"dpi", Dimension::Resolution, 1, 96},
    {KWUnitType::Dpcm, u"dpcm", Dimension::Resolution, 127, 4800},
};

const UnitRow* findRow(KWUnitType unit) {
    for (const UnitRow& row : kUnits) {
        if (row.unit == unit)
            return &row;
    }
    return nullptr;
}

} // namespace

std::optional<KWUnitType> findUnit(std::u16string_view text) {
    for (const UnitRow& row : kUnits) {
        if (equalsWord(text, row.text))
            return row.unit;
    }
    return std::nullopt;
}

std::u16string_view unitText(KWUnitType unit) {
    const UnitRow* row = findRow(unit);
    return row ? row->text : std::u16string_view();
}

std::optional<double> convertUnit(double value, KWUnitType from, KWUnitType to) {
    if (from == to)
        return value;
    const UnitRow* source = findRow(from);
    const UnitRow* target = findRow(to);
    if (!source || !target || source->dimension == Dimension::Lone ||
        source->dimension != target->dimension)
        return std::nullopt;
    return value * (source->numerator * target->denominator) /
           (source->denominator * target->numerator);
}

} // namespace KWCommonNS
