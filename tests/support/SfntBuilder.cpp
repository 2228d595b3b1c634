#include "SfntBuilder.h"

#include "BinarySearchFields.h"

#include <algorithm>
#include <stdexcept>

namespace KWTest {

namespace {

constexpr std::size_t kHeaderSize = 12;
constexpr std::size_t kRecordSize = 16;
constexpr std::size_t kCheckSumAdjustmentOffset = 8;
constexpr std::uint32_t kCheckSumMagic = 0xB1B0AFBA;

std::string paddedTag(std::string_view tag) {
    return Bytes().tag(tag).str();
}

} // namespace

std::uint32_t tagValue(std::string_view tag) {
    return Bytes().tag(tag).u32At(0);
}

std::uint32_t tableChecksum(std::span<const std::uint8_t> table) {
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < table.size(); ++i)
        sum += std::uint32_t{table[i]} << (24 - 8 * (i % 4));
    return sum;
}

SfntBuilder& SfntBuilder::version(std::uint32_t version) {
    version_ = version;
    return *this;
}

SfntBuilder& SfntBuilder::table(std::string_view tag, Bytes data) {
    if (Table* existing = find(tag))
        existing->data = std::move(data);
    else
        tables_.push_back({paddedTag(tag), std::move(data), {}});
    return *this;
}

SfntBuilder& SfntBuilder::duplicate(std::string_view tag, Bytes data) {
    require(tag);
    tables_.push_back({paddedTag(tag), std::move(data), {}});
    return *this;
}

SfntBuilder& SfntBuilder::drop(std::string_view tag) {
    std::erase_if(tables_, [&](const Table& table) { return table.tag == paddedTag(tag); });
    return *this;
}

bool SfntBuilder::has(std::string_view tag) const {
    return std::ranges::find(tables_, paddedTag(tag), &Table::tag) != tables_.end();
}

const Bytes& SfntBuilder::get(std::string_view tag) const {
    return require(tag).data;
}

std::vector<std::string> SfntBuilder::tags() const {
    std::vector<std::string> all;
    for (const Table& table : tables_)
        all.push_back(table.tag);
    return all;
}

SfntBuilder& SfntBuilder::lie(std::string_view tag, RecordLie lie) {
    require(tag);
    find(tag)->lie = lie;
    return *this;
}

SfntBuilder& SfntBuilder::numTables(std::uint16_t count) {
    numTables_ = count;
    return *this;
}

SfntBuilder& SfntBuilder::inGivenOrder() {
    sorted_ = false;
    return *this;
}

SfntBuilder& SfntBuilder::unpadded() {
    padded_ = false;
    return *this;
}

SfntBuilder& SfntBuilder::offsetShift(std::uint32_t shift) {
    shift_ = shift;
    return *this;
}

SfntBuilder& SfntBuilder::keepCheckSumAdjustment() {
    adjustHead_ = false;
    return *this;
}

Bytes SfntBuilder::build() const {
    const std::vector<Placed> placed = place();
    Bytes directory;
    Bytes body;
    std::optional<std::size_t> adjustmentPlace;

    directory.u32(version_).u16(numTables_.value_or(static_cast<std::uint16_t>(placed.size())));
    writeBinarySearchFields(directory, placed.size(), kRecordSize);
    const std::size_t bodyStart = kHeaderSize + kRecordSize * placed.size();

    for (const auto& [table, offset] : placed) {
        Bytes data = table->data;
        const bool adjustable = table->tag == "head" && !adjustmentPlace && adjustHead_ &&
                                data.size() >= kCheckSumAdjustmentOffset + 4;
        if (adjustable) {
            data.patchU32At(kCheckSumAdjustmentOffset, 0);
            adjustmentPlace = offset + kCheckSumAdjustmentOffset;
        }
        directory.tag(table->tag);
        directory.u32(table->lie.checkSum.value_or(tableChecksum(data)));
        directory.u32(table->lie.offset.value_or(static_cast<std::uint32_t>(offset) + shift_));
        directory.u32(table->lie.length.value_or(static_cast<std::uint32_t>(data.size())));

        body.zero(offset - bodyStart - body.size()).bytes(data);
    }
    if (padded_)
        body.padTo(4);

    Bytes file = std::move(directory);
    file.bytes(body);
    if (adjustmentPlace)
        file.patchU32At(*adjustmentPlace, kCheckSumMagic - tableChecksum(file));
    return file;
}

std::size_t SfntBuilder::offsetOf(std::string_view tag) const {
    const Table& wanted = require(tag);
    for (const auto& [table, offset] : place()) {
        if (table == &wanted)
            return offset;
    }
    throw std::logic_error("a table without a place");
}

std::size_t SfntBuilder::recordOffsetOf(std::string_view tag) const {
    const Table& wanted = require(tag);
    std::size_t offset = kHeaderSize;
    for (const Placed& placed : place()) {
        if (placed.table == &wanted)
            return offset;
        offset += kRecordSize;
    }
    throw std::logic_error("a table without a place");
}

SfntBuilder::Table* SfntBuilder::find(std::string_view tag) {
    const auto found = std::ranges::find(tables_, paddedTag(tag), &Table::tag);
    return found == tables_.end() ? nullptr : &*found;
}

const SfntBuilder::Table& SfntBuilder::require(std::string_view tag) const {
    const auto found = std::ranges::find(tables_, paddedTag(tag), &Table::tag);
    if (found == tables_.end())
        throw std::out_of_range("no table " + std::string(tag));
    return *found;
}

std::vector<SfntBuilder::Placed> SfntBuilder::place() const {
    std::vector<Placed> placed;
    for (const Table& table : tables_)
        placed.push_back({&table, 0});
    if (sorted_) {
        std::ranges::stable_sort(placed, {},
                                 [](const Placed& entry) { return tagValue(entry.table->tag); });
    }
    std::size_t offset = kHeaderSize + kRecordSize * placed.size();
    for (Placed& entry : placed) {
        if (padded_)
            offset = (offset + 3) / 4 * 4;
        entry.offset = offset;
        offset += entry.table->data.size();
    }
    return placed;
}

Bytes SfntCollection::build() const {
    Bytes file;
    file.tag("ttcf").u32(version).u32(numFonts.value_or(static_cast<std::uint32_t>(fonts.size())));
    const std::size_t offsetsAt = file.size();
    file.zero(4 * fonts.size());
    if (version == 0x00020000)
        file.zero(12);
    for (std::size_t i = 0; i < fonts.size(); ++i) {
        const auto start = static_cast<std::uint32_t>(file.size());
        file.patchU32At(offsetsAt + 4 * i, start);
        file.bytes(SfntBuilder(fonts[i]).offsetShift(start).build()).padTo(4);
    }
    return file;
}

Bytes ResourceFile::build() const {
    constexpr std::uint32_t kDataAt = 256;
    constexpr std::uint16_t kTypeListAt = 28; // in the map
    constexpr std::size_t kTypeEntry = 8;
    constexpr std::size_t kReference = 12;
    Bytes data;
    std::vector<std::size_t> places;
    for (const SfntBuilder& font : fonts) {
        places.push_back(data.size());
        const Bytes sfnt = font.build();
        data.u32(sfnt.size()).bytes(sfnt);
    }
    const std::size_t types = otherTypes.size() + (withSfntType ? 1 : 0);
    const std::size_t referencesAt = 2 + kTypeEntry * types;
    const std::size_t mapLength = kTypeListAt + referencesAt + kReference * fonts.size();

    Bytes file;
    file.u32(kDataAt, "dataOffset").u32(kDataAt + data.size(), "mapOffset");
    file.u32(data.size()).u32(mapLength).zero(kDataAt - file.size()).bytes(data);
    file.zero(24).u16(kTypeListAt, "typeListOffset").u16(mapLength);
    file.u16((types - 1) & 0xFFFF, "typeCount");
    for (const std::string& type : otherTypes)
        file.tag(type).u16(0).u16(referencesAt);
    if (withSfntType)
        file.tag("sfnt", "sfntType")
            .u16(fonts.size() - 1, "sfntCount")
            .u16(referencesAt, "sfntReferences");
    for (std::size_t i = 0; i < fonts.size(); ++i)
        file.label("reference" + std::to_string(i))
            .u16(128 + i)
            .u16(0xFFFF)
            .u8(0)
            .u24(places[i])
            .u32(0);
    return file;
}

} // namespace KWTest
