#pragma once

#include "Bytes.h"
#include "SfntBuilder.h"

#include <KWCommon15/KWUtil.h>

#include <cstdint>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace KWTest {

/// The zlib stream of some bytes.
inline Bytes deflated(const Bytes& data) {
    std::ostringstream out;
    if (!KWCommonNS::KWUtil::deflate(out, data.data(), data.size()))
        throw std::runtime_error("zlib fails");
    return Bytes::ofText(out.str());
}

/// One table of a WOFF file. What is not given is the truth.
struct WoffTable {
    std::string tag{};
    Bytes stored{}; ///< as in the file
    std::uint32_t origLength = 0;
    std::uint32_t origChecksum = 0;
    std::optional<std::uint32_t> offset{};
    std::optional<std::uint32_t> compLength{};

    static WoffTable plain(std::string_view tag, const Bytes& data) {
        return {.tag = std::string(tag),
                .stored = data,
                .origLength = static_cast<std::uint32_t>(data.size()),
                .origChecksum = tableChecksum(data)};
    }
    static WoffTable packed(std::string_view tag, const Bytes& data) {
        WoffTable table = plain(tag, data);
        table.stored = deflated(data);
        return table;
    }
};

/// A WOFF 1.0 file. Tables follow the directory in their order, each padded to a multiple of four.
struct WoffFile {
    std::uint32_t flavor = kTrueTypeVersion;
    std::vector<WoffTable> tables{};
    std::optional<std::uint16_t> numTables{};
    std::optional<std::uint32_t> totalSfntSize{};

    /// The tables of an sfnt in the order of its directory, deflated where that makes them shorter.
    static WoffFile of(const Bytes& sfnt) {
        WoffFile file;
        file.flavor = sfnt.u32At(0);
        file.totalSfntSize = static_cast<std::uint32_t>(sfnt.size());
        for (std::size_t i = 0; i < sfnt.u16At(4); ++i) {
            const std::size_t record = 12 + 16 * i;
            const std::uint32_t at = sfnt.u32At(record + 8);
            const std::uint32_t length = sfnt.u32At(record + 12);
            const Bytes data(
                std::vector<std::uint8_t>(sfnt.begin() + at, sfnt.begin() + at + length));
            const std::string tag = sfnt.str().substr(record, 4);
            WoffTable table = WoffTable::packed(tag, data);
            if (table.stored.size() >= length)
                table = WoffTable::plain(tag, data);
            table.origChecksum = sfnt.u32At(record + 4);
            file.tables.push_back(table);
        }
        return file;
    }

    WoffTable& table(std::string_view tag) {
        for (WoffTable& each : tables)
            if (each.tag == tag)
                return each;
        throw std::out_of_range("no table " + std::string(tag));
    }

    Bytes build() const {
        Bytes body;
        Bytes directory;
        const std::size_t bodyAt = 44 + 20 * tables.size();
        std::uint32_t sfntSize = static_cast<std::uint32_t>(12 + 16 * tables.size());
        for (const WoffTable& each : tables) {
            directory.tag(each.tag)
                .u32(each.offset.value_or(static_cast<std::uint32_t>(bodyAt + body.size())))
                .u32(each.compLength.value_or(static_cast<std::uint32_t>(each.stored.size())))
                .u32(each.origLength)
                .u32(each.origChecksum);
            body.bytes(each.stored).padTo(4);
            sfntSize += (each.origLength + 3) / 4 * 4;
        }
        Bytes file;
        file.tag("wOFF").u32(flavor).u32(bodyAt + body.size());
        file.u16(numTables.value_or(static_cast<std::uint16_t>(tables.size()))).u16(0);
        file.u32(totalSfntSize.value_or(sfntSize)).u16(1).u16(0).zero(20);
        return file.bytes(directory).bytes(body);
    }
};

} // namespace KWTest
