#pragma once

#include "common/ByteView.h"

#include <cstdint>
#include <vector>

namespace KWFontService_NS {

/// The vertical forms of an Apple `mort` table: glyph pairs, sorted as in the file.
class TTI_Mort {
public:
    /// Keeps the pairs of the first vertical non-contextual subtable, where its lookup has
    /// format 6.
    void read(KWCommonNS::ByteView table);

    bool empty() const { return pairs_.empty(); }
    /// The vertical form of a glyph, 0xFFFF when there is none.
    unsigned short substitute(unsigned short gid) const;

private:
    struct Pair {
        std::uint16_t gid;
        std::uint16_t substitute;
    };
    std::vector<Pair> pairs_;
};

} // namespace KWFontService_NS
