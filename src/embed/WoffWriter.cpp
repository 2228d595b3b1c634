#include "embed/WoffWriter.h"

#include "common/ByteView.h"
#include "common/TagText.h"
#include "fonts/TTI_Directory.h"

#include <KWCommon15/KWUtil.h>

#include <cstdint>
#include <limits>
#include <vector>

namespace KWFontService_NS {

using KWCommonNS::ByteView;
using KWCommonNS::KWUtil;

namespace {

constexpr std::size_t kWoffHeaderSize = 44;
constexpr std::size_t kWoffEntrySize = 20;
constexpr std::size_t kScratchSize = 8192;

ByteView contentsOf(KWMemStream& stream) {
    return {reinterpret_cast<const std::uint8_t*>(stream.data()), stream.size()};
}

bool append(KWMemStream& output, ByteView bytes) {
    return output.append(bytes.data(), bytes.size()).good();
}

void storeHeader(std::uint8_t* header, ByteView sfnt, std::uint32_t length) {
    ByteView::storeU32(header, KWCommonNS::sfntTag("wOFF"));
    ByteView::storeU32(header + 4, ByteView::loadU32(sfnt.data()));
    ByteView::storeU32(header + 8, length);
    ByteView::storeU16(header + 12, ByteView::loadU16(sfnt.data() + 4));
    ByteView::storeU32(header + 16, static_cast<std::uint32_t>(sfnt.size()));
    ByteView::storeU16(header + 20, 1); // majorVersion
}

} // namespace

bool makeWOFF(KWMemStream& output, KWMemStream& sfntStream) {
    constexpr std::uint64_t kMost = std::numeric_limits<std::uint32_t>::max();
    const ByteView sfnt = contentsOf(sfntStream);
    if (!sfnt.contains(0, TTI_Directory::kHeaderSize) || sfnt.size() > kMost)
        return false;
    const std::size_t numTables = ByteView::loadU16(sfnt.data() + 4);
    if (!sfnt.contains(TTI_Directory::kHeaderSize, TTI_Directory::kRecordSize * numTables))
        return false;

    const std::size_t start = output.size();
    std::vector<std::uint8_t> head(kWoffHeaderSize + kWoffEntrySize * numTables);
    std::uint64_t position = head.size();
    if (!append(output, ByteView(head.data(), head.size())))
        return false;
    KWMemStream compressed(nullptr, kScratchSize);
    for (std::size_t i = 0; i < numTables; ++i) {
        const std::uint8_t* const record =
            sfnt.data() + TTI_Directory::kHeaderSize + TTI_Directory::kRecordSize * i;
        const std::uint32_t offset = ByteView::loadU32(record + 8);
        const std::uint32_t origLength = ByteView::loadU32(record + 12);
        if (!sfnt.contains(offset, origLength))
            return false;
        const ByteView table = sfnt.sub(offset, origLength);
        compressed.remove();
        if (!KWUtil::deflate(compressed, table.data(), table.size()))
            return false;
        // Equal length is not shorter, and would be taken for a table that is stored.
        const ByteView stored = compressed.size() < origLength ? contentsOf(compressed) : table;

        std::uint8_t* const entry = head.data() + kWoffHeaderSize + kWoffEntrySize * i;
        ByteView::storeU32(entry, ByteView::loadU32(record));
        ByteView::storeU32(entry + 4, static_cast<std::uint32_t>(position));
        ByteView::storeU32(entry + 8, static_cast<std::uint32_t>(stored.size()));
        ByteView::storeU32(entry + 12, origLength);
        ByteView::storeU32(entry + 16, ByteView::loadU32(record + 4));
        position += stored.size();
        if (position > kMost || !append(output, stored))
            return false;
    }
    storeHeader(head.data(), sfnt, static_cast<std::uint32_t>(position));
    output.seekp(static_cast<std::streamoff>(start));
    output.write(reinterpret_cast<const char*>(head.data()),
                 static_cast<std::streamsize>(head.size()));
    return output.good() && output.seekp(0, std::ios::end).good();
}

} // namespace KWFontService_NS
