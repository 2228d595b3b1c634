#pragma once

#include "cff/CFFDict.h"
#include "cff/CharString.h"

#include <string>
#include <vector>

namespace KWTest {

/// A contour: 'L' for a line and 'C' for a curve, and their points behind that where it starts.
/// Contours close themselves.
struct Contour {
    struct Point {
        double x = 0;
        double y = 0;
    };

    std::string shape{};
    std::vector<Point> points{};

    void line(Point to) {
        shape += 'L';
        points.push_back(to);
    }
    void curve(Point a, Point b, Point to) {
        shape += 'C';
        points.insert(points.end(), {a, b, to});
    }
};

/// Draws a Type 1 charstring of tokens.
class Type1Drawing {
public:
    explicit Type1Drawing(const KWFontService_NS::CharStringTokens& tokens) {
        for (const auto& token : tokens) {
            if (token.isName())
                apply(static_cast<Word>(KWCommonNS::KWNameEnum(token.getNameValue())));
            else
                stack_.push_back(token.getRealValue());
        }
    }

    double width() const { return width_; }
    const std::vector<Contour>& contours() const { return contours_; }
    /// False when the operators were not those of a Type 1 charstring in order.
    bool ok() const { return ok_ && ended_; }

private:
    using Word = KWFontService_NS::FS_Word;

    using Point = Contour::Point;

    bool take(std::size_t count) {
        ok_ = ok_ && !ended_ && stack_.size() == count;
        return ok_;
    }
    void apply(Word op) {
        if (op == Word::div) {
            const double divisor = stack_.back();
            stack_.pop_back();
            stack_.back() /= divisor;
            return;
        }
        if (op == Word::callsubr)
            callSubr();
        else
            draw(op);
        stack_.clear();
    }
    void draw(Word op) {
        const auto& v = stack_;
        switch (op) {
        case Word::hsbw:
            if (take(2))
                width_ = v[1];
            break;
        case Word::hstem:
        case Word::vstem:
            take(2);
            break;
        case Word::callothersubr:
        case Word::pop:
            break; // hints
        case Word::rmoveto:
            if (take(2))
                moveTo(v[0], v[1]);
            break;
        case Word::hmoveto:
            if (take(1))
                moveTo(v[0], 0);
            break;
        case Word::vmoveto:
            if (take(1))
                moveTo(0, v[0]);
            break;
        case Word::rlineto:
            if (take(2))
                lineTo(v[0], v[1]);
            break;
        case Word::hlineto:
            if (take(1))
                lineTo(v[0], 0);
            break;
        case Word::vlineto:
            if (take(1))
                lineTo(0, v[0]);
            break;
        case Word::rrcurveto:
            if (take(6))
                curve(v[0], v[1], v[2], v[3], v[4], v[5]);
            break;
        case Word::hvcurveto:
            if (take(4))
                curve(v[0], 0, v[1], v[2], 0, v[3]);
            break;
        case Word::vhcurveto:
            if (take(4))
                curve(0, v[0], v[1], v[2], v[3], 0);
            break;
        case Word::endchar:
            take(0);
            ended_ = true;
            break;
        default:
            ok_ = false;
        }
    }
    /// Subrs 1, 2 and 0 are flex; hint replacement leaves the number on another stack.
    void callSubr() {
        if (stack_.empty())
            return;
        const double number = stack_.back();
        if (number == 1 && take(1)) {
            flex_.clear();
            inFlex_ = true;
        } else if (number == 2 && take(1) && inFlex_) {
            flex_.push_back(at_);
        } else if (number == 0 && take(4) && flex_.size() == 7) {
            inFlex_ = false;
            ok_ = ok_ && stack_[1] == at_.x && stack_[2] == at_.y;
            addCurve(flex_[1], flex_[2], flex_[3]);
            addCurve(flex_[4], flex_[5], flex_[6]);
        } else {
            ok_ = false;
        }
    }
    Point by(double dx, double dy) {
        at_ = {at_.x + dx, at_.y + dy};
        return at_;
    }
    void moveTo(double dx, double dy) {
        by(dx, dy);
        if (!inFlex_)
            contours_.push_back({{}, {at_}});
    }
    Contour& contour() {
        if (contours_.empty()) {
            ok_ = false;
            contours_.emplace_back();
        }
        return contours_.back();
    }
    void lineTo(double dx, double dy) { contour().line(by(dx, dy)); }
    void addCurve(Point a, Point b, Point c) { contour().curve(a, b, c); }
    void curve(double dx1, double dy1, double dx2, double dy2, double dx3, double dy3) {
        const Point a = by(dx1, dy1);
        const Point b = by(dx2, dy2);
        addCurve(a, b, by(dx3, dy3));
    }

    std::vector<double> stack_;
    std::vector<Contour> contours_;
    std::vector<Point> flex_;
    Point at_;
    double width_ = 0;
    bool inFlex_ = false;
    bool ended_ = false;
    bool ok_ = true;
};

} // namespace KWTest
