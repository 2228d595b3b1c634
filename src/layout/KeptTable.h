#pragma once

#include "common/ByteView.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

namespace KWFontService_NS {

/// A coverage or class definition with a copy of its bytes, for whoever does not keep the table
/// that it lies in.
template <class Table>
class KeptTable {
public:
    KeptTable() = default;
    /// Holds nothing when `source` does not start with such a table.
    explicit KeptTable(KWCommonNS::ByteView source) {
        const auto found = Table::read(source);
        if (!found)
            return;
        const std::size_t size = std::min(found->byteSize(), source.size());
        bytes_.assign(source.data(), source.data() + size);
        table_ = Table::read(KWCommonNS::ByteView(bytes_.data(), bytes_.size()));
    }
    KeptTable(KeptTable&&) noexcept = default;
    KeptTable& operator=(KeptTable&&) noexcept = default;

    explicit operator bool() const { return table_.has_value(); }
    const Table* operator->() const { return &*table_; }

private:
    std::vector<std::uint8_t> bytes_;
    std::optional<Table> table_;
};

} // namespace KWFontService_NS
