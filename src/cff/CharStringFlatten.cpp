#include "cff/CharStringFlatten.h"

#include "cff/CFFDict.h"
#include "cff/CharStringArithmetic.h"
#include "common/KWLimits.h"

#include <algorithm>

namespace KWFontService_NS {

namespace {

class Flattener {
public:
    Flattener(const CharStringSubrs& subrs, CharStringTokens& tokens, FlatCounts& counts,
              CharStringBudget& budget)
        : subrs_(subrs), tokens_(tokens), counts_(counts), budget_(budget),
          firstOperand_(tokens.size() - std::min(tokens.size(), static_cast<std::size_t>(std::max(
                                                                    counts.operands, 0)))) {}

    /// False when `endchar` has been met.
    bool flatten(ByteView charString, int depth) {
        if (!budget_.charge(charString.size()))
            return true;
        CharStringCounts counts;
        CharStringScanner scanner(charString, counts);
        for (;;) {
            counts = {operands(), counts_.hstems + counts_.vstems};
            const int stems = counts.stems;
            if (!scanner.next())
                return true;
            if (scanner.isNumber()) {
                tokens_.push_back(numberOf(scanner));
            } else if (scanner.isCall()) {
                if (!call(scanner.isGlobalCall(), depth))
                    return false;
            } else if (CharStringArithmetic::has(scanner.op())) {
                arithmetic_.apply(scanner.op(), tokens_, firstOperand_, budget_);
            } else if (scanner.op() != FS_Word::return_) {
                addOperator(scanner, counts.stems - stems);
                if (scanner.op() == FS_Word::endchar)
                    return false;
            }
            counts_.operands = operands();
        }
    }

private:
    int operands() const {
        const auto most = static_cast<std::size_t>(KWCommonNS::kMaxCharStringOperands);
        return static_cast<int>(std::min(tokens_.size() - firstOperand_, most));
    }

    static KWValue numberOf(const CharStringScanner& scanner) {
        constexpr double kFixedOne = 65536;
        return scanner.isFixed() ? KWValue(scanner.number() / kFixedOne)
                                 : KWValue(scanner.number());
    }

    /// The operand may come from arithmetic or from another subr.
    bool call(bool isGlobal, int depth) {
        if (tokens_.size() == firstOperand_)
            return true;
        const int operand = tokens_.back().getIntegerValue();
        tokens_.pop_back();
        const auto subr = subrs_.find(isGlobal, operand);
        return !subr || depth == KWCommonNS::kMaxSubrDepth || flatten(*subr, depth + 1);
    }

    void addOperator(const CharStringScanner& scanner, int newStems) {
        const FS_Word op = scanner.op();
        const bool horizontal = op == FS_Word::hstem || op == FS_Word::hstemhm;
        (horizontal ? counts_.hstems : counts_.vstems) += newStems;
        tokens_.emplace_back(cffKey(op));
        if (op == FS_Word::hintmask || op == FS_Word::cntrmask) {
            const ByteView mask = scanner.mask();
            tokens_.emplace_back(static_cast<int>(mask.size()));
            for (std::size_t i = 0; i < mask.size(); ++i)
                tokens_.emplace_back(int{mask.data()[i]});
        }
        firstOperand_ = tokens_.size();
    }

    const CharStringSubrs& subrs_;
    CharStringTokens& tokens_;
    FlatCounts& counts_;
    CharStringBudget& budget_;
    std::size_t firstOperand_; ///< where the numbers begin that wait for their operator
    CharStringArithmetic arithmetic_;
};

} // namespace

void flattenCharString(ByteView charString, const CharStringSubrs& subrs, CharStringTokens& tokens,
                       FlatCounts& counts, CharStringBudget& budget) {
    Flattener(subrs, tokens, counts, budget).flatten(charString, 0);
}

} // namespace KWFontService_NS
