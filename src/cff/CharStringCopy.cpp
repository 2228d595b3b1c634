#include "cff/CharStringCopy.h"

#include "cff/CFFNumbers.h"

namespace KWFontService_NS {

void copyCharString(KWCommonNS::KWMemStream& output, ByteView charString, SubrWalker& walker,
                    const SubrNumbers& globalNumbers, const SubrNumbers& localNumbers,
                    CharStringCounts counts) {
    std::size_t copied = 0;
    CharStringScanner scanner(charString, counts);
    while (scanner.next()) {
        const auto operand = scanner.callOperand();
        if (!operand)
            continue;
        const SubrNumbers& numbers = scanner.isGlobalCall() ? globalNumbers : localNumbers;
        if (const auto number = numbers.find(*operand); number != numbers.end()) {
            output.append(charString.data() + copied, scanner.numberStart() - copied);
            writeCFFInteger(output, number->second);
            copied = scanner.start();
        }
        walker.call(scanner.isGlobalCall(), *operand, counts);
    }
    output.append(charString.data() + copied, charString.size() - copied);
}

} // namespace KWFontService_NS
