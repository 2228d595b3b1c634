#pragma once

#include <KWCommon15/KWMemStream.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace KWFontService_NS {

using KWCommonNS::KWMemStream;

/// A range of a charset: values, SIDs or CIDs, of glyphs that follow each other.
struct CharsetRun {
    std::uint16_t first = 0;
    std::uint16_t more = 0; ///< values behind the first one
};

/// Puts a value, which is above those before it, into the last run or begins another.
void addToRuns(std::vector<CharsetRun>& runs, std::uint16_t value);

/// Collects the Font DICTs of glyphs for an FDSelect of format 3 (Adobe Technical Note 5176,
/// section 19).
class FDSelectWriter {
public:
    /// The next glyph.
    void add(std::uint8_t fontDict);
    void write(KWMemStream& output) const;

private:
    struct Range {
        std::size_t first;
        std::uint8_t fontDict;
    };

    std::vector<Range> ranges_;
    std::size_t glyphs_ = 0;
};

} // namespace KWFontService_NS
