#include "embed/TableSet.h"

#include <algorithm>
#include <bit>

namespace KWFontService_NS {

bool selectTables(const TTI_Directory& directory, const unsigned int* tags, TableSet& tables) {
    const bool hasGlyf = directory.has(sfntTag("glyf")) && directory.has(sfntTag("loca"));
    if (!hasGlyf && !directory.has(sfntTag("CFF ")))
        return false;

    if (tags == nullptr) {
        tables.records = directory.records();
    } else {
        std::vector<std::uint32_t> wanted{sfntTag("CFF "), sfntTag("glyf"), sfntTag("loca")};
        for (; *tags != 0; ++tags)
            wanted.push_back(*tags);
        std::sort(wanted.begin(), wanted.end());
        tables.records.clear();
        for (const TTI_TableRecord& record : directory.records())
            if (std::binary_search(wanted.begin(), wanted.end(), record.tag))
                tables.records.push_back(record);
    }

    const std::size_t count = tables.records.size();
    const std::size_t power = std::bit_floor(count);
    tables.version = directory.version();
    tables.numTables = static_cast<std::uint16_t>(count);
    tables.searchRange = static_cast<std::uint16_t>(16 * power);
    tables.entrySelector = static_cast<std::uint16_t>(std::bit_width(power) - 1);
    tables.rangeShift = static_cast<std::uint16_t>(16 * (count - power));
    return true;
}

} // namespace KWFontService_NS
