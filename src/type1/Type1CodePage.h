#pragma once

#include <cstdint>
#include <map>

namespace KWFontService_NS {

/// The characters of a Windows code page of one byte.
class Type1CodePage {
public:
    /// @param converter  a name that ICU knows; a page that it does not know has no characters
    explicit Type1CodePage(const char* converter);

    /// The code page of a Windows character set (the `dfCharSet` of a PFM file); of one without a
    /// page of its own that of Western Europe. Made on first use; any thread may ask.
    static const Type1CodePage& ofCharSet(std::uint8_t charSet);
    /// The bit that stands for a Windows character set in OpenType `OS/2` ulCodePageRange1; 0 for
    /// one that has none.
    static std::uint32_t rangeBitOfCharSet(std::uint8_t charSet);

    /// The code that a character goes to and comes back from; -1 when there is none.
    int codeOf(int ch) const;

private:
    std::map<int, std::uint8_t> codes_;
};

} // namespace KWFontService_NS
