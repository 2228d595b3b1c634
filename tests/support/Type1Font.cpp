#include "Type1Font.h"

namespace KWTest {

namespace {

constexpr std::uint16_t kEexec = 55665;
constexpr std::uint16_t kCharString = 4330;

} // namespace

Type1CharString& Type1CharString::number(std::int32_t value) {
    if (value >= -107 && value <= 107) {
        bytes_.u8(value + 139);
    } else if (value >= 108 && value <= 1131) {
        bytes_.u8(247 + (value - 108) / 256).u8((value - 108) % 256);
    } else if (value <= -108 && value >= -1131) {
        bytes_.u8(251 + (-value - 108) / 256).u8((-value - 108) % 256);
    } else {
        bytes_.u8(255).i32(value);
    }
    return *this;
}

Type1CharString& Type1CharString::op(std::initializer_list<std::int32_t> operands, int op) {
    for (const std::int32_t operand : operands)
        number(operand);
    if (op > 0xFF)
        bytes_.u8(op >> 8);
    bytes_.u8(op & 0xFF);
    return *this;
}

Type1CharString Type1CharString::rectangle(int width, int xMin, int yMin, int xMax, int yMax) {
    Type1CharString glyph;
    glyph.hsbw(xMin, width);
    if (xMin != xMax && yMin != yMax) {
        glyph.op({yMin}, 4).op({yMax - yMin}, 7).op({xMax - xMin}, 6).op({yMin - yMax}, 7);
        glyph.op({}, 9);
    }
    return glyph.endchar();
}

Bytes type1Encrypted(const Bytes& plain, std::uint16_t key, std::size_t leadBytes) {
    unsigned int r = key;
    Bytes cipher;
    const auto add = [&](std::uint8_t byte) {
        const unsigned int c = (byte ^ (r >> 8)) & 0xFF;
        cipher.u8(c);
        r = ((c + r) * 52845U + 22719U) % 65536U;
    };
    for (std::size_t i = 0; i < leadBytes; ++i)
        add(static_cast<std::uint8_t>('K' + i));
    for (const std::uint8_t byte : plain)
        add(byte);
    return cipher;
}

Bytes pfbSegment(int type, const Bytes& contents) {
    Bytes segment;
    segment.u8(0x80).u8(type);
    for (int shift = 0; shift < 32; shift += 8)
        segment.u8((contents.size() >> shift) & 0xFF);
    return segment.bytes(contents.vector());
}

std::string pfaDigits(const Bytes& bytes, std::string_view lineEnd) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    std::size_t inLine = 0;
    for (const std::uint8_t byte : bytes) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
        if (++inLine == 32) {
            text += lineEnd;
            inLine = 0;
        }
    }
    if (inLine != 0)
        text += lineEnd;
    return text;
}

Type1Font Type1Font::latin() {
    Type1Font font;
    font.glyphs = {
        {".notdef", Type1CharString::rectangle(500, 50, 0, 450, 700)},
        {"A", Type1CharString::rectangle(600, 20, 0, 580, 700)},
        {"B", Type1CharString::rectangle(650, 80, 0, 600, 700)},
        {"space", Type1CharString::rectangle(250, 0, 0, 0, 0)},
        {"acute", Type1CharString::rectangle(300, 100, 750, 200, 900)},
        {"Aacute", Type1CharString().hsbw(20, 600).seac(100, 250, 0, 'A', 0xC2)},
    };
    return font;
}

Type1Font Type1Font::symbols() {
    Type1Font font;
    font.fontName = "KWTestSymbols";
    font.glyphs = {
        {".notdef", Type1CharString::rectangle(500, 0, 0, 0, 0)},
        {"foo", Type1CharString::rectangle(600, 0, 0, 600, 700)},
        {"bar", Type1CharString::rectangle(700, 0, 0, 600, 700)},
        {"uncoded", Type1CharString::rectangle(800, 0, 0, 600, 700)},
    };
    font.encoding = {{0x41, "foo"}, {0x80, "bar"}};
    return font;
}

std::string Type1Font::clearText() const {
    std::vector<std::string> lines = {
        "%!PS-AdobeFont-1.0: " + fontName + " 1.000",
        "11 dict begin",
        "/FontInfo 8 dict dup begin",
        "/FullName (" + fullName + ") readonly def",
        "/FamilyName (" + familyName + ") readonly def",
        "/Weight (" + weight + ") readonly def",
        "/ItalicAngle " + italicAngle + " def",
        "/UnderlinePosition -100 def",
        "/UnderlineThickness 50 def",
        "end readonly def",
        "/FontName /" + fontName + " def",
        "/PaintType 0 def",
        "/FontType 1 def",
        "/FontMatrix [0.001 0 0 0.001 0 0] readonly def",
    };
    if (encoding.empty()) {
        lines.emplace_back("/Encoding StandardEncoding def");
    } else {
        lines.emplace_back("/Encoding 256 array");
        lines.emplace_back("0 1 255 {1 index exch /.notdef put} for");
        for (const auto& [code, name] : encoding)
            lines.push_back("dup " + std::to_string(code) + " /" + name + " put");
        lines.emplace_back("readonly def");
    }
    lines.insert(lines.end(), extraLines.begin(), extraLines.end());
    lines.push_back("/FontBBox " + fontBBox + " readonly def");
    lines.emplace_back("currentdict end");
    lines.emplace_back("currentfile eexec");
    std::string text;
    for (const std::string& line : lines)
        text += line + lineEnd;
    return text;
}

Bytes Type1Font::privateText() const {
    Bytes text;
    const auto line = [&](const std::string& words) { text.text(words).text("\n"); };
    const auto entry = [&](const std::string& head, const Type1CharString& charString,
                           std::string_view end) {
        const Bytes bytes = lenIV < 0 ? charString.build()
                                      : type1Encrypted(charString.build(), kCharString,
                                                       static_cast<std::size_t>(lenIV));
        text.text(head).text(" ").text(std::to_string(bytes.size())).text(" RD ");
        text.bytes(bytes.vector()).text(end).text("\n");
    };
    line("dup /Private 10 dict dup begin");
    line("/RD {string currentfile exch readstring pop} executeonly def");
    line("/ND {noaccess def} executeonly def");
    line("/NP {noaccess put} executeonly def");
    line("/BlueValues [] def");
    line("/MinFeature {16 16} def");
    line("/password 5839 def");
    if (lenIV != 4)
        line("/lenIV " + std::to_string(lenIV) + " def");
    if (!subrs.empty()) {
        line("/Subrs " + std::to_string(subrs.size()) + " array");
        for (std::size_t i = 0; i < subrs.size(); ++i)
            entry("dup " + std::to_string(i), subrs[i], " NP");
        line("ND");
    }
    const std::size_t announced =
        announcedGlyphs < 0 ? glyphs.size() : static_cast<std::size_t>(announcedGlyphs);
    line("2 index /CharStrings " + std::to_string(announced) + " dict dup begin");
    for (const Glyph& glyph : glyphs)
        entry("/" + glyph.name, glyph.charString, " ND");
    line("end");
    line("end");
    line("readonly put");
    line("noaccess put");
    line("dup /FontName get exch definefont pop");
    line("mark currentfile closefile");
    return text;
}

Bytes Type1Font::eexec() const {
    return type1Encrypted(privateText(), kEexec);
}

std::string Type1Font::trailer() const {
    std::string text;
    for (int i = 0; i < 8; ++i)
        text += std::string(64, '0') + lineEnd;
    return text + "cleartomark" + lineEnd;
}

Bytes Type1Font::pfb() const {
    Bytes file = pfbSegment(1, Bytes::ofText(clearText()));
    file.bytes(pfbSegment(2, eexec()).vector());
    file.bytes(pfbSegment(1, Bytes::ofText(trailer())).vector());
    return file.u8(0x80).u8(3);
}

Bytes Type1Font::pfa() const {
    return Bytes::ofText(clearText() + pfaDigits(eexec(), lineEnd) + trailer());
}

} // namespace KWTest
