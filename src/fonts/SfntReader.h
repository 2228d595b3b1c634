#pragma once

#include "common/KWLimits.h"
#include "fonts/TTI_Directory.h"

#include <KWFontService17/FS_BaseFont.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <istream>
#include <span>
#include <vector>

namespace KWFontService_NS {

/// What the scan of a file may still read, for faces that may share their bytes.
class ScanBudget {
public:
    explicit ScanBudget(std::size_t bytes) : left_(bytes) {}

    /// Takes one read off; false when there is not that much left.
    bool charge(std::size_t bytes) {
        const std::size_t cost = std::max(bytes, KWCommonNS::kFacesScanReadCost);
        if (cost > left_)
            return false;
        left_ -= cost;
        return true;
    }

private:
    std::size_t left_;
};

/// What a table reader needs of the face it reads: bytes by absolute offset, the directory, and a
/// way to say what failed.
class SfntReader {
public:
    /// @param owner   names the file in messages; may be null
    /// @param budget  what reading it up makes of further reads: short ones; null for no bound
    SfntReader(std::istream& stream, const TTI_Directory& directory, KWError& error,
               const FS_BaseFont* owner, ScanBudget* budget = nullptr)
        : stream_(stream), directory_(directory), error_(error), owner_(owner), budget_(budget) {}

    const TTI_TableRecord* table(std::uint32_t tag) const { return directory_.find(tag); }

    /// Fills `out` from `offset` of the stream; false on a short read. Clears a failed stream state
    /// first.
    bool read(std::uint64_t offset, std::span<std::uint8_t> out);
    /// As `read`, answering how many bytes the stream had.
    std::size_t readUpTo(std::uint64_t offset, std::span<std::uint8_t> out);
    /// `length` bytes from `offset`; false on a short read. Memory grows with the bytes that really
    /// arrive, so a length that lies costs little.
    bool read(std::uint64_t offset, std::size_t length, std::vector<std::uint8_t>& out);
    /// As above, keeping what the stream had.
    std::size_t readUpTo(std::uint64_t offset, std::size_t length, std::vector<std::uint8_t>& out);
    /// A whole table; false when it is absent or short.
    bool readTable(std::uint32_t tag, std::vector<std::uint8_t>& out);

    /// Reports a failure and answers false.
    bool fail(FS_ERROR code, const UnicodeString& detail);
    bool fail(FS_ERROR code, const char* detail) { return fail(code, UnicodeString(detail)); }

private:
    bool charge(std::size_t bytes) { return budget_ == nullptr || budget_->charge(bytes); }

    std::istream& stream_;
    const TTI_Directory& directory_;
    KWError& error_;
    const FS_BaseFont* owner_;
    ScanBudget* budget_;
};

} // namespace KWFontService_NS
