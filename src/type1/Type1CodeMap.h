#pragma once

#include <KWFontService17/FS_BaseFont.h>

#include <KWCommon15/KWLock.h>

#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>

namespace KWFontService_NS {

/// The codes that a font hands out to the characters and glyphs of a document, on first use.
///
/// A document may use more glyphs than a font program has codes for. So a code has two bytes: the
/// number of a font program, and a code in that. Low byte 0 is never handed out, and so 0 means
/// that there is no code.
///
/// Every operation takes the lock; a caller that needs several in one holds `codeLock`.
class Type1CodeMap {
public:
    /// How many counter values go to one font program, the multiples, which are stepped over,
    /// included.
    static constexpr int kCodesOfAFont = 254;
    /// The counter value that all font programs are full at.
    static constexpr int kAllCodes = 256 * kCodesOfAFont;
    /// Where the counter of a Type 1 font starts: in font program 0 the codes up to this one are
    /// left to characters that use their own value.
    static constexpr int kLastOwnCode = 127;

    Type1CodeMap();
    ~Type1CodeMap();
    Type1CodeMap(const Type1CodeMap&) = delete;
    Type1CodeMap& operator=(const Type1CodeMap&) = delete;

    /// The code of a character, 0 when it has none yet.
    unsigned short unicodeCode(int ch) const;
    /// Gives a character a code unless it has one. Answers `code` in either case.
    unsigned short assignCode(int ch, unsigned short code);
    /// Names the glyph of a code of a font program, unless that code has a name.
    void addCMapEntry(unsigned char fontNumber, unsigned char code, std::string_view name);
    /// Raises `nextCode` above itself and above `least`, up to where all font programs are full.
    void raiseNextCode(int least = 0);
    /// Gives the code of `nextCode` to a character and a glyph name, past what the font program has
    /// named or given to a glyph already; 0 when all font programs are full.
    unsigned short allocateCode(int ch, std::string_view name);

    // For fonts whose glyphs hold codes, whichever characters lead to them.

    /// The code that a glyph holds, 0 when it has none yet.
    unsigned short glyphCode(unsigned short gid) const;
    /// The glyph that holds a code, `FS_NO_GLYPH` when none does.
    unsigned short glyphOfCode(unsigned short code) const;
    /// Gives a glyph that holds no code this one; false when it is named, or another glyph's.
    bool assignGlyphCode(unsigned short gid, unsigned short code);
    /// As `allocateCode`, for a glyph that holds no code.
    unsigned short allocateGlyphCode(unsigned short gid, std::string_view name);

    /// The codes and glyph names of a font program, in the order in which they were added; null
    /// when it has none. Alive as long as this object; another code may add to it.
    const FS_BaseFont::Type1CMapArray* getType1CMapArray(unsigned char fontNumber) const;
    /// An entry of that array; false when there is none.
    bool getType1CMapPair(unsigned char fontNumber, int index, unsigned char& code,
                          std::string& name) const;
    /// False when the font program has no such code.
    bool getType1GlyphName(unsigned char fontNumber, unsigned char code, std::string& name) const;

    KWCommonNS::KWLock& codeLock() const { return lock_; }

    /// The last counter value that was used. A lookup raises it first, then tests it, then uses it.
    int nextCode = 0;

private:
    struct FontCMap {
        FS_BaseFont::Type1CMapArray array;
        std::map<unsigned char, std::string> names;
    };
    /// Most fonts never hand out a code.
    struct Maps {
        std::map<unsigned short, unsigned short> glyphToCode;
        std::map<unsigned short, unsigned short> codeToGlyph;
        std::map<int, unsigned short> unicodeToCode;
        std::set<unsigned short> characterCodes; ///< the values of `unicodeToCode`
        std::map<unsigned char, FontCMap> fontCMaps;
    };

    Maps& maps();
    const FontCMap* findCMap(unsigned char fontNumber) const;
    bool isTaken(unsigned short code) const;
    /// The code of `nextCode`, or of the next value whose code is not taken, with a name for it.
    unsigned short takeNextCode(std::string_view name);

    mutable KWCommonNS::KWLock lock_;
    std::unique_ptr<Maps> maps_;
};

} // namespace KWFontService_NS
