#include "cff/Type1Emitter.h"

#include "cff/CFFDict.h"

#include <cmath>
#include <utility>

namespace KWFontService_NS {

namespace {

// The standard Subrs.
constexpr double kFlexEnd = 0;
constexpr double kFlexStart = 1;
constexpr double kFlexPoint = 2;

/// How flat a curve becomes a line, in hundredths of a pixel: what `hflex` and `hflex1` imply.
constexpr double kFlexDepth = 50;

} // namespace

void Type1Emitter::number(double value) {
    constexpr double kMostInteger = 0x7FFFFFFF;
    if (value == std::trunc(value) && std::fabs(value) <= kMostInteger) {
        out_.emplace_back(static_cast<int>(value));
        return;
    }
    constexpr double kFixedOne = 65536;
    double numerator = std::round(value * kFixedOne);
    double denominator = kFixedOne;
    while (denominator > 1 &&
           (std::fmod(numerator, 2) == 0 || std::fabs(numerator) > kMostInteger)) {
        numerator = std::trunc(numerator / 2);
        denominator /= 2;
    }
    out_.emplace_back(KWValue(numerator).getIntegerValue());
    if (denominator == 1)
        return;
    out_.emplace_back(static_cast<int>(denominator));
    op(FS_Word::div);
}

void Type1Emitter::op(FS_Word op) {
    out_.emplace_back(cffKey(op));
}

void Type1Emitter::emit(std::initializer_list<double> operands, FS_Word word) {
    for (const double operand : operands)
        number(operand);
    op(word);
}

void Type1Emitter::moveTo(double dx, double dy, FS_Word word) {
    movePoint(dx, dy);
    if (word != FS_Word::vmoveto)
        number(dx);
    if (word != FS_Word::hmoveto)
        number(dy);
    op(word);
}

void Type1Emitter::lineTo(double dx, double dy, FS_Word word) {
    movePoint(dx, dy);
    if (word != FS_Word::vlineto)
        number(dx);
    if (word != FS_Word::hlineto)
        number(dy);
    op(word);
}

void Type1Emitter::curve(double dx1, double dy1, double dx2, double dy2, double dx3, double dy3) {
    movePoint(dx1 + dx2 + dx3, dy1 + dy2 + dy3);
    emit({dx1, dy1, dx2, dy2, dx3, dy3}, FS_Word::rrcurveto);
}

void Type1Emitter::hvCurve(double dx1, double dx2, double dy2, double dy3) {
    movePoint(dx1 + dx2, dy2 + dy3);
    emit({dx1, dx2, dy2, dy3}, FS_Word::hvcurveto);
}

void Type1Emitter::vhCurve(double dy1, double dx2, double dy2, double dx3) {
    movePoint(dx2 + dx3, dy1 + dy2);
    emit({dy1, dx2, dy2, dx3}, FS_Word::vhcurveto);
}

void Type1Emitter::horizontalFlex(double dx1, double dy1, double dx2, double dy2, double dx3,
                                  double dx4, double dx5, double dy5, double dx6) {
    // The first move goes to the point of the straight line that the curves meet above or below.
    const double reference = dx1 + dx2 + dx3;
    const double joinY = dy1 + dy2;
    emit({kFlexStart}, FS_Word::callsubr);
    const std::pair<double, double> moves[] = {
        {reference, 0}, {dx1 - reference, dy1}, {dx2, dy2}, {dx3, 0}, {dx4, 0},
        {dx5, dy5},     {dx6, -(joinY + dy5)}};
    for (const auto& [dx, dy] : moves) {
        moveTo(dx, dy, FS_Word::rmoveto);
        emit({kFlexPoint}, FS_Word::callsubr);
    }
    emit({kFlexDepth, x_, y_, kFlexEnd}, FS_Word::callsubr);
}

} // namespace KWFontService_NS
