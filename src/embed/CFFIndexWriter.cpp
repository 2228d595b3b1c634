#include "embed/CFFIndexWriter.h"

#include "cff/CFFIndex.h"

#include <array>
#include <vector>

namespace KWFontService_NS {

void appendU16(KWMemStream& output, std::size_t value) {
    std::array<std::uint8_t, 2> bytes;
    ByteView::storeU16(bytes.data(), static_cast<std::uint16_t>(value));
    output.append(bytes.data(), bytes.size());
}

bool writeIndexHead(KWMemStream& output, std::span<const std::uint32_t> offsets) {
    return writeIndexHead(output, offsets, indexOffSize(offsets.empty() ? 0 : offsets.back()));
}

bool writeIndexHead(KWMemStream& output, std::span<const std::uint32_t> offsets,
                    std::uint8_t offSize) {
    const std::size_t count = offsets.empty() ? 0 : offsets.size() - 1;
    std::vector<std::uint8_t> head(indexHeadSize(count, offSize));
    ByteView::storeU16(head.data(), static_cast<std::uint16_t>(count));
    if (count > 0) {
        head[2] = offSize;
        std::uint8_t* to = &head[3];
        for (const std::uint32_t offset : offsets) {
            for (unsigned shift = offSize * 8U; shift > 0; ++to) {
                shift -= 8;
                *to = static_cast<std::uint8_t>((offset + 1) >> shift);
            }
        }
    }
    output.append(head.data(), head.size());
    return count > 0;
}

void writeIndex(KWMemStream& output, ByteView data, std::span<const std::uint32_t> offsets) {
    if (writeIndexHead(output, offsets))
        output.append(data.data(), data.size());
}

void writeIndex(KWMemStream& output, KWMemStream& data, std::span<const std::uint32_t> offsets) {
    writeIndex(output, ByteView(reinterpret_cast<const std::uint8_t*>(data.data()), data.size()),
               offsets);
}

void writeSingleIndex(KWMemStream& output, ByteView item) {
    writeIndex(output, item, std::array{std::uint32_t{0}, static_cast<std::uint32_t>(item.size())});
}

bool copyIndex(CFFStream& table, std::uint64_t& at, KWMemStream& output) {
    const std::uint64_t start = at;
    return skipIndex(table, at) && table.copy(start, at - start, output);
}

bool skipIndex(CFFStream& table, std::uint64_t& at) {
    const auto head = CFFIndexHead::read(table, at);
    if (!head)
        return false;
    at = head->count() == 0 ? at + indexHeadSize(0, 0) : head->end();
    return true;
}

} // namespace KWFontService_NS
