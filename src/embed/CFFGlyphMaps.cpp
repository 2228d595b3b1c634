#include "embed/CFFGlyphMaps.h"

#include "embed/CFFIndexWriter.h"

namespace KWFontService_NS {

void addToRuns(std::vector<CharsetRun>& runs, std::uint16_t value) {
    if (!runs.empty() && runs.back().first + runs.back().more + 1 == value)
        ++runs.back().more;
    else
        runs.push_back({value, 0});
}

void FDSelectWriter::add(std::uint8_t fontDict) {
    if (ranges_.empty() || ranges_.back().fontDict != fontDict)
        ranges_.push_back({glyphs_, fontDict});
    ++glyphs_;
}

void FDSelectWriter::write(KWMemStream& output) const {
    constexpr char kFormat = 3;
    output += kFormat;
    appendU16(output, ranges_.size());
    for (const Range& range : ranges_) {
        appendU16(output, range.first);
        output += static_cast<char>(range.fontDict);
    }
    appendU16(output, glyphs_);
}

} // namespace KWFontService_NS
