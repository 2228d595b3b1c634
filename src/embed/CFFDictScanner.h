#pragma once

#include "cff/CFFDict.h"

namespace KWFontService_NS {

/// Goes through the operators of a DICT and tells where they and their last operands stand, for
/// writers that change some and copy the rest.
class CFFDictScanner {
public:
    struct Operand {
        std::size_t begin = 0;
        std::size_t end = 0;
        KWValue value{};
    };

    explicit CFFDictScanner(ByteView dict) : dict_(dict) {}

    /// To the next operator; false at the end of the DICT or where an operand is cut off.
    bool next();

    CFFOperator op() const { return op_; }
    /// How many operands there are; of many, the last two are at hand.
    std::size_t operandCount() const { return count_; }
    const Operand& last() const { return last_; }
    const Operand& lastButOne() const { return lastButOne_; }

    /// Where the operands begin and where the operator ends.
    std::size_t begin() const { return begin_; }
    std::size_t end() const { return at_; }
    /// Where the operator itself begins.
    std::size_t opBegin() const { return opBegin_; }

private:
    ByteView dict_;
    std::size_t at_ = 0;
    std::size_t begin_ = 0;
    std::size_t opBegin_ = 0;
    CFFOperator op_ = 0;
    std::size_t count_ = 0;
    Operand last_;
    Operand lastButOne_;
};

} // namespace KWFontService_NS
