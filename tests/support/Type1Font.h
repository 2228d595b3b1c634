#pragma once

#include "Bytes.h"

#include <cstdint>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace KWTest {

/// A Type 1 charstring, not encrypted, written operator by operator:
///
///     Type1CharString().hsbw(0, 500).op({100, 0}, 21).endchar()
class Type1CharString {
public:
    Type1CharString& number(std::int32_t value);
    /// Operands, then an operator of one byte, or of two bytes as 0x0C06.
    Type1CharString& op(std::initializer_list<std::int32_t> operands, int op);
    Type1CharString& hsbw(int sidebearing, int width) { return op({sidebearing, width}, 13); }
    Type1CharString& seac(int asb, int adx, int ady, int base, int accent) {
        return op({asb, adx, ady, base, accent}, 0x0C06);
    }
    Type1CharString& endchar() { return op({}, 14); }

    /// A glyph of this width with a filled rectangle; one without extent is blank.
    static Type1CharString rectangle(int width, int xMin, int yMin, int xMax, int yMax);

    const Bytes& build() const { return bytes_; }

private:
    Bytes bytes_;
};

/// The cipher of Type 1 fonts, written apart from the one under test.
Bytes type1Encrypted(const Bytes& plain, std::uint16_t key, std::size_t leadBytes = 4);

/// A segment of a PFB file.
Bytes pfbSegment(int type, const Bytes& contents);

/// Digits in lines of 64, as PFA files have them.
std::string pfaDigits(const Bytes& bytes, std::string_view lineEnd = "\n");

/// A whole small Type 1 font whose parts lie open. `latin` is sound: FreeType, Ghostscript and
/// t1utils accept it.
struct Type1Font {
    struct Glyph {
        std::string name{};
        Type1CharString charString{};
    };

    std::string fontName = "KWTest-Bold";
    std::string fullName = "KWTest Bold";
    std::string familyName = "KWTest";
    std::string weight = "Bold";
    std::string italicAngle = "0";
    std::string fontBBox = "{-50 -250 1050 750}";
    /// Lines that stand before `/FontBBox`.
    std::vector<std::string> extraLines{};
    /// Codes of an Encoding of the font's own; none: StandardEncoding.
    std::map<int, std::string> encoding{};
    std::vector<Glyph> glyphs{}; // in the order of CharStrings
    std::vector<Type1CharString> subrs{};
    int announcedGlyphs = -1; // what `/CharStrings` says; -1: the truth
    int lenIV = 4;
    std::string lineEnd = "\n";

    /// `.notdef`, A, B, space, acute and Aacute, which is made of A and acute.
    static Type1Font latin();
    /// Glyphs `.notdef`, foo and bar with the codes 0x41 and 0x80, and one without a code.
    static Type1Font symbols();

    /// Up to and with "currentfile eexec".
    std::string clearText() const;
    /// The section in plain bytes, without lead bytes.
    Bytes privateText() const;
    Bytes eexec() const;
    std::string trailer() const;

    Bytes pfb() const;
    Bytes pfa() const;
};

} // namespace KWTest
