#pragma once

#include "cff/CharString.h"

#include <initializer_list>

namespace KWFontService_NS {

/// Appends Type 1 operators (Adobe Type 1 Font Format, chapter 6) with their operands, and keeps
/// the current point.
class Type1Emitter {
public:
    explicit Type1Emitter(CharStringTokens& out) : out_(out) {}

    /// A number with a fraction becomes a division, since a Type 1 charstring has none.
    void number(double value);
    void op(FS_Word op);
    void emit(std::initializer_list<double> operands, FS_Word op);

    void moveTo(double dx, double dy, FS_Word op);
    void lineTo(double dx, double dy, FS_Word op);
    void curve(double dx1, double dy1, double dx2, double dy2, double dx3, double dy3);
    /// From a horizontal start to a vertical end, and the other way round.
    void hvCurve(double dx1, double dx2, double dy2, double dy3);
    void vhCurve(double dy1, double dx2, double dy2, double dx3);
    /// Two curves whose ends are level, as the flex mechanism: seven moves between calls of the
    /// standard Subrs 1, 2 and 0.
    void horizontalFlex(double dx1, double dy1, double dx2, double dy2, double dx3, double dx4,
                        double dx5, double dy5, double dx6);

private:
    void movePoint(double dx, double dy) {
        x_ += dx;
        y_ += dy;
    }

    CharStringTokens& out_;
    double x_ = 0;
    double y_ = 0;
};

} // namespace KWFontService_NS
