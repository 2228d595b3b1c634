#include "cff/Type2ToType1.h"

#include "cff/CFFDict.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace KWFontService_NS {

namespace {

using Word = FS_Word;

/// Entries of OtherSubrs; 12 and 13 take counter control (Adobe Technical Note 5015, section 2).
constexpr double kHintReplacement = 3;
constexpr double kCounterPart = 12;
constexpr double kCounterEnd = 13;
/// Operands that one call of OtherSubrs leaves room for on a stack of 24.
constexpr std::size_t kCounterOperands = 22;

/// The numbers before an operator.
class Run {
public:
    explicit Run(std::span<const KWValue> values) : values_(values) {}

    std::size_t size() const { return values_.size(); }
    double operator[](std::size_t i) const { return values_[i].getRealValue(); }
    Run from(std::size_t first) const { return Run(values_.subspan(std::min(first, size()))); }
    Run first(std::size_t count) const { return Run(values_.first(std::min(count, size()))); }
    Run last(std::size_t count) const { return from(size() - std::min(count, size())); }

private:
    std::span<const KWValue> values_;
};

class Translation {
public:
    Translation(std::vector<CharStringTokens>& subrs, CharStringTokens& out)
        : subrs_(subrs), emit_(out) {}

    /// The width that a first operator has before its own operands.
    static std::optional<bool> hasWidth(Word op, std::size_t operands);

    void width(double width) { emit_.emit({0, width}, Word::hsbw); }
    /// @param mask  the bytes behind `hintmask` and `cntrmask`
    bool apply(Word op, Run run, Run mask);
    void end() {
        flushCounters();
        emit_.op(Word::endchar);
    }

private:
    bool move(Word op, Run run);
    void stems(CIDStemRecord::Kind kind, Run run);
    void hintMask(Run mask);
    void counterMask(Run mask);
    void flushCounters();

    void alternatingLines(bool horizontal, Run run);
    void lines(Run run);
    void curves(Run run);
    void levelCurves(bool horizontal, Run run);
    void alternatingCurves(bool horizontal, Run run);
    bool flexes(Word op, Run run);

    template <class Take>
    void forEachStem(Run mask, Take take) const;

    std::vector<CharStringTokens>& subrs_;
    Type1Emitter emit_;
    std::vector<CIDStemRecord> records_;
    bool hasHintMask_ = false;
    /// Counter control that waits for the last of a row of masks: the groups of either direction.
    struct Groups {
        int count = 0;
        std::vector<double> edges;
    } horizontalCounters_, verticalCounters_;
};

std::optional<bool> Translation::hasWidth(Word op, std::size_t operands) {
    switch (op) {
    case Word::endchar:
        return operands > 0;
    case Word::hmoveto:
    case Word::vmoveto:
        return operands > 0 && operands % 2 == 0;
    case Word::hstem:
    case Word::hstemhm:
    case Word::vstem:
    case Word::vstemhm:
    case Word::rmoveto:
        return operands % 2 != 0;
    default:
        return std::nullopt;
    }
}

bool Translation::apply(Word op, Run run, Run mask) {
    if (op != Word::cntrmask)
        flushCounters();
    switch (op) {
    case Word::hstem:
    case Word::hstemhm:
        stems(CIDStemRecord::Horizontal, run);
        return true;
    case Word::vstem:
    case Word::vstemhm:
        stems(CIDStemRecord::Vertical, run);
        return true;
    case Word::hintmask:
        stems(CIDStemRecord::Vertical, run);
        hintMask(mask);
        return true;
    case Word::cntrmask:
        stems(CIDStemRecord::Vertical, run);
        counterMask(mask);
        return true;
    case Word::hmoveto:
    case Word::vmoveto:
    case Word::rmoveto:
        return move(op, run);
    case Word::hlineto:
    case Word::vlineto:
        alternatingLines(op == Word::hlineto, run);
        return true;
    case Word::rlineto:
        lines(run);
        return true;
    case Word::rrcurveto:
        curves(run);
        return true;
    case Word::hhcurveto:
    case Word::vvcurveto:
        levelCurves(op == Word::hhcurveto, run);
        return true;
    case Word::hvcurveto:
    case Word::vhcurveto:
        alternatingCurves(op == Word::hvcurveto, run);
        return true;
    case Word::rcurveline:
        if (run.size() < 2)
            return false;
        curves(run.first(run.size() - 2));
        lines(run.last(2));
        return true;
    case Word::rlinecurve:
        if (run.size() < 6)
            return false;
        lines(run.first(run.size() - 6));
        curves(run.last(6));
        return true;
    case Word::dotsection:
        emit_.op(op);
        return true;
    default:
        return flexes(op, run);
    }
}

bool Translation::move(Word op, Run run) {
    if (run.size() != (op == Word::rmoveto ? 2U : 1U))
        return false;
    const double dx = op == Word::vmoveto ? 0 : run[0];
    const double dy = op == Word::hmoveto ? 0 : run[run.size() - 1];
    emit_.moveTo(dx, dy, op);
    return true;
}

// --- hints --------------------------------------------------------------------------------------

void Translation::stems(CIDStemRecord::Kind kind, Run run) {
    // A Type 2 stem starts from the edge of the one before it.
    double edge = 0;
    for (std::size_t i = 0; i + 1 < run.size(); i += 2) {
        const double position = edge + run[i];
        const double width = run[i + 1];
        edge = position + width;
        records_.push_back({kind, position, width});
        emit_.emit({position, width},
                   kind == CIDStemRecord::Horizontal ? Word::hstem : Word::vstem);
    }
}

template <class Take>
void Translation::forEachStem(Run mask, Take take) const {
    for (std::size_t i = 0; i < records_.size() && i / 8 < mask.size(); ++i) {
        const auto byte = static_cast<unsigned>(mask[i / 8]);
        if ((byte & (0x80U >> i % 8)) != 0)
            take(records_[i]);
    }
}

void Translation::hintMask(Run mask) {
    // The stems of the first mask are those declared so far, all of them.
    if (!hasHintMask_) {
        hasHintMask_ = true;
        return;
    }
    const auto number = static_cast<double>(subrs_.size());
    Type1Emitter subr(subrs_.emplace_back());
    forEachStem(mask, [&subr](const CIDStemRecord& stem) {
        subr.emit({stem.position.getRealValue(), stem.width.getRealValue()},
                  stem.kind == CIDStemRecord::Horizontal ? Word::hstem : Word::vstem);
    });
    subr.op(Word::return_);
    emit_.emit({number, 1, kHintReplacement}, Word::callothersubr);
    emit_.op(Word::pop);
    emit_.op(Word::callsubr);
}

void Translation::counterMask(Run mask) {
    for (const auto kind : {CIDStemRecord::Horizontal, CIDStemRecord::Vertical}) {
        std::vector<double> edges;
        double last = 0;
        forEachStem(mask, [&](const CIDStemRecord& stem) {
            if (stem.kind != kind)
                return;
            const double position = stem.position.getRealValue();
            const double width = stem.width.getRealValue();
            edges.push_back(position - last);
            edges.push_back(width);
            last = position + width;
        });
        if (edges.empty())
            continue;
        // The last stem of a group is told by its edges being the other way round.
        double& width = edges.back();
        edges[edges.size() - 2] += width;
        width = -width;
        Groups& groups =
            kind == CIDStemRecord::Horizontal ? horizontalCounters_ : verticalCounters_;
        ++groups.count;
        groups.edges.insert(groups.edges.end(), edges.begin(), edges.end());
    }
}

void Translation::flushCounters() {
    if (horizontalCounters_.count + verticalCounters_.count == 0)
        return;
    std::vector<double> operands;
    for (const Groups* groups : {&horizontalCounters_, &verticalCounters_}) {
        operands.push_back(groups->count);
        operands.insert(operands.end(), groups->edges.begin(), groups->edges.end());
    }
    horizontalCounters_ = verticalCounters_ = Groups();
    // They pile up on the interpreter's stack: what comes last goes first.
    std::size_t end = operands.size();
    while (end > 0) {
        const bool isLast = end <= kCounterOperands;
        const std::size_t begin = isLast ? 0 : end - kCounterOperands;
        for (std::size_t i = begin; i < end; ++i)
            emit_.number(operands[i]);
        emit_.emit({static_cast<double>(end - begin), isLast ? kCounterEnd : kCounterPart},
                   Word::callothersubr);
        end = begin;
    }
}

// --- the path -----------------------------------------------------------------------------------

void Translation::alternatingLines(bool horizontal, Run run) {
    for (std::size_t i = 0; i < run.size(); ++i, horizontal = !horizontal) {
        if (horizontal)
            emit_.lineTo(run[i], 0, Word::hlineto);
        else
            emit_.lineTo(0, run[i], Word::vlineto);
    }
}

void Translation::lines(Run run) {
    for (std::size_t i = 0; i + 1 < run.size(); i += 2)
        emit_.lineTo(run[i], run[i + 1], Word::rlineto);
}

void Translation::curves(Run run) {
    for (std::size_t i = 0; i + 5 < run.size(); i += 6)
        emit_.curve(run[i], run[i + 1], run[i + 2], run[i + 3], run[i + 4], run[i + 5]);
}

/// `hhcurveto` and `vvcurveto`: both ends along one axis, but for the start of the first.
void Translation::levelCurves(bool horizontal, Run run) {
    std::size_t i = run.size() % 4 == 1 ? 1 : 0;
    double across = i == 1 ? run[0] : 0;
    for (; i + 3 < run.size(); i += 4, across = 0) {
        if (horizontal)
            emit_.curve(run[i], across, run[i + 1], run[i + 2], run[i + 3], 0);
        else
            emit_.curve(across, run[i], run[i + 1], run[i + 2], 0, run[i + 3]);
    }
}

/// `hvcurveto` and `vhcurveto`: ends along the one axis and the other in turn; the last may end
/// between them.
void Translation::alternatingCurves(bool horizontal, Run run) {
    for (std::size_t i = 0; i + 3 < run.size(); i += 4, horizontal = !horizontal) {
        const bool isLast = run.size() - i == 5;
        if (isLast && horizontal)
            emit_.curve(run[i], 0, run[i + 1], run[i + 2], run[i + 4], run[i + 3]);
        else if (isLast)
            emit_.curve(0, run[i], run[i + 1], run[i + 2], run[i + 3], run[i + 4]);
        else if (horizontal)
            emit_.hvCurve(run[i], run[i + 1], run[i + 2], run[i + 3]);
        else
            emit_.vhCurve(run[i], run[i + 1], run[i + 2], run[i + 3]);
    }
}

bool Translation::flexes(Word op, Run run) {
    const std::size_t operands = op == Word::flex     ? 13
                                 : op == Word::flex1  ? 11
                                 : op == Word::hflex  ? 7
                                 : op == Word::hflex1 ? 9
                                                      : 0;
    if (operands == 0 || run.size() < operands)
        return false;
    const Run v = run.last(operands);
    switch (op) {
    case Word::flex:
        curves(v.first(12));
        break;
    case Word::flex1: {
        // The last number belongs to the axis along which the curves go further; along the other
        // they come back to where they started.
        double dx = 0;
        double dy = 0;
        for (std::size_t i = 0; i < 10; i += 2) {
            dx += v[i];
            dy += v[i + 1];
        }
        const bool horizontal = std::fabs(dx) > std::fabs(dy);
        curves(v.first(6));
        emit_.curve(v[6], v[7], v[8], v[9], horizontal ? v[10] : -dx, horizontal ? -dy : v[10]);
        break;
    }
    case Word::hflex:
        emit_.horizontalFlex(v[0], 0, v[1], v[2], v[3], v[4], v[5], -v[2], v[6]);
        break;
    default:
        emit_.horizontalFlex(v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8]);
        break;
    }
    return true;
}

} // namespace

std::vector<CharStringTokens> Type2ToType1::standardSubrs() {
    std::vector<CharStringTokens> subrs(4);
    const auto write = [&subrs](std::size_t number, std::initializer_list<double> operands,
                                std::initializer_list<Word> words) {
        Type1Emitter subr(subrs[number]);
        for (const double operand : operands)
            subr.number(operand);
        for (const Word word : words)
            subr.op(word);
    };
    write(0, {3, 0},
          {Word::callothersubr, Word::pop, Word::pop, Word::setcurrentpoint, Word::return_});
    write(1, {0, 1}, {Word::callothersubr, Word::return_});
    write(2, {0, 2}, {Word::callothersubr, Word::return_});
    write(3, {}, {Word::return_});
    return subrs;
}

bool Type2ToType1::convert(const CharStringTokens& tokens, std::vector<CharStringTokens>& subrs,
                           CharStringTokens& out) {
    Translation glyph(subrs, out);
    const std::span all(tokens);
    bool isFirst = true;
    std::size_t runStart = 0;
    for (std::size_t at = 0; at < all.size(); ++at) {
        if (!all[at].isName())
            continue;
        const auto op = static_cast<Word>(KWCommonNS::KWNameEnum(all[at].getNameValue()));
        Run run(all.subspan(runStart, at - runStart));
        Run mask{{}};
        if ((op == Word::hintmask || op == Word::cntrmask) && at + 1 < all.size()) {
            const auto size = static_cast<std::size_t>(std::max(all[at + 1].getIntegerValue(), 0));
            mask = Run(all.subspan(at + 2)).first(size);
            at += 1 + mask.size();
        }
        runStart = at + 1;
        if (isFirst) {
            const auto hasWidth = Translation::hasWidth(op, run.size());
            if (!hasWidth)
                return false;
            glyph.width(*hasWidth ? nominalWidthX_ + run[0] : defaultWidthX_);
            run = run.from(*hasWidth ? 1 : 0);
            isFirst = false;
        }
        if (op == Word::endchar) {
            if (run.size() != 0)
                return false;
            glyph.end();
            return true;
        }
        if (!glyph.apply(op, run, mask))
            return false;
    }
    if (isFirst)
        glyph.width(defaultWidthX_);
    glyph.end();
    return true;
}

} // namespace KWFontService_NS
