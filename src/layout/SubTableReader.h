#pragma once

#include "layout/LayoutBudget.h"
#include "layout/TTI_Coverage.h"
#include "layout/TTI_SubTable.h"

#include "common/ByteView.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>

namespace KWFontService_NS {

/// Reads the subtables of one layout table. It knows which class a lookup type and format are, and
/// holds each coverage once.
class SubTableReader {
public:
    explicit SubTableReader(LayoutBudget& budget) : budget_(budget) {}

    /// A subtable, null when its type or format is unknown or it is bad.
    /// @param type        the lookup's type in the file
    /// @param lookupType  set to the last type that is read from an extension, and left else
    std::unique_ptr<TTI_SubTable> readGsub(KWCommonNS::ByteView table, std::uint32_t type,
                                           std::uint32_t& lookupType);
    /// A subtable, null when its type or format is unknown or it is bad.
    std::unique_ptr<TTI_SubTable> readGpos(KWCommonNS::ByteView table, std::uint32_t type);

    /// The coverage whose 16-bit offset from the start of `table` stands at `field`; null when
    /// there is none.
    std::shared_ptr<const TTI_Coverage> coverage(KWCommonNS::ByteView table, std::size_t field);
    /// False when the table has had its share of reading.
    bool spend(std::size_t bytes) { return budget_.spend(bytes); }

private:
    LayoutBudget& budget_;
    /// By the first byte. All views of one table end where it ends, so that tells them apart.
    std::unordered_map<const std::uint8_t*, std::shared_ptr<const TTI_Coverage>> coverages_;
};

} // namespace KWFontService_NS
