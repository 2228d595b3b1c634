#pragma once

#include <cstdint>

namespace KWFontService_NS {

/// The encoding of a `cmap` subtable, as its record names it, and the way into it from Unicode.
class CmapEncoding {
public:
    CmapEncoding() = default;
    /// @param symbolRange  the codes of the subtable begin in a block Fxxx
    CmapEncoding(std::uint16_t platformID, std::uint16_t encodingID, bool symbolRange);

    /// The code of a character, -1 when the encoding has none.
    int convert(int ch) const {
        switch (way_) {
        case Way::Unicode:
            return ch;
        case Way::Symbol:
            return (ch & 0xF000) != 0 ? ch : ch | 0xF000;
        case Way::Converter:
            break;
        }
        return convertByName(ch);
    }

private:
    enum class Way : std::uint8_t { Unicode, Symbol, Converter };

    int convertByName(int ch) const;

    Way way_ = Way::Unicode;
    bool simplifiedChinese_ = false;
    const char* converter_ = nullptr; // the name of an ICU converter
};

} // namespace KWFontService_NS
