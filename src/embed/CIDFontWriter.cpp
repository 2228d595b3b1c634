#include "embed/CIDFontWriter.h"

#include "embed/OtherSubrs.h"

#include <KWCommon15/KWNamedValue.h>

#include <array>
#include <string_view>

namespace KWFontService_NS {

namespace {

constexpr std::size_t kHexColumns = 32;

/// An entry of a Private dictionary: what stands before a value and behind it.
struct PrivateRow {
    FS_Word key;
    bool isArray;
    const char* before;
    const char* after;
};

// The odd key of BlueFuzz and the uneven blanks are what readers of these files are used to.
constexpr std::array kPrivateRows{
    PrivateRow{FS_Word::BlueFuzz, false, "/BlueFuss ", " def\n"},
    PrivateRow{FS_Word::BlueScale, false, "/BlueScale ", " def\n"},
    PrivateRow{FS_Word::BlueShift, false, "/BlueShift ", " def\n"},
    PrivateRow{FS_Word::BlueValues, true, "/BlueValues [", " ] def\n"},
    PrivateRow{FS_Word::OtherBlues, true, "/OtherBlues [", " ] def\n"},
    PrivateRow{FS_Word::FamilyBlues, true, "/FamilyBlues [", "] def\n"},
    PrivateRow{FS_Word::FamilyOtherBlues, true, "/FamilyOtherBlues [", "] def\n"},
    PrivateRow{FS_Word::StdHW, false, "/StdHW [ ", " ] def\n"},
    PrivateRow{FS_Word::StdVW, false, "/StdVW [ ", " ] def\n"},
    PrivateRow{FS_Word::StemSnapH, true, "/StemSnapH [ ", " ] def\n"},
    PrivateRow{FS_Word::StemSnapV, true, "/StemSnapV [ ", " ] def\n"},
    PrivateRow{FS_Word::ForceBold, false, "/ForceBold ", " def\n"},
    PrivateRow{FS_Word::LanguageGroup, false, "/LanguageGroup ", " def\n"},
};

std::string textOf(const KWValue& value) {
    if (value.isNull())
        return "0"; // a number that the font has spoiled
    // Words of a DICT have numbers of their own.
    const UnicodeString text =
        value.isName()
            ? FS_Keyword::wordOf(static_cast<int>(KWCommonNS::KWNameEnum(value.getNameValue())))
            : value.toString();
    std::string utf8;
    text.toUTF8String(utf8);
    return utf8;
}

/// The items of an array with one blank between them.
std::string itemsOf(const KWValue& array) {
    std::string text;
    for (const auto& [place, item] : array.getNamedValueMap()) {
        if (!text.empty())
            text += ' ';
        text += textOf(item);
    }
    return text;
}

/// The first items of an array; `missing` where the font has none.
std::string itemsOf(const KWValue& array, std::size_t count, const char* missing) {
    if (array.isNull())
        return missing;
    std::string text;
    for (std::size_t place = 1; place <= count; ++place) {
        if (place > 1)
            text += ' ';
        text += textOf(array.getNamedItem(cffKey(place)));
    }
    return text;
}

void appendNumber(std::string& out, std::size_t value, int width) {
    for (int shift = 8 * (width - 1); shift >= 0; shift -= 8)
        out += static_cast<char>(value >> shift & 0xFF);
}

class CIDFont {
public:
    CIDFont(Type1Glyphs& source, KWMemStream& output)
        : source_(source), output_(output),
          widths_(source.glyphs.size(), source.subrEnds.size(), source.privates.size(),
                  source.glyphData.size(), source.subrData.size()) {
        makeMaps();
    }

    void writeHead(const KWValue& topDict, const std::string& fontName,
                   const FS_CIDSystemInfo& info);
    void writeFontDict(const KWValue& topDict, std::size_t index);
    void writeData();

private:
    void makeMaps();
    void line(std::string_view key, const std::string& value, std::string_view after = " def\n") {
        output_ += std::string(key).append(value).append(after);
    }
    void line(std::string_view key, std::size_t value) { line(key, std::to_string(value)); }
    void writePrivate(const KWValue& dict);

    Type1Glyphs& source_;
    KWMemStream& output_;
    CIDFontWidths widths_;
    KWMemStream cidMap{nullptr, Type1Glyphs::kCapacity};
    KWMemStream subrMap{nullptr, Type1Glyphs::kCapacity};
};

void CIDFont::makeMaps() {
    const std::size_t glyphs = source_.glyphs.size();
    const auto entry =
        static_cast<std::size_t>(widths_.fontDict) + static_cast<std::size_t>(widths_.offset);
    const std::size_t glyphsAt = entry * (glyphs + 1);
    std::string bytes;
    std::size_t start = 0;
    for (const Type1Glyphs::Glyph& glyph : source_.glyphs) {
        appendNumber(bytes, glyph.fontDict, widths_.fontDict);
        appendNumber(bytes, glyphsAt + start, widths_.offset);
        start = glyph.end;
    }
    appendNumber(bytes, 0, widths_.fontDict);
    appendNumber(bytes, glyphsAt + start, widths_.offset);
    cidMap.append(bytes);

    const std::size_t subrsAt =
        glyphsAt + start + (source_.subrEnds.size() + 1) * static_cast<std::size_t>(widths_.subr);
    bytes.clear();
    start = 0;
    for (const std::size_t end : source_.subrEnds) {
        appendNumber(bytes, subrsAt + start, widths_.subr);
        start = end;
    }
    appendNumber(bytes, subrsAt + start, widths_.subr);
    subrMap.append(bytes);
}

void CIDFont::writeHead(const KWValue& topDict, const std::string& fontName,
                        const FS_CIDSystemInfo& info) {
    output_ += "/CIDInit /ProcSet findresource begin\n"
               "20 dict begin\n";
    line("/CIDFontName /", fontName);
    output_ += "/CIDFontType 0 def\n"
               "/CIDSystemInfo 3 dict dup begin\n";
    line("/Registry (", info.Registry, ") def\n");
    line("/Ordering (", info.Ordering, ") def\n");
    line("/Supplement ", std::to_string(info.Supplement));
    output_ += "end def\n";
    line("/FontBBox [", itemsOf(topDict.getNamedItem(cffKey(FS_Word::FontBBox)), 4, "0 0 0 0"),
         "] def\n");
    output_ += "/FontInfo 3 dict dup begin\n"
               "/Nontice () def\n" // so spelled, and kept empty
               "/Ordering () def\n"
               "/FSType 4 def\n"
               "end def\n";
    line("/CIDCount ", source_.glyphs.size());
    line("/GDBytes ", std::to_string(widths_.offset));
    line("/FDBytes ", std::to_string(widths_.fontDict));
    output_ += "/CIDMapOffset 0 def\n"
               "/PaintType 0 def\n";
    line("/FDArray ", std::to_string(source_.privates.size()), " array\n");
}

void CIDFont::writeFontDict(const KWValue& topDict, std::size_t index) {
    line("dup ", std::to_string(index), "\n");
    output_ += "%ADOBeginFontDict\n"
               "14 dict begin\n"
               "/FontType 1 def\n";
    line("/FontMatrix [",
         itemsOf(topDict.getNamedItem(cffKey(FS_Word::FontMatrix)), 6, "0.001 0 0 0.001 0 0"),
         "] def\n");
    output_ += "/PaintType 0 def\n"
               "%ADOBeginPrivateDict\n"
               "/Private 25 dict dup begin\n";
    writePrivate(source_.privates[index]);
    output_ += "end def\n"
               "%ADOEndPrivateDict\n"
               "currentdict end\n"
               "%ADOEndFontDict\n"
               "put\n";
}

void CIDFont::writePrivate(const KWValue& dict) {
    for (const PrivateRow& row : kPrivateRows) {
        const KWValue& value = dict.getNamedItem(cffKey(row.key));
        if (!value.isNull())
            line(row.before, row.isArray ? itemsOf(value) : textOf(value), row.after);
    }
    if (dict.getNamedItem(cffKey(FS_Word::LanguageGroup)).getIntegerValue() == 1)
        output_ += "/RndStemUp false def\n";
    const KWValue& expansion = dict.getNamedItem(cffKey(FS_Word::ExpansionFactor));
    if (!expansion.isNull())
        line("/ExpansionFactor ", textOf(expansion));
    output_ += "/lenIV 0 def\n"
               "/MinFeature {16 16} def\n"
               "/password 5839 def\n";
    output_ += kOtherSubrs;
    output_ += "\n"
               "/RD {string currentfile exch readstring pop} executeonly def\n"
               "/ND {noaccess def} executeonly def\n"
               "/NP {noaccess put} executeonly def\n";
    line("/SubrCount ", source_.subrEnds.size());
    line("/SDBytes ", std::to_string(widths_.subr));
    // One pool of Subrs serves all Font DICTs.
    line("/SubrMapOffset ", cidMap.size() + source_.glyphData.size());
}

void CIDFont::writeData() {
    const std::array<KWMemStream*, 4> sections{&cidMap, &source_.glyphData, &subrMap,
                                               &source_.subrData};
    std::size_t length = 0;
    for (KWMemStream* const section : sections)
        length += section->size();
    output_ += "def\n"
               "%%BeginData: /*SIZE OMITTED*/ Binary Bytes\n";
    line("(Hex) ", std::to_string(length), " StartData\n");
    std::size_t column = 0;
    for (KWMemStream* const section : sections)
        column = writeHexStream(*section, output_, column);
    output_ += ">\n"
               "%%EndData\n";
}

} // namespace

CIDFontWidths::CIDFontWidths(std::size_t glyphs, std::size_t subrs, std::size_t fontDicts,
                             std::size_t glyphLength, std::size_t subrLength) {
    // Two bytes would reach further than the first limit says; offsets of readers depend on it.
    constexpr std::size_t kMostOfTwo = 0x1001;
    constexpr std::size_t kMostOfThree = 0x1000001;
    constexpr std::size_t kMostSubrsOfTwo = 0x10001;
    constexpr std::size_t kFontDictsOfOne = 256;
    fontDict = fontDicts == 0 ? 0 : fontDicts <= kFontDictsOfOne ? 1 : 2;
    const auto entry = static_cast<std::size_t>(fontDict);
    const auto glyphsEnd = [&](std::size_t width) {
        return glyphLength + (entry + width) * (glyphs + 1);
    };
    offset = glyphsEnd(2) < kMostOfTwo ? 2 : glyphsEnd(3) < kMostOfThree ? 3 : 4;
    const std::size_t subrsAt = glyphsEnd(static_cast<std::size_t>(offset)) + subrLength;
    subr = subrsAt + 2 + 2 * subrs < kMostSubrsOfTwo ? 2
           : subrsAt + 3 * subrs + 3 < kMostOfThree  ? 3
                                                     : 4;
}

void writeCIDFont(Type1Glyphs& source, const KWValue& topDict, const std::string& fontName,
                  const FS_CIDSystemInfo& info, KWMemStream& output) {
    CIDFont font(source, output);
    font.writeHead(topDict, fontName, info);
    for (std::size_t index = 0; index < source.privates.size(); ++index)
        font.writeFontDict(topDict, index);
    font.writeData();
}

std::size_t writeHexStream(KWMemStream& source, KWMemStream& output, std::size_t column) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    const char* const bytes = source.data();
    const std::size_t count = source.size();
    std::string text;
    text.reserve(2 * count + count / kHexColumns + 1);
    for (std::size_t i = 0; i < count; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        text += kDigits[byte >> 4];
        text += kDigits[byte & 0x0F];
        if (++column == kHexColumns) {
            text += '\n';
            column = 0;
        }
    }
    output.append(text);
    return column;
}

} // namespace KWFontService_NS
