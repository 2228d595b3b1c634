#include "cff/CharStringCopy.h"

#include "cff/CFFNumbers.h"

#include <array>

namespace KWFontService_NS {

void copyCharString(KWCommonNS::KWMemStream& output, ByteView charString, SubrWalker& walker,
                    const SubrNumbers& globalNumbers, const SubrNumbers& localNumbers,
                    CharStringCounts counts) {
    std::vector<std::uint8_t> bytes;
    copyCharString(bytes, charString, walker, globalNumbers, localNumbers, counts);
    output.append(bytes.data(), bytes.size());
}

void copyCharString(std::vector<std::uint8_t>& output, ByteView charString, SubrWalker& walker,
                    const SubrNumbers& globalNumbers, const SubrNumbers& localNumbers,
                    CharStringCounts counts) {
    const auto append = [&output](const std::uint8_t* bytes, std::size_t size) {
        output.insert(output.end(), bytes, bytes + size);
    };
    std::size_t copied = 0;
    CharStringScanner scanner(charString, counts);
    while (scanner.nextOperator([](std::size_t, std::size_t) {})) {
        const auto operand = scanner.callOperand();
        if (!operand)
            continue;
        const SubrNumbers& numbers = scanner.isGlobalCall() ? globalNumbers : localNumbers;
        if (const int* const number = numbers.find(*operand)) {
            append(charString.data() + copied, scanner.numberStart() - copied);
            std::array<std::uint8_t, 5> bytes;
            append(bytes.data(), encodeCFFInteger(*number, bytes));
            copied = scanner.start();
        }
        walker.call(scanner.isGlobalCall(), *operand, counts);
    }
    append(charString.data() + copied, charString.size() - copied);
}

} // namespace KWFontService_NS
