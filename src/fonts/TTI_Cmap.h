#pragma once

#include "fonts/SfntReader.h"

#include <cstdint>
#include <memory>

namespace KWFontService_NS {

/// The character maps of a face (OpenType `cmap`): at most one subtable of each supported format,
/// of which the best answers alone.
class TTI_Cmap {
public:
    TTI_Cmap();
    ~TTI_Cmap();
    TTI_Cmap(const TTI_Cmap&) = delete;
    TTI_Cmap& operator=(const TTI_Cmap&) = delete;

    /// Reads the table unless a subtable is held already. False after reporting what failed; what
    /// was read before that stays.
    /// @param embedded  a missing table is no failure
    /// @param macFont   takes the Unicode records of low encodings; set for good when nothing else
    ///                  is usable
    bool read(SfntReader& reader, bool embedded, bool& macFont);

    /// True when a subtable that maps characters is held; variation sequences alone do not count.
    bool holdsSubtable() const;
    /// The code that a character has in the held subtable's encoding, -1 when it has none.
    int convertToCode(int ch) const;
    /// Glyph of a character, 0xFFFF when missing.
    /// @param allowGlyphZero  glyph 0 counts as found, where the format can tell
    unsigned short lookupGlyph(int ch, bool allowGlyphZero) const;

    bool hasVariationSelector() const;
    /// Glyph of a variation sequence, 0xFFFF when it is not listed.
    unsigned short variationSequence(int ch, int selector, bool allowGlyphZero) const;

    /// The largest number of characters that a subtable claims: format 0 counts one more than it
    /// has, and the sums of hostile ranges wrap.
    unsigned int embedableCharCount() const;

private:
    struct Slots;
    bool readTable(SfntReader& reader, bool embedded, bool& macFont);

    std::unique_ptr<Slots> slots_;
};

} // namespace KWFontService_NS
