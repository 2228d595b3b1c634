#pragma once

#include <KWFontService17/GlyphIDClassPair.h>

#include <cstddef>
#include <vector>

namespace KWFontService_NS {

class GlyphIDPosition;

/// A run of glyphs: what substitutions work on.
///
/// A plain value around one vector. Indices and sizes are `int`, counted from 0.
class KWFONTSERVICE_API GlyphIDArray {
public:
    using value_type = GlyphIDClassPair;
    using iterator = std::vector<GlyphIDClassPair>::iterator;
    using const_iterator = std::vector<GlyphIDClassPair>::const_iterator;

    GlyphIDArray() = default;
    /// `count` times no glyph (id 0xFFFF, class -1); empty for a count of 0 and below.
    explicit GlyphIDArray(int count) : glyphs_(static_cast<std::size_t>(count > 0 ? count : 0)) {}

    int size() const { return static_cast<int>(glyphs_.size()); }
    bool empty() const { return glyphs_.empty(); }
    iterator begin() { return glyphs_.begin(); }
    iterator end() { return glyphs_.end(); }
    const_iterator begin() const { return glyphs_.begin(); }
    const_iterator end() const { return glyphs_.end(); }

    /// Unchecked: `index` is from 0 to below size().
    GlyphIDClassPair& operator[](int index) { return glyphs_[static_cast<std::size_t>(index)]; }
    const GlyphIDClassPair& operator[](int index) const {
        return glyphs_[static_cast<std::size_t>(index)];
    }
    /// The same as `operator[]`, unchecked as well, though the vector's `at` is not.
    GlyphIDClassPair& at(int index) { return (*this)[index]; }
    const GlyphIDClassPair& at(int index) const { return (*this)[index]; }

    /// Removes all glyphs and keeps the memory.
    void clear() { glyphs_.clear(); }
    void push_back(const GlyphIDClassPair& glyph) { glyphs_.push_back(glyph); }
    void push_back(unsigned short glyphID, GlyphClassDef glyphClass) {
        glyphs_.emplace_back(glyphID, glyphClass);
    }
    /// Inserts before `index`; appends when that is below 0 or not below size().
    void insert(int index, const GlyphIDClassPair& glyph) {
        const bool inside = index >= 0 && index < size();
        glyphs_.insert(inside ? begin() + index : end(), glyph);
    }
    void insert(int index, unsigned short glyphID, GlyphClassDef glyphClass) {
        insert(index, GlyphIDClassPair(glyphID, glyphClass));
    }
    /// Removes the glyphs from `from` to below `to`; nothing unless `from` is below `to`.
    /// Unchecked: both are then from 0 to size().
    void erase(int from, int to) {
        if (from < to)
            glyphs_.erase(begin() + from, begin() + to);
    }

    /// Replaces the run by the glyphs of positions, in their order.
    /// @param keepEmpty  false drops positions without a glyph (id 0xFFFF). True drops only those
    ///                   of class -2, so that the empty ones stay and indices keep their meaning
    /// @return           the new size
    int readGIDs(const std::vector<GlyphIDPosition>& positions, bool keepEmpty);

    friend bool operator==(const GlyphIDArray&, const GlyphIDArray&) = default;

private:
    std::vector<GlyphIDClassPair> glyphs_;
};
static_assert(sizeof(GlyphIDArray) == sizeof(std::vector<GlyphIDClassPair>));

} // namespace KWFontService_NS
