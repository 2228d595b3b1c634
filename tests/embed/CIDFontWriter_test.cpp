#include "embed/CIDFontWriter.h"

#include "PackedFonts.h"
#include "embed/OtherSubrs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using testing::HasSubstr;
using testing::Not;

// --- widths -------------------------------------------------------------------------------------

TEST(CIDFontWidths, OfTheFontDictIsNoneOneOrTwo) {
    const auto width = [](std::size_t fontDicts) {
        return CIDFontWidths(1, 4, fontDicts, 10, 20).fontDict;
    };
    EXPECT_EQ(width(0), 0);
    EXPECT_EQ(width(1), 1);
    EXPECT_EQ(width(256), 1);
    EXPECT_EQ(width(257), 2);
}

TEST(CIDFontWidths, OffsetsOfTwoBytesEndAt4096AndNotAt65536) {
    const auto width = [](std::size_t glyphs, std::size_t length) {
        return CIDFontWidths(glyphs, 4, 1, length, 20).offset;
    };
    EXPECT_EQ(width(9, 0x1000 - 30), 2);
    EXPECT_EQ(width(9, 0x1001 - 30), 3);
    EXPECT_EQ(width(9, 0x1000000 - 40), 3);
    EXPECT_EQ(width(9, 0x1000001 - 40), 4);
    // The width of the Font DICT counts.
    EXPECT_EQ(CIDFontWidths(9, 4, 257, 0x1001 - 40, 20).offset, 3);
    EXPECT_EQ(CIDFontWidths(9, 4, 257, 0x1000 - 40, 20).offset, 2);
    EXPECT_EQ(CIDFontWidths(9, 4, 0, 0x1000 - 20, 20).offset, 2);
}

TEST(CIDFontWidths, OfSubrsFollowFromAllThatStandsBeforeThem) {
    const auto width = [](std::size_t glyphLength, std::size_t subrLength) {
        return CIDFontWidths(9, 4, 1, glyphLength, subrLength).subr;
    };
    // 40 bytes of map of glyphs with offsets of three bytes.
    constexpr std::size_t kMap = 40;
    EXPECT_EQ(width(0x8000, 0x8000 - kMap - 10), 2);
    EXPECT_EQ(width(0x8000, 0x8001 - kMap - 10), 3);
    EXPECT_EQ(width(0x8000, 0x1000000 - 0x8000 - kMap - 15), 3);
    EXPECT_EQ(width(0x8000, 0x1000001 - 0x8000 - kMap - 15), 4);
    EXPECT_EQ(width(10, 20), 2);
}

// --- hexadecimal --------------------------------------------------------------------------------

std::string hexOf(const std::vector<Bytes>& sections) {
    KWMemStream out;
    std::size_t column = 0;
    for (const Bytes& bytes : sections) {
        KWMemStream section;
        section.append(bytes.str());
        column = writeHexStream(section, out, column);
    }
    return bytesOf(out).str();
}

TEST(WriteHexStream, DigitsAreLowerCase) {
    EXPECT_EQ(hexOf({Bytes{0, 0x0A, 0xA0, 0xFF}}), "000aa0ff");
    EXPECT_EQ(hexOf({}), "");
}

TEST(WriteHexStream, LinesEndBehindEvery32BytesOfAllSectionsTogether) {
    const auto zeros = [](std::size_t count) { return Bytes(std::vector<std::uint8_t>(count)); };
    const std::string line(64, '0');
    EXPECT_EQ(hexOf({zeros(31)}), line.substr(2));
    EXPECT_EQ(hexOf({zeros(32)}), line + "\n");
    EXPECT_EQ(hexOf({zeros(33)}), line + "\n00");
    EXPECT_EQ(hexOf({zeros(20), zeros(20), zeros(30)}),
              line + "\n" + line + "\n" + line.substr(0, 12));
    EXPECT_EQ(hexOf({zeros(32), zeros(0), zeros(32)}), line + "\n" + line + "\n");
}

// --- the text -----------------------------------------------------------------------------------

const FS_CIDSystemInfo kInfo{
    .Registry = "Kestrelworks", .Ordering = "KW3F2A-Subset", .Supplement = 1};

std::string cidFont(const CffSections& table, const Glyphs& list) {
    LoadedCff font(table);
    Type1Glyphs glyphs;
    if (!font.ok || !convertToType1(font.file(), font, list, glyphs))
        throw std::runtime_error("the fixture does not convert");
    KWMemStream out;
    writeCIDFont(glyphs, font.topDict, "KW3F2A-Test", kInfo, out);
    return bytesOf(out).str();
}
std::string cidFont(const Bytes& privateDict) {
    CffSections table = nameKeyed();
    table.privateDict = CffPrivate{.dict = privateDict};
    return cidFont(table, {1});
}

/// What stands between the start of Private and the part that all have.
std::string privateOf(const Bytes& dict) {
    const std::string text = cidFont(dict);
    const std::string start = "/Private 25 dict dup begin\n";
    const std::size_t begin = text.find(start) + start.size();
    return text.substr(begin, text.find("/lenIV 0 def\n") - begin);
}

TEST(CIDFontWriter, OfANameKeyedFontTheWholeText) {
    const std::string expected = std::string("/CIDInit /ProcSet findresource begin\n"
                                             "20 dict begin\n"
                                             "/CIDFontName /KW3F2A-Test def\n"
                                             "/CIDFontType 0 def\n"
                                             "/CIDSystemInfo 3 dict dup begin\n"
                                             "/Registry (Kestrelworks) def\n"
                                             "/Ordering (KW3F2A-Subset) def\n"
                                             "/Supplement 1 def\n"
                                             "end def\n"
                                             "/FontBBox [0 0 0 0] def\n"
                                             "/FontInfo 3 dict dup begin\n"
                                             "/Nontice () def\n"
                                             "/Ordering () def\n"
                                             "/FSType 4 def\n"
                                             "end def\n"
                                             "/CIDCount 3 def\n"
                                             "/GDBytes 2 def\n"
                                             "/FDBytes 1 def\n"
                                             "/CIDMapOffset 0 def\n"
                                             "/PaintType 0 def\n"
                                             "/FDArray 1 array\n"
                                             "dup 0\n"
                                             "%ADOBeginFontDict\n"
                                             "14 dict begin\n"
                                             "/FontType 1 def\n"
                                             "/FontMatrix [0.001 0 0 0.001 0 0] def\n"
                                             "/PaintType 0 def\n"
                                             "%ADOBeginPrivateDict\n"
                                             "/Private 25 dict dup begin\n"
                                             "/lenIV 0 def\n"
                                             "/MinFeature {16 16} def\n"
                                             "/password 5839 def\n") +
                                 kOtherSubrs +
                                 "\n"
                                 "/RD {string currentfile exch readstring pop} executeonly def\n"
                                 "/ND {noaccess def} executeonly def\n"
                                 "/NP {noaccess put} executeonly def\n"
                                 "/SubrCount 4 def\n"
                                 "/SDBytes 2 def\n"
                                 // a map of four entries of three bytes, three glyphs of four
                                 "/SubrMapOffset 24 def\n"
                                 "end def\n"
                                 "%ADOEndPrivateDict\n"
                                 "currentdict end\n"
                                 "%ADOEndFontDict\n"
                                 "put\n"
                                 "def\n"
                                 "%%BeginData: /*SIZE OMITTED*/ Binary Bytes\n"
                                 "(Hex) 56 StartData\n"
                                 "00000c0000100000140000188b8d0d0e8b8f0d0e8b8e0d0e"
                                 "0022002d00320037\n"
                                 "00388e8b0c100c110c110c210b8b8c0c100b8b8d0c100b0b>\n"
                                 "%%EndData\n";
    EXPECT_EQ(cidFont(nameKeyed(), {2, 1}), expected);
}

TEST(CIDFontWriter, EveryFontDictHasItsOwnPrivateAndTheSamePoolOfSubrs) {
    CffCID source = cidKeyed();
    for (std::size_t i = 0; i < source.fontDicts.size(); ++i)
        source.fontDicts[i].privateDict =
            CffPrivate{.dict = joined(cffInteger(static_cast<int>(50 + i)), Bytes{10})};
    const std::string text = cidFont(source.sections(), {1, 3});
    EXPECT_THAT(text, HasSubstr("/FDArray 3 array\ndup 0\n%ADOBeginFontDict\n"));
    EXPECT_THAT(text, HasSubstr("put\ndup 1\n%ADOBeginFontDict\n"));
    EXPECT_THAT(text, HasSubstr("put\ndup 2\n%ADOBeginFontDict\n"));
    for (const char* const width :
         {"/StdHW [ 50 ] def\n", "/StdHW [ 51 ] def\n", "/StdHW [ 52 ] def\n"})
        EXPECT_THAT(text, HasSubstr(width));
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find("/SubrMapOffset 24 def\n", at)) != std::string::npos;
         ++at)
        ++count;
    EXPECT_EQ(count, 3U);
    // Glyph 0 of Font DICT 0, glyph 1 of 1, glyph 3 of 2, and the end of all.
    EXPECT_THAT(text, HasSubstr(" StartData\n00000c01001002001400"
                                "0018"));
}

TEST(CIDFontWriter, MapsHaveWiderOffsetsFrom4097BytesOn) {
    CffSections source = nameKeyed();
    // 500 moves of three bytes in the source are as many of five here.
    Bytes moves;
    for (int i = 0; i < 1500; ++i)
        moves.bytes(Bytes{247, 50, 22});
    source.charStrings[1] = joined(moves, Bytes{14});
    const std::string text = cidFont(source, {1});
    EXPECT_THAT(text, HasSubstr("/GDBytes 3 def\n"));
    // Three entries of four bytes: 0 8b8d0d0e begins at 12.
    EXPECT_THAT(text, HasSubstr(" StartData\n"
                                "0000000c"
                                "00000010"));
}

TEST(CIDFontWriter, TheTopDictGivesBoxAndMatrix) {
    CffSections table = nameKeyed();
    table.topDict.bytes(Bytes{139 - 50, 139, 139 + 100}).bytes(cffReal("20.5")).bytes(Bytes{5});
    for (const char* const number : {"0.0005", "0", "0", "0.0005", "0", "0"})
        table.topDict.bytes(cffReal(number));
    table.topDict.bytes(Bytes{12, 7});
    const std::string text = cidFont(table, {1});
    EXPECT_THAT(text, HasSubstr("/FontBBox [-50 0 100 20.5] def\n"));
    EXPECT_THAT(text, HasSubstr("/FontMatrix [0.0005 0 0 0.0005 0 0] def\n"));
}

TEST(CIDFontWriter, ABoxThatIsShortIsFilledUpAndALongOneCut) {
    CffSections table = nameKeyed();
    table.topDict.bytes(Bytes{140, 141, 5});
    EXPECT_THAT(cidFont(table, {1}), HasSubstr("/FontBBox [1 2 0 0] def\n"));
    table.topDict = Bytes{140, 141, 142, 143, 144, 5};
    EXPECT_THAT(cidFont(table, {1}), HasSubstr("/FontBBox [1 2 3 4] def\n"));
}

// Spellings and blanks are those that readers of these files have always seen.
TEST(CIDFontWriter, BlueFuzzIsSpelledBlueFuss) {
    EXPECT_EQ(privateOf(Bytes{140, 12, 11}), "/BlueFuss 1 def\n");
}

TEST(CIDFontWriter, EveryEntryOfPrivateHasItsLine) {
    EXPECT_EQ(privateOf(Bytes()), "");
    EXPECT_EQ(privateOf(joined(cffReal("0.04379"), Bytes{12, 9})), "/BlueScale 0.04379 def\n");
    EXPECT_EQ(privateOf(Bytes{146, 12, 10}), "/BlueShift 7 def\n");
    EXPECT_EQ(privateOf(Bytes{129, 149, 6}), "/BlueValues [-10 10 ] def\n");
    EXPECT_EQ(privateOf(Bytes{129, 149, 7}), "/OtherBlues [-10 10 ] def\n");
    EXPECT_EQ(privateOf(Bytes{129, 149, 8}), "/FamilyBlues [-10 10] def\n");
    EXPECT_EQ(privateOf(Bytes{129, 149, 9}), "/FamilyOtherBlues [-10 10] def\n");
    EXPECT_EQ(privateOf(Bytes{189, 10}), "/StdHW [ 50 ] def\n");
    EXPECT_EQ(privateOf(Bytes{189, 11}), "/StdVW [ 50 ] def\n");
    EXPECT_EQ(privateOf(Bytes{189, 149, 12, 12}), "/StemSnapH [ 50 10 ] def\n");
    EXPECT_EQ(privateOf(Bytes{189, 149, 12, 13}), "/StemSnapV [ 50 10 ] def\n");
    EXPECT_EQ(privateOf(Bytes{140, 12, 14}), "/ForceBold true def\n");
    EXPECT_EQ(privateOf(Bytes{139, 12, 14}), "/ForceBold false def\n");
    EXPECT_EQ(privateOf(Bytes{139, 12, 17}), "/LanguageGroup 0 def\n");
    EXPECT_EQ(privateOf(joined(cffReal("0.06"), Bytes{12, 18})), "/ExpansionFactor 0.06 def\n");
    // What glyphs alone need has no line.
    EXPECT_EQ(privateOf(Bytes{140, 20, 141, 21, 142, 12, 19}), "");
}

TEST(CIDFontWriter, LanguageGroupOneTurnsRoundingUpOff) {
    EXPECT_EQ(privateOf(Bytes{140, 12, 17}), "/LanguageGroup 1 def\n/RndStemUp false def\n");
    EXPECT_EQ(privateOf(Bytes{141, 12, 17}), "/LanguageGroup 2 def\n");
}

TEST(CIDFontWriter, EntriesOfPrivateComeInThisOrder) {
    const Bytes all = joined(cffReal("0.06"), Bytes{12, 18}, Bytes{140, 12, 17}, Bytes{140, 12, 14},
                             Bytes{140, 12, 13}, Bytes{140, 12, 12}, Bytes{140, 11}, Bytes{140, 10},
                             Bytes{140, 9}, Bytes{140, 8}, Bytes{140, 7}, Bytes{140, 6},
                             Bytes{140, 12, 10}, Bytes{140, 12, 9}, Bytes{140, 12, 11});
    EXPECT_EQ(privateOf(all), "/BlueFuss 1 def\n/BlueScale 1 def\n/BlueShift 1 def\n"
                              "/BlueValues [1 ] def\n/OtherBlues [1 ] def\n/FamilyBlues [1] def\n"
                              "/FamilyOtherBlues [1] def\n/StdHW [ 1 ] def\n/StdVW [ 1 ] def\n"
                              "/StemSnapH [ 1 ] def\n/StemSnapV [ 1 ] def\n/ForceBold true def\n"
                              "/LanguageGroup 1 def\n/RndStemUp false def\n"
                              "/ExpansionFactor 0.06 def\n");
}

TEST(CIDFontWriter, OtherSubrsBeginAndEndAsReadersLookForThem) {
    const std::string text = kOtherSubrs;
    EXPECT_THAT(text, testing::StartsWith("/OtherSubrs\n[systemdict /internaldict known\n"));
    EXPECT_THAT(text, testing::EndsWith("ifelse\n} executeonly\n] noaccess def"));
}

} // namespace
} // namespace KWFontService_NS
