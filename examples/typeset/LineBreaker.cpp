#include "LineBreaker.h"

#include <algorithm>
#include <limits>

namespace typeset {

namespace {

/// How far a word gap may grow before a line counts as bad, and the most that it may shrink, as
/// parts of its natural width.
constexpr double kStretch = 0.5;
constexpr double kShrink = 0.2;
/// The same for the end of a ragged line, and for the letters of a line without gaps, in em/1000.
constexpr double kRaggedStretch = 3000;
constexpr double kRigidStretch = 50;
/// A last line shorter than this looks lost, and what that is worth in the cost of lines.
constexpr double kShortLast = 4000;
constexpr double kShortLastCost = 3000;

void cutWideWords(std::vector<Box>& boxes, double measure) {
    double width = 0;
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        const double advance = boxes[i].blank ? 0 : boxes[i].advance;
        if (i > 0 && width > 0 && width + advance > measure) {
            boxes[i - 1].breakAfter = true;
            width = 0;
        }
        width = boxes[i].breakAfter ? 0 : width + boxes[i].advance + boxes[i].kern;
    }
}

/// Running totals, so that the extent of any line costs nothing to ask.
class Measurer {
public:
    explicit Measurer(const std::vector<Box>& boxes) : boxes_(boxes) {
        width_.reserve(boxes.size() + 1);
        for (const Box& box : boxes) {
            width_.push_back(width_.back() + static_cast<double>(box.advance) +
                             static_cast<double>(box.kern));
            blanks_.push_back(blanks_.back() + (box.blank ? 1U : 0U));
            blankWidth_.push_back(blankWidth_.back() +
                                  (box.blank ? static_cast<double>(box.advance) : 0.0));
        }
    }

    std::size_t visibleEnd(std::size_t begin, std::size_t end) const {
        while (end > begin && boxes_[end - 1].blank)
            --end;
        return end;
    }
    double width(std::size_t begin, std::size_t end) const {
        return end == begin ? 0 : width_[end] - width_[begin] - double{boxes_[end - 1].kern};
    }
    std::size_t gaps(std::size_t begin, std::size_t end) const {
        return blanks_[end] - blanks_[begin];
    }
    double gapWidth(std::size_t begin, std::size_t end) const {
        return blankWidth_[end] - blankWidth_[begin];
    }

private:
    const std::vector<Box>& boxes_;
    std::vector<double> width_{0.0};
    std::vector<std::size_t> blanks_{0};
    std::vector<double> blankWidth_{0.0};
};

double badness(double ratio) {
    const double cube = 100 * ratio * ratio * ratio;
    return (1 + cube) * (1 + cube);
}

} // namespace

LineExtent measureLine(const std::vector<Box>& boxes, std::size_t begin, std::size_t end) {
    LineExtent extent;
    while (end > begin && boxes[end - 1].blank)
        --end;
    extent.end = end;
    for (std::size_t i = begin; i < end; ++i) {
        extent.width += double{boxes[i].advance} + (i + 1 < end ? double{boxes[i].kern} : 0);
        extent.gaps += boxes[i].blank;
    }
    return extent;
}

std::vector<std::size_t> breakLines(std::vector<Box> boxes, double measure, bool justified) {
    cutWideWords(boxes, measure);
    const Measurer measurer(boxes);

    struct Break {
        std::size_t position;
        double cost;
        std::size_t previous;
    };
    std::vector<Break> breaks{{0, 0, 0}};
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        const bool last = i + 1 == boxes.size();
        if (!boxes[i].breakAfter && !last)
            continue;
        Break best{i + 1, std::numeric_limits<double>::infinity(), breaks.size() - 1};
        for (std::size_t from = breaks.size(); from-- > 0;) {
            const std::size_t begin = breaks[from].position;
            const std::size_t end = measurer.visibleEnd(begin, i + 1);
            const double slack = measure - measurer.width(begin, end);
            const double gapWidth = justified ? measurer.gapWidth(begin, end) : 0;
            // A single piece is taken as it is; of more than one, each must fit.
            if (slack < -kShrink * gapWidth && from + 1 < breaks.size())
                break;
            double cost = 0;
            if (slack < 0)
                cost = badness(gapWidth > 0 ? std::min(1.0, -slack / (kShrink * gapWidth)) : 1.0);
            else if (last)
                cost = measure - slack < kShortLast ? kShortLastCost : 0;
            else
                cost = badness(slack /
                               (justified ? kStretch * gapWidth + kRigidStretch : kRaggedStretch));
            cost += breaks[from].cost;
            if (cost < best.cost) {
                best.cost = cost;
                best.previous = from;
            }
        }
        breaks.push_back(best);
    }

    std::vector<std::size_t> ends;
    for (std::size_t i = breaks.size() - 1; i > 0; i = breaks[i].previous)
        ends.push_back(breaks[i].position);
    std::reverse(ends.begin(), ends.end());
    return ends;
}

} // namespace typeset
