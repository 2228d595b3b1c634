#include "layout/TTI_ContextRules.h"

namespace KWFontService_NS {

using KWCommonNS::ByteView;

std::optional<TTI_ContextRule> TTI_ContextRule::read(ByteView rule) {
    SequentialArrays arrays(rule, 0);
    const std::size_t inputCount = arrays.count();
    const std::size_t recordCount = arrays.count();
    if (inputCount == 0)
        return std::nullopt;
    const U16List input = arrays.numbers(inputCount - 1);
    const TTI_LookupRecords records = arrays.records(recordCount);
    if (!arrays.whole())
        return std::nullopt;
    return TTI_ContextRule{.input = input, .records = records};
}

std::optional<TTI_ChainContextRule> TTI_ChainContextRule::read(ByteView rule) {
    SequentialArrays arrays(rule, 0);
    TTI_ChainContextRule found;
    found.backtrack = arrays.countedNumbers();
    const std::size_t inputCount = arrays.count();
    if (inputCount == 0)
        return std::nullopt;
    found.input = arrays.numbers(inputCount - 1);
    found.lookahead = arrays.countedNumbers();
    found.records = arrays.records(arrays.count());
    if (!arrays.whole())
        return std::nullopt;
    return found;
}

} // namespace KWFontService_NS
