#pragma once

#include <KWFontService17/GlyphIDArray.h>

#include <cstddef>
#include <vector>

namespace KWFontService_NS {

/// A run of glyphs with one word a glyph: what `FS_FontInfo::processGSUB3` reads and writes.
///
/// On input a word other than 0 masks its glyph: no lookup starts there. Words that are missing at
/// the end are 0. On output a word tells where its glyph comes from:
/// - bits 0 to 15, `ligaInfo`: for how many glyphs of the input it stands. 1 untouched, n for a
///   ligature of n, 0 for the second and later glyphs that replaced one;
/// - bits 16 to 31, `skipInfo`: for a glyph that a ligature passed over, its index in the run when
///   the ligature was made; otherwise 0.
///
/// The words of one call would thus mask every glyph in the next: read the glyphs back by
/// `readGIDs`, or clear `words()`.
///
/// A plain value. What changes single glyphs (`push_back`, `insert`, `erase`) leaves the words as
/// they are.
class KWFONTSERVICE_API GlyphIDArray2 {
public:
    using value_type = GlyphIDArray::value_type;
    using iterator = GlyphIDArray::iterator;
    using const_iterator = GlyphIDArray::const_iterator;

    GlyphIDArray2() = default;
    /// `count` times no glyph (id 0xFFFF, class -1) with the word 0; empty for a count of 0 and
    /// below.
    explicit GlyphIDArray2(int count)
        : glyphs_(count), words_(static_cast<std::size_t>(glyphs_.size())) {}

    // --- the glyphs, as in GlyphIDArray ---------------------------------------------------------

    int size() const { return glyphs_.size(); }
    bool empty() const { return glyphs_.empty(); }
    iterator begin() { return glyphs_.begin(); }
    iterator end() { return glyphs_.end(); }
    const_iterator begin() const { return glyphs_.begin(); }
    const_iterator end() const { return glyphs_.end(); }
    GlyphIDClassPair& operator[](int index) { return glyphs_[index]; }
    const GlyphIDClassPair& operator[](int index) const { return glyphs_[index]; }
    GlyphIDClassPair& at(int index) { return glyphs_.at(index); }
    const GlyphIDClassPair& at(int index) const { return glyphs_.at(index); }
    void push_back(const GlyphIDClassPair& glyph) { glyphs_.push_back(glyph); }
    void push_back(unsigned short glyphID, GlyphClassDef glyphClass) {
        glyphs_.push_back(glyphID, glyphClass);
    }
    void insert(int index, const GlyphIDClassPair& glyph) { glyphs_.insert(index, glyph); }
    void insert(int index, unsigned short glyphID, GlyphClassDef glyphClass) {
        glyphs_.insert(index, glyphID, glyphClass);
    }
    void erase(int from, int to) { glyphs_.erase(from, to); }

    // --- both -----------------------------------------------------------------------------------

    /// Removes all glyphs and all words and keeps the memory.
    void clear() {
        glyphs_.clear();
        words_.clear();
    }
    /// As `GlyphIDArray::readGIDs`, and removes all words, so that nothing is masked.
    int readGIDs(const std::vector<GlyphIDPosition>& positions, bool keepEmpty) {
        words_.clear();
        return glyphs_.readGIDs(positions, keepEmpty);
    }

    // --- the words ------------------------------------------------------------------------------

    /// Low half of a word. Unchecked: `index` is from 0 to below the number of words, which is 0
    /// after `readGIDs`.
    unsigned short ligaInfo(int index) const {
        return static_cast<unsigned short>(words_[static_cast<std::size_t>(index)] & 0xFFFF);
    }
    /// High half of a word; 0 when there is no such word.
    unsigned short skipInfo(int index) const {
        const auto place = static_cast<std::size_t>(index);
        return place < words_.size()
                   ? static_cast<unsigned short>(static_cast<unsigned int>(words_[place]) >> 16)
                   : static_cast<unsigned short>(0);
    }

    // --- the two parts --------------------------------------------------------------------------

    GlyphIDArray& glyphs() { return glyphs_; }
    const GlyphIDArray& glyphs() const { return glyphs_; }
    /// Word i belongs to glyph i; there may be fewer words than glyphs.
    std::vector<int>& words() { return words_; }
    const std::vector<int>& words() const { return words_; }

    friend bool operator==(const GlyphIDArray2&, const GlyphIDArray2&) = default;

private:
    GlyphIDArray glyphs_;
    std::vector<int> words_;
};
static_assert(sizeof(GlyphIDArray2) == sizeof(GlyphIDArray) + sizeof(std::vector<int>));

} // namespace KWFontService_NS
