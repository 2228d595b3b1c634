#include "Type1Fixture.h"

#include <vector>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

using FSType1PFM = Type1Test;

TEST_F(FSType1PFM, ItsKindIsThatOfItsFile) {
    const auto font = made<PFM>("font.pfm");
    EXPECT_EQ(font->getFontFileType(0), 4);
    EXPECT_EQ(font->getClassId(), 0xEE4D2140U);
    EXPECT_TRUE(font->isKindOf(0xEE4D2140U));
    EXPECT_TRUE(font->isKindOf(0xA76A5E02U));
    EXPECT_FALSE(font->isKindOf(FS_CLASSID_TYPE1_AFM));
    EXPECT_TRUE(font->isType1Font(0));
    EXPECT_TRUE(font->isType1OrNoCID(0));
}

TEST_F(FSType1PFM, AnswersWhatTheScanRead) {
    PfmFile file = PfmFile::latin();
    file.italic = true;
    const auto font = scannedPFM(file);
    EXPECT_FALSE(error.isError());
    EXPECT_EQ(utf8(font->getFamilyName(0, 0)), "KWTest");
    EXPECT_EQ(utf8(font->getFullFontName(0, 0)), "KWTest");
    EXPECT_EQ(utf8(font->getSubFamilyName(0, 0)), "");
    EXPECT_EQ(utf8(font->getCopyright(0, 0)), "Copyright KWTest");
    EXPECT_EQ(font->getWeight(0), 700);
    EXPECT_TRUE(font->isItalic(0));
    EXPECT_FLOAT_EQ(font->getXHeight(0), 0.45F);
    EXPECT_FALSE(font->hasPairKerningInfo(false, 0));
    EXPECT_FALSE(font->hasVerticalGlyph(0));
}

TEST_F(FSType1PFM, ThePrinterFontHasTheFullName) {
    writePrinterFont();
    const auto font = scannedPFM();
    EXPECT_EQ(utf8(font->getFullFontName(0, 0)), "KWTest Bold");
    EXPECT_EQ(utf8(font->getSubFamilyName(0, 0)), "Bold");
}

TEST_F(FSType1PFM, WhereThePrinterFontHasNoFullNameTheFamilyNameIsIt) {
    Type1Font printer = Type1Font::latin();
    printer.fullName = "";
    writePrinterFont(printer);
    EXPECT_EQ(utf8(scannedPFM()->getFullFontName(0, 0)), "KWTest");
}

TEST_F(FSType1PFM, AFileThatIsTooShortFailsTheScan) {
    const Bytes whole = PfmFile::latin().build();
    files().write("font.pfm", Bytes(whole).truncate(116));
    const auto font = made<PFM>("font.pfm");
    EXPECT_FALSE(scan(font, "font.pfm"));
    EXPECT_EQ(error.getCode(), 1921);
    EXPECT_EQ(message(), "Font read error.\n" + pathOf("font.pfm"));
    files().write("font.pfm", Bytes(whole).truncate(120));
    EXPECT_FALSE(scan(font, "font.pfm"));
    EXPECT_EQ(message(), "Font read error: Extension read error\n" + pathOf("font.pfm"));
}

TEST_F(FSType1PFM, ARangeFrom33IsOneFrom32UnlessAnErrorIsPending) {
    PfmFile file = PfmFile::latin();
    file.firstChar = 33;
    EXPECT_EQ(scannedPFM(file)->file().dfFirstChar, 32);
    const auto font = made<PFM>("font.pfm");
    KWError pending(FS_ERROR_FONT_FILE, u"pending");
    std::ifstream stream(files().path("font.pfm"), std::ios::binary);
    EXPECT_TRUE(font->scanFont(pending, stream));
    EXPECT_EQ(font->file().dfFirstChar, 33);
    EXPECT_EQ(utf8(pending.getMessage()), "pending");
}

TEST_F(FSType1PFM, WithABrokenPrinterFontOnlyAStandardFontIsAFont) {
    files().write("font.pfb", "no font");
    PfmFile file = PfmFile::latin();
    files().write("font.pfm", file.build());
    EXPECT_FALSE(scan(made<PFM>("font.pfm"), "font.pfm"));
    EXPECT_EQ(error.getCode(), 1928);

    file.postScriptName = "Times-Roman";
    const auto font = scannedPFM(file);
    EXPECT_EQ(error.getCode(), 1928) << "which is told all the same";
    EXPECT_EQ(font->getPrinterFont(), nullptr);
    EXPECT_TRUE(load(font));
}

TEST_F(FSType1PFM, WithAPrinterFontThatDoesNotOpenOnlyAStandardFontIsAFont) {
    PfmFile file = PfmFile::latin();
    for (const bool isStandard : {false, true}) {
        writePrinterFont();
        file.postScriptName = isStandard ? "Courier" : "KWTest-Bold";
        files().write("font.pfm", file.build());
        const auto font = made<PFM>("font.pfm");
        ASSERT_NE(font->getPrinterFont(), nullptr);
        std::filesystem::remove(files().path("font.pfb"));
        EXPECT_EQ(scan(font, "font.pfm"), isStandard);
        EXPECT_EQ(font->getPrinterFont(), nullptr);
        EXPECT_EQ(error.getCode(), 1925);
        EXPECT_EQ(message(), "Cannot read printer font.\n" + pathOf("font.pfm"));
    }
}

TEST_F(FSType1PFM, AFileWithoutNamesIsAFont) {
    PfmFile file = PfmFile::latin();
    file.hasNames = false;
    const auto font = scannedPFM(file);
    EXPECT_EQ(utf8(font->getFamilyName(0, 0)), "");
    EXPECT_EQ(font->getStandardFont(), nullptr);
}

TEST_F(FSType1PFM, TheEncodingIsThatOfTheCharacterSet) {
    PfmFile file = PfmFile::latin();
    for (const auto& [charSet, scheme] :
         std::vector<std::pair<int, int>>{{0, 2}, {2, 5}, {1, 1}, {161, 1}, {255, 1}}) {
        file.charSet = charSet;
        EXPECT_EQ(int{scannedPFM(file)->getEncodingScheme(0)}, scheme) << charSet;
    }
}

TEST_F(FSType1PFM, TheEncodingOfThePrinterFontOutranksTheCharacterSet) {
    writePrinterFont();
    EXPECT_EQ(scannedPFM()->getEncodingScheme(0), FS_ENCODING_STANDARD);
    writePrinterFont(Type1Font::symbols());
    EXPECT_EQ(scannedPFM()->getEncodingScheme(0), FS_ENCODING_FONT);
}

// --- widths by code page ------------------------------------------------------------------------

TEST_F(FSType1PFM, WithoutAPrinterFontWidthsAreByTheCodePage) {
    PfmFile file = PfmFile::latin();
    const auto western = loadedPFM(file);
    EXPECT_EQ(unitsOf(western, u"A\u20AC"), 300 + 65 + 300 + 0x80);
    EXPECT_EQ(firstMissing(western, u"A\u20AC"), -1);
    file.charSet = 204;
    EXPECT_EQ(unitsOf(loadedPFM(file), u"\u0410"), 300 + 0xC0);
}

TEST_F(FSType1PFM, WhatTheCodePageDoesNotHaveIsAsWideAsTheSpace) {
    const auto font = loadedPFM();
    EXPECT_EQ(unitsOf(font, u"A\U0001F600\u0410"), 365 + 332 + 332);
    EXPECT_EQ(firstMissing(font, u"AB\U0001F600\u0410"), 2);
}

TEST_F(FSType1PFM, WhatIsOutsideTheRangeIsAsWideAsTheSpace) {
    PfmFile file = PfmFile::latin();
    file.lastChar = 'A';
    file.extents.resize('A' - 32 + 1);
    const auto font = loadedPFM(file);
    EXPECT_EQ(unitsOf(font, u"AB"), 365 + 332);
    EXPECT_EQ(firstMissing(font, u"AB"), 1);
    EXPECT_EQ(firstMissing(font, u"A\t"), 1);
}

TEST_F(FSType1PFM, OnlyCodesInTheRangeAddToTheWidth) {
    Bytes bytes = PfmFile::latin().build();
    bytes.patchU8At(PfmFile::kFirstCharAt, 5).patchU8At(PfmFile::kLastCharAt, 20);
    files().write("font.pfm", bytes);
    const auto font = made<PFM>("font.pfm");
    ASSERT_TRUE(scan(font, "font.pfm")) << message();
    EXPECT_EQ(unitsOf(font, u"AB"), 0);
    EXPECT_EQ(firstMissing(font, u"AB"), 0);
}

TEST_F(FSType1PFM, WithoutExtentsAllCharactersAreEquallyWide) {
    PfmFile file = PfmFile::latin();
    file.extents.clear();
    file.pixWidth = 600;
    EXPECT_EQ(unitsOf(loadedPFM(file), u"iW\u0410"), 1800);
}

TEST_F(FSType1PFM, SizesAreOfTheEmOrOfTheAscent) {
    const auto font = loadedPFM();
    EXPECT_FLOAT_EQ(font->getTextWidth(u"A", -10, false, nullptr, 0), 3.65F);
    EXPECT_FLOAT_EQ(font->getTextWidth(u"A", 10, false, nullptr, 0), 3650.0F / 800);
    EXPECT_EQ(font->getTextWidth(u"A", 0, false, nullptr, 0), 0);
    PfmFile flat = PfmFile::latin();
    flat.ascent = 0;
    EXPECT_EQ(loadedPFM(flat)->getTextWidth(u"A", 10, false, nullptr, 0), 0);
}

// --- widths of the printer font -----------------------------------------------------------------

TEST_F(FSType1PFM, WithAPrinterFontWidthsAreByItsNames) {
    Type1Font printer = Type1Font::latin();
    printer.fontBBox = "{0 -250 1000 1000}";
    writePrinterFont(printer);
    const auto font = loadedPFM();
    EXPECT_EQ(unitsOf(font, u"A "), 850);
    EXPECT_EQ(firstMissing(font, u"A\u20AC"), 1);
    EXPECT_FLOAT_EQ(font->getTextWidth(u"A", 10, false, nullptr, 0), 4.8F) << "of its box";
}

TEST_F(FSType1PFM, AGlyphListNamesGlyphsOfThePrinterFont) {
    writePrinterFont();
    options.glyphList = fileUri(files().write("list.txt", "0041;B\n3042;acute\n0020;space\n"));
    const auto font = loadedPFM();
    EXPECT_EQ(unitsOf(font, u"A"), 650);
    EXPECT_EQ(unitsOf(font, u"\u3042"), 300);
    EXPECT_EQ(unitsOf(font, u"B"), 650) << "one that is not listed has its name";
    EXPECT_EQ(unitsOf(font, u"\u20AC"), 250) << "as wide as the listed space";
}

TEST_F(FSType1PFM, WithoutGlyphNameMappingCharactersAreCodesOfThePrinterFont) {
    writePrinterFont(Type1Font::symbols());
    options.skipGlyphNameMapping = true;
    const auto font = loadedPFM();
    EXPECT_EQ(unitsOf(font, u"A\u0080"), 600 + 700);
    EXPECT_EQ(firstMissing(font, u"AB"), 1);
    EXPECT_EQ(unitsOf(font, u"B"), 0) << "there is no code 32";
    EXPECT_EQ(font->getType1CharCode('A', 0), 'A');
    EXPECT_EQ(font->getType1CharCode('B', 0), 0) << "the printer font has no name for it";
}

TEST_F(FSType1PFM, OfASymbolicPrinterFontWidthsAreByItsCodes) {
    writePrinterFont(Type1Font::symbols());
    const auto font = loadedPFM();
    EXPECT_EQ(unitsOf(font, u"\uF041\uF080"), 600 + 700);
    EXPECT_EQ(font->getType1CharCode(0xF041, 0), 0x41);
}

TEST_F(FSType1PFM, OfAStandardFontWithItsOwnEncodingWidthsAreByTheCodePage) {
    PfmFile file = PfmFile::latin();
    file.postScriptName = "Helvetica-Bold";
    Type1Font printer = Type1Font::latin();
    writePrinterFont(printer);
    EXPECT_EQ(unitsOf(loadedPFM(file), u"A"), 600) << "the standard encoding has names";
    printer.encoding = {{'A', "A"}};
    writePrinterFont(printer);
    EXPECT_EQ(unitsOf(loadedPFM(file), u"A"), 365);
    EXPECT_EQ(unitsOf(loadedPFM(), u"A"), 600) << "any other font has names";
}

TEST_F(FSType1PFM, OfAPrinterFontInTextDeliberatelyNoWidthIsKnown) {
    files().write("font.pfa", Type1Font::latin().pfa());
    const auto font = loadedPFM();
    EXPECT_EQ(unitsOf(font, u"A"), 0);
    EXPECT_EQ(firstMissing(font, u"A"), 0);
}

TEST_F(FSType1PFM, CharactersGetCodesByTheNamesOfThePrinterFont) {
    EXPECT_EQ(loadedPFM()->getType1CharCode('A', 0), 0) << "there are no names";
    writePrinterFont();
    const auto font = loadedPFM();
    EXPECT_EQ(font->getType1CharCode('A', 0), 'A');
    EXPECT_NE(font->getType1CharCode(0xC1, 0), 0);
}

} // namespace
} // namespace KWFontService_NS
