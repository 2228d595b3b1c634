#include "cff/CharStringArithmetic.h"

#include "common/KWLimits.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>

namespace KWFontService_NS {

namespace {

using Word = FS_Word;

struct ArithmeticRow {
    Word op;
    std::size_t operands;
};

constexpr ArithmeticRow kRows[] = {
    {Word::and_, 2}, {Word::or_, 2},  {Word::not_, 1},   {Word::abs, 1},  {Word::add, 2},
    {Word::sub, 2},  {Word::div, 2},  {Word::neg, 1},    {Word::eq, 2},   {Word::drop, 1},
    {Word::put, 2},  {Word::get, 1},  {Word::ifelse, 4}, {Word::mul, 2},  {Word::sqrt, 1},
    {Word::dup, 1},  {Word::exch, 2}, {Word::index, 2},  {Word::roll, 2},
};

const ArithmeticRow* rowOf(Word op) {
    const auto row = std::ranges::find(kRows, op, &ArithmeticRow::op);
    return row != std::end(kRows) ? row : nullptr;
}

/// Whole results stay integers.
KWValue numberOf(double value) {
    if (value == std::trunc(value) && std::fabs(value) <= std::numeric_limits<int>::max())
        return static_cast<int>(value);
    return value;
}

/// `roll`: turns the last numbers by `turns` places towards the end. More of them than a stack
/// holds would make a few bytes move megabytes, again and again.
void roll(std::span<KWValue> operands, int count, int turns, CharStringBudget& budget) {
    if (count <= 0 || count > KWCommonNS::kMaxCharStringOperands ||
        static_cast<std::size_t>(count) > operands.size() ||
        !budget.charge(static_cast<std::size_t>(count)))
        return;
    const auto part = operands.last(static_cast<std::size_t>(count));
    const int shift = (turns % count + count) % count;
    std::rotate(part.begin(), part.end() - shift, part.end());
}

/// What the operators of one result come to; null for a division by 0.
KWValue resultOf(Word op, std::span<const KWValue> v) {
    const auto real = [&v](std::size_t i) { return v[i].getRealValue(); };
    switch (op) {
    case Word::and_:
        return real(0) != 0 && real(1) != 0 ? 1 : 0;
    case Word::or_:
        return real(0) != 0 || real(1) != 0 ? 1 : 0;
    case Word::not_:
        return real(0) == 0 ? 1 : 0;
    case Word::eq:
        return real(0) == real(1) ? 1 : 0;
    case Word::abs:
        return numberOf(std::fabs(real(0)));
    case Word::add:
        return numberOf(real(0) + real(1));
    case Word::sub:
        return numberOf(real(0) - real(1));
    case Word::mul:
        return numberOf(real(0) * real(1));
    case Word::div:
        return real(1) != 0 ? numberOf(real(0) / real(1)) : KWValue();
    case Word::neg:
        return numberOf(-real(0));
    case Word::sqrt:
        return numberOf(std::sqrt(std::max(real(0), 0.0)));
    case Word::ifelse:
        return real(2) <= real(3) ? v[0] : v[1];
    default:
        return {};
    }
}

} // namespace

bool CharStringArithmetic::has(FS_Word op) {
    return rowOf(op) != nullptr;
}

void CharStringArithmetic::apply(FS_Word op, CharStringTokens& tokens, std::size_t first,
                                 CharStringBudget& budget) {
    const ArithmeticRow* const row = rowOf(op);
    if (row == nullptr || tokens.size() - first < row->operands)
        return;
    const auto operands = std::span(tokens).last(row->operands);
    const auto transientAt = [this](const KWValue& place) -> KWValue* {
        const int index = place.getIntegerValue();
        return index >= 0 && index < static_cast<int>(transient_.size())
                   ? &transient_[static_cast<std::size_t>(index)]
                   : nullptr;
    };
    switch (op) {
    case Word::drop:
        tokens.pop_back();
        return;
    case Word::dup:
        tokens.push_back(KWValue(tokens.back()));
        return;
    case Word::exch:
        std::swap(operands[0], operands[1]);
        return;
    case Word::put:
        if (KWValue* const place = transientAt(operands[1]))
            *place = operands[0];
        tokens.resize(tokens.size() - 2);
        return;
    case Word::get: {
        const KWValue* const place = transientAt(operands[0]);
        tokens.back() = place != nullptr && !place->isNull() ? *place : KWValue(0);
        return;
    }
    case Word::index: {
        const auto below = static_cast<std::size_t>(std::max(operands[1].getIntegerValue(), 0));
        tokens.pop_back();
        if (below < tokens.size() - first)
            tokens.push_back(KWValue(tokens[tokens.size() - 1 - below]));
        return;
    }
    case Word::roll: {
        const int count = operands[0].getIntegerValue();
        const int turns = operands[1].getIntegerValue();
        tokens.resize(tokens.size() - 2);
        roll(std::span(tokens).subspan(first), count, turns, budget);
        return;
    }
    default:
        break;
    }
    const KWValue result = resultOf(op, operands);
    if (result.isNull())
        return;
    tokens.resize(tokens.size() - row->operands);
    tokens.push_back(result);
}

} // namespace KWFontService_NS
