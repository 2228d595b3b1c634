// A `CFF ` table and a list of glyphs: the first byte says how many glyphs, which follow with two
// bytes each; the rest is the table. It is loaded and cut both ways.

#include "FuzzTarget.h"
#include "cff/Type1CMap.h"
#include "common/KWLimits.h"
#include "embed/CFFSubsetInPlace.h"
#include "embed/CFFSubsetRenumbered.h"

#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace KWFontService_NS;

/// What a writer makes of a table of this size at most; more would be a bomb.
std::size_t mostOutput(std::size_t size) {
    return (KWCommonNS::kMaxFillers + 64) * size + 4096;
}

void cut(const std::string& bytes, const std::vector<unsigned short>& glyphs) {
    std::istringstream stream(bytes);
    CFFStream table(stream, 0, static_cast<std::uint32_t>(bytes.size()));
    Type1CMap font;
    const bool loaded = font.readCFFTable(table);
    KWMemStream packed;
    if (loaded && subsetCFFRenumbered(table, font, glyphs, packed) &&
        packed.size() > mostOutput(bytes.size()))
        std::abort();
    // Cutting in place takes the table as it is.
    for (const std::uint16_t space : {std::uint16_t{1}, std::uint16_t{FS_NO_GLYPH}}) {
        CFFInPlaceSubset subset(table);
        if (!subset.plan(glyphs, space))
            continue;
        KWMemStream inPlace;
        if (subset.write(inPlace) && inPlace.size() != subset.size())
            std::abort();
        if (inPlace.size() > mostOutput(bytes.size()))
            std::abort();
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const std::size_t count = data[0];
    if (size - 1 < 2 * count)
        return 0;
    std::vector<unsigned short> glyphs;
    for (std::size_t i = 0; i < count; ++i)
        glyphs.push_back(ByteView::loadU16(data + 1 + 2 * i));
    const std::uint8_t* const table = data + 1 + 2 * count;
    cut(std::string(table, data + size), glyphs);
    return 0;
}
