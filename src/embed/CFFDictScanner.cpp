#include "embed/CFFDictScanner.h"

#include <utility>

namespace KWFontService_NS {

bool CFFDictScanner::next() {
    constexpr std::uint8_t kFirstOperand = 28;
    begin_ = at_;
    count_ = 0;
    last_ = lastButOne_ = Operand{at_, at_};
    while (const auto byte = dict_.u8(at_)) {
        if (*byte >= kFirstOperand) {
            lastButOne_ = std::exchange(last_, Operand{at_, at_});
            if (!readCFFOperand(dict_, at_, last_.value))
                return false;
            last_.end = at_;
            ++count_;
            continue;
        }
        opBegin_ = at_++;
        op_ = *byte;
        if (op_ != kCFFEscape)
            return true;
        const auto second = dict_.u8(at_++);
        if (second)
            op_ = cffEscape(*second);
        return second.has_value();
    }
    return false;
}

} // namespace KWFontService_NS
