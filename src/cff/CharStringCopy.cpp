#include "cff/CharStringCopy.h"

#include "cff/CFFNumbers.h"

#include <array>

namespace KWFontService_NS {

namespace {

/// Gives `sink` the pieces of the copy, in their order.
template <class Sink>
void copyPieces(ByteView charString, SubrWalker& walker, const SubrNumbers& globalNumbers,
                const SubrNumbers& localNumbers, CharStringCounts counts, const Sink& sink) {
    std::size_t copied = 0;
    CharStringScanner scanner(charString, counts);
    while (scanner.next()) {
        const auto operand = scanner.callOperand();
        if (!operand)
            continue;
        const SubrNumbers& numbers = scanner.isGlobalCall() ? globalNumbers : localNumbers;
        if (const auto number = numbers.find(*operand); number != numbers.end()) {
            std::array<std::uint8_t, 5> bytes;
            const std::size_t size = encodeCFFInteger(number->second, bytes);
            sink(charString.sub(copied, scanner.numberStart() - copied));
            sink(ByteView(bytes.data(), size));
            copied = scanner.start();
        }
        walker.call(scanner.isGlobalCall(), *operand, counts);
    }
    sink(charString.from(copied));
}

} // namespace

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
    copyPieces(charString, walker, globalNumbers, localNumbers, counts, [&output](ByteView piece) {
        output.insert(output.end(), piece.data(), piece.data() + piece.size());
    });
}

std::size_t copiedSize(ByteView charString, SubrWalker& walker, const SubrNumbers& globalNumbers,
                       const SubrNumbers& localNumbers, CharStringCounts counts) {
    std::size_t size = 0;
    copyPieces(charString, walker, globalNumbers, localNumbers, counts,
               [&size](ByteView piece) { size += piece.size(); });
    return size;
}

} // namespace KWFontService_NS
