#include "layout/TTI_ContextRules.h"

namespace KWFontService_NS {

using KWCommonNS::ByteView;

std::size_t SequentialArrays::take(std::size_t bytes) {
    if (!table_.contains(at_, bytes)) {
        whole_ = false;
        at_ = table_.size();
    }
    const std::size_t start = at_;
    if (whole_)
        at_ += bytes;
    return start;
}

std::size_t SequentialArrays::count() {
    return table_.u16(take(2)).value_or(0);
}

U16List SequentialArrays::numbers(std::size_t count) {
    return U16List(table_, take(2 * count), count);
}

TTI_LookupRecords SequentialArrays::records(std::size_t count) {
    return TTI_LookupRecords(table_, take(TTI_LookupRecords::kRecordSize * count), count);
}

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
