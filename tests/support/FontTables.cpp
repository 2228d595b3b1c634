#include "FontTables.h"

#include "SfntBuilder.h"

#include <cstdint>
#include <fstream>
#include <stdexcept>
#include <vector>

namespace KWTest {

namespace {

/// Reads pieces of a file, since fonts for Chinese have tens of megabytes.
class PieceReader {
public:
    explicit PieceReader(const std::filesystem::path& file)
        : path_(file), stream_(file, std::ios::binary) {}

    Bytes read(std::size_t offset, std::size_t count) {
        std::vector<std::uint8_t> bytes(count);
        stream_.seekg(static_cast<std::streamoff>(offset));
        if (!stream_.read(reinterpret_cast<char*>(bytes.data()),
                          static_cast<std::streamsize>(count)))
            throw std::runtime_error("cannot read " + path_.string());
        return Bytes(std::move(bytes));
    }

private:
    std::filesystem::path path_;
    std::ifstream stream_;
};

} // namespace

Bytes fontTable(const std::filesystem::path& file, std::string_view tag) {
    constexpr std::size_t kHeaderSize = 12;
    constexpr std::size_t kRecordSize = 16;
    PieceReader reader(file);
    std::size_t start = 0;
    Bytes header = reader.read(0, kHeaderSize);
    if (header.u32At(0) == tagValue("ttcf")) {
        start = reader.read(kHeaderSize, 4).u32At(0);
        header = reader.read(start, kHeaderSize);
    }
    const std::uint32_t version = header.u32At(0);
    if (version != 0x00010000 && version != tagValue("OTTO") && version != tagValue("true"))
        return {};
    const std::size_t count = header.u16At(4);
    const Bytes records = reader.read(start + kHeaderSize, kRecordSize * count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t record = kRecordSize * i;
        if (records.u32At(record) == tagValue(tag))
            return reader.read(records.u32At(record + 8), records.u32At(record + 12));
    }
    return {};
}

} // namespace KWTest
