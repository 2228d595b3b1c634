#pragma once

#include "layout/LayoutArrays.h"

#include "common/ByteView.h"

#include <cstdint>
#include <vector>

namespace KWFontService_NS {

/// A class definition that is asked for every glyph of every run: a copy that comes to the range of
/// a glyph by the page it is on, mostly without a search.
class KeptClassDef {
public:
    KeptClassDef() = default;
    /// Holds nothing when `source` does not start with a class definition.
    explicit KeptClassDef(KWCommonNS::ByteView source);

    explicit operator bool() const { return isThere_; }
    /// As `TTI_ClassDef::classOf`; -1 also for glyph id 0xFFFF, and where nothing is held.
    int classOf(unsigned short gid) const {
        const std::size_t page = gid / kPageGlyphs;
        if (page >= pages_.size() || gid == kNoGlyph)
            return sorted_ ? -1 : searchedClassOf(gid);
        for (std::size_t i = pages_[page]; i < ranges_.size() && ranges_[i].start <= gid; ++i) {
            if (gid <= ranges_[i].end)
                return ranges_[i].value;
        }
        return -1;
    }

private:
    static constexpr std::size_t kPageGlyphs = 64;
    static constexpr unsigned short kNoGlyph = 0xFFFF;

    int searchedClassOf(unsigned short gid) const;

    bool isThere_ = false;
    /// Ranges that are not in order have no pages and are searched as in the file.
    bool sorted_ = true;
    std::vector<GlyphRange> ranges_;
    /// For each page of glyphs the first range that does not end before it.
    std::vector<std::uint16_t> pages_;
};

} // namespace KWFontService_NS
