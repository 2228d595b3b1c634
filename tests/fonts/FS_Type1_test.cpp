#include "Type1Fixture.h"

#include <istream>
#include <streambuf>
#include <thread>
#include <vector>

// What the fonts of both kinds of metrics files have in common, shown with AFM files.

namespace KWFontService_NS {
namespace {

using namespace KWTest;

using FSType1 = Type1Test;

// --- the printer font ---------------------------------------------------------------------------

TEST_F(FSType1, ThePrinterFontIsTheFileOfTheSameNameInSegmentsOrElseInText) {
    EXPECT_EQ(made<AFM>("font.afm")->getPrinterFont(), nullptr);
    files().write("font.pfa", "text");
    EXPECT_EQ(made<AFM>("font.afm")->getPrinterFont()->getFontFileType(0), FS_FILETYPE_PFA);
    files().write("font.pfb", "segments");
    EXPECT_EQ(made<AFM>("font.afm")->getPrinterFont()->getFontFileType(0), FS_FILETYPE_PFB);
    EXPECT_EQ(made<PFM>("font.pfm")->getPrinterFont()->getUri(), files().uri("font.pfb"));
    EXPECT_EQ(made<AFM>("other.afm")->getPrinterFont(), nullptr);
}

TEST_F(FSType1, AMetricsFileInCapitalsHasAPrinterFontInCapitals) {
    files().write("font.pfb", "lower");
    const bool tellsCaseApart = !std::filesystem::exists(files().path("font.PFB"));
    const auto lower = made<AFM>("font.AFM");
    EXPECT_EQ(lower->getPrinterFont() == nullptr, tellsCaseApart);
    if (!tellsCaseApart)
        return;
    files().write("font.PFA", "upper");
    const auto upper = made<AFM>("font.AFM");
    ASSERT_NE(upper->getPrinterFont(), nullptr);
    EXPECT_EQ(upper->getPrinterFont()->getUri(), files().uri("font.PFA"));
    // The first letter decides.
    EXPECT_EQ(made<AFM>("font.Afm")->getPrinterFont()->getUri(), files().uri("font.PFA"));
    EXPECT_EQ(made<AFM>("font.aFM")->getPrinterFont()->getUri(), files().uri("font.pfb"));
}

TEST_F(FSType1, APrinterFontThatCannotBeReadIsDroppedAndTold) {
    files().write("font.pfb", "%!PS-AdobeFont");
    const auto font = scannedAFM();
    EXPECT_EQ(font->getPrinterFont(), nullptr);
    EXPECT_EQ(error.getCode(), 1928);
    EXPECT_EQ(message(), "Font file error: Header bad signature: 25\n" + pathOf("font.pfb"));
    EXPECT_TRUE(load(font));
    EXPECT_EQ(unitsOf(font, u"A"), 600);
}

TEST_F(FSType1, APrinterFontThatDoesNotOpenIsDroppedAndTold) {
    writePrinterFont();
    files().write("font.afm", AfmFile::latin().build());
    const auto font = made<AFM>("font.afm");
    ASSERT_NE(font->getPrinterFont(), nullptr);
    std::filesystem::remove(files().path("font.pfb"));
    EXPECT_TRUE(scan(font, "font.afm"));
    EXPECT_EQ(font->getPrinterFont(), nullptr);
    EXPECT_EQ(error.getCode(), 1925);
    EXPECT_EQ(message(), "Cannot read printer font.\n" + pathOf("font.afm"));
}

TEST_F(FSType1, WhatTheMetricsFileDoesNotKnowThePrinterFontAnswers) {
    Type1Font printer = Type1Font::latin();
    printer.extraLines = {"/IsFixedPitch true def"};
    writePrinterFont(printer);
    const auto font = loadedAFM();
    EXPECT_EQ(utf8(font->getPostScriptName(0, 0)), "KWTest-Bold");
    EXPECT_EQ(font->getGlyphID('B', false, 0), 2);
    EXPECT_EQ(font->getGlyphID('B', true, 0), FS_NO_GLYPH);
    EXPECT_TRUE(font->isFixedWidthFont(0));
    EXPECT_FALSE(font->isSymbolicFont(0));
    EXPECT_EQ(font->getEmbedableCharCount(0), font->getPrinterFont()->getEmbedableCharCount(0));
    EXPECT_GT(font->getEmbedableCharCount(0), 0U);
    EXPECT_EQ(font->getFTFace(0), font->getPrinterFont()->getFTFace(0));
    EXPECT_NE(font->getFTFace(0), nullptr);
    EXPECT_EQ(font->getUnitsPerEm(0), 1000);
    EXPECT_TRUE(font->isEmbeddable(0));
    EXPECT_EQ(font->getEmbedStatus(0), FS_EMBED_OUTLINES);
}

TEST_F(FSType1, WithoutAPrinterFontThereAreNoGlyphs) {
    AfmFile file = AfmFile::latin();
    file.extraLines = {"IsFixedPitch true"};
    const auto font = loadedAFM(file);
    EXPECT_EQ(utf8(font->getPostScriptName(0, 0)), "");
    EXPECT_EQ(font->getGlyphID('B', false, 0), FS_NO_GLYPH);
    EXPECT_EQ(font->getGlyphWidth(1, 0, false, 0), 0);
    // Callers have come to rely on the pitch of the printer font alone.
    EXPECT_FALSE(font->isFixedWidthFont(0));
    EXPECT_FALSE(font->isSymbolicFont(0));
    EXPECT_EQ(font->getEmbedableCharCount(0), 0U);
    EXPECT_EQ(font->getPairKerningValue(1, 2, -1000, false, 0), 0);
    EXPECT_EQ(font->getFTFace(0), nullptr);
    EXPECT_EQ(font->getUnitsPerEm(0), 1000);
    EXPECT_FALSE(font->isEmbeddable(0));
    EXPECT_EQ(font->getEmbedStatus(0), FS_EMBED_BITMAP_ONLY);
}

TEST_F(FSType1, GlyphWidthsAreThoseOfThePrinterFont) {
    writePrinterFont();
    const auto font = loadedAFM();
    EXPECT_EQ(font->getGlyphWidth(1, 0, false, 0), 600);
    EXPECT_EQ(font->getGlyphWidth(1, 0, true, 0), 600);
    EXPECT_EQ(font->getGlyphWidth(2, -100, false, 0), 65);
    EXPECT_EQ(font->getGlyphWidth(2, 100, false, 0), 65); // the box is 1000 high
    EXPECT_EQ(font->getGlyphWidth(6, 0, false, 0), 0);
    EXPECT_EQ(font->getGlyphWidth(FS_NO_GLYPH, 0, false, 0), 0);
}

// --- the load -----------------------------------------------------------------------------------

TEST_F(FSType1, APrinterFontInSegmentsIsLoadedToo) {
    writePrinterFont();
    EXPECT_FALSE(loadedAFM()->getPrinterFont()->metrics().records().empty());
}

TEST_F(FSType1, APrinterFontInTextIsDeliberatelyLeftUnloaded) {
    files().write("font.pfa", Type1Font::latin().pfa());
    const auto font = loadedAFM();
    EXPECT_TRUE(font->getPrinterFont()->metrics().records().empty());
    EXPECT_EQ(font->getGlyphID('B', false, 0), 2) << "it opens when it is asked for a glyph";
}

TEST_F(FSType1, APrinterFontThatDoesNotLoadFailsTheLoad) {
    files().write("font.pfb",
                  pfbSegment(1, Bytes::ofText("%!PS\n/FontName /X def\ncurrentfile eexec\n")));
    const auto font = scannedAFM();
    EXPECT_FALSE(load(font));
    EXPECT_EQ(error.getCode(), 1926);
    EXPECT_FALSE(load(font)) << "the first answer stays";
    EXPECT_EQ(message(), "Cannot read font information.\n" + pathOf("font.pfb"));
}

TEST_F(FSType1, TheLoadRunsOnce) {
    const auto font = loadedAFM();
    const Type1CharMetric* const a = font->metrics().findName("A");
    ASSERT_NE(a, nullptr);
    std::filesystem::remove(files().path("font.afm"));
    EXPECT_TRUE(load(font));
    EXPECT_EQ(font->metrics().findName("A"), a);
}

TEST_F(FSType1, AGlyphListThatDoesNotOpenFailsTheLoad) {
    options.glyphList = files().uri("absent.txt");
    const auto font = scannedAFM();
    EXPECT_FALSE(load(font));
    EXPECT_EQ(error.getCode(), 1923);
    EXPECT_EQ(message(), "Glyph-list open error.\n" + pathOf("font.afm"));
}

/// A stream of a host that breaks.
class BrokenStream : private std::streambuf, public std::istream {
public:
    BrokenStream() : std::istream(static_cast<std::streambuf*>(this)) {}

private:
    std::streambuf::int_type underflow() override { throw 1; }
};

TEST_F(FSType1, AGlyphListThatDoesNotReadFailsTheLoad) {
    KWUri::setFetcher([](const KWUri&, KWUri::ContentInfo&, UnicodeString&) {
        return std::unique_ptr<std::istream>(std::make_unique<BrokenStream>());
    });
    options.glyphList = KWUri(u"http://host/list");
    const auto font = scannedAFM();
    EXPECT_FALSE(load(font));
    KWUri::setFetcher({});
    EXPECT_EQ(error.getCode(), 1924);
    EXPECT_EQ(message(), "Glyph-list read error.\n" + pathOf("font.afm"));
}

TEST_F(FSType1, ThreadsMayLoadAndAskForCodesAtOnce) {
    writePrinterFont();
    const auto font = scannedAFM();
    std::vector<std::thread> threads;
    std::vector<int> codes(4);
    for (int& code : codes) {
        threads.emplace_back([&] {
            KWError complaint;
            if (font->loadFont(complaint, 0, nullptr) && font->getGlyphID('B', false, 0) == 2)
                code = font->getType1CharCode(0xC1, 0);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(codes, std::vector<int>(4, codes[0]));
    EXPECT_NE(codes[0], 0);
}

TEST_F(FSType1, AGlyphListOfNonsenseIsAnEmptyOne) {
    options.glyphList = fileUri(files().write("list.txt", "nonsense\n0041 A\n"));
    EXPECT_EQ(unitsOf(loadedAFM(), u"A"), 600);
}

// --- widths by names and codes ------------------------------------------------------------------

TEST_F(FSType1, WidthsAreFoundByTheNamesOfCharacters) {
    const auto font = loadedAFM();
    int missing = 99;
    EXPECT_EQ(unitsOf(font, u"AB \u00C1", &missing), 600 + 650 + 250 + 600);
    EXPECT_EQ(missing, -1);
    EXPECT_EQ(unitsOf(font, u"", &missing), 0);
    EXPECT_EQ(missing, -1);
    EXPECT_EQ(unitsOf(font, u"\u00A0"), 250) << "the space stands in";
}

TEST_F(FSType1, BeforeTheLoadNothingIsFound) {
    const auto font = scannedAFM();
    EXPECT_EQ(unitsOf(font, u"A"), 0);
    EXPECT_EQ(firstMissing(font, u"A"), 0);
}

TEST_F(FSType1, SizesAreOfTheEmOrOfTheBox) {
    AfmFile file = AfmFile::latin();
    file.fontBBox = "0 -250 1000 1000";
    const auto font = loadedAFM(file);
    EXPECT_EQ(font->getTextWidth(u"A", -10, false, nullptr, 0), 6);
    EXPECT_FLOAT_EQ(font->getTextWidth(u"A", 10, false, nullptr, 0), 4.8F);
    EXPECT_EQ(font->getTextWidth(u"A", 0, false, nullptr, 0), 0);
    EXPECT_EQ(font->getTextWidth(u"A", -10, true, nullptr, 0), 6);
}

TEST_F(FSType1, ABoxWithoutHeightMeasuresNothing) {
    AfmFile file = AfmFile::latin();
    for (const char* box : {"0 0 0 0", "0 -1e300 0 1e300"}) {
        file.fontBBox = box;
        const auto font = loadedAFM(file);
        EXPECT_EQ(font->getTextWidth(u"A", 10, false, nullptr, 0), 0);
        EXPECT_EQ(font->getTextWidth(u"A", -10, false, nullptr, 0), 6);
    }
}

TEST_F(FSType1, WhatIsMissingHasNoWidthAndIsToldByItsFirstIndex) {
    const auto font = loadedAFM();
    EXPECT_EQ(unitsOf(font, u"A\U0001F600B\u3042"), 1250);
    EXPECT_EQ(firstMissing(font, u"A\U0001F600B\u3042"), 1);
    EXPECT_EQ(firstMissing(font, u"AB\u3042\u3042"), 2);
}

TEST_F(FSType1, AGlyphListOutranksTheNamesOfCharacters) {
    options.glyphList = fileUri(files().write("list.txt", "0041;B\n3042;acute\n0042;absent\n"));
    const auto font = loadedAFM();
    EXPECT_EQ(unitsOf(font, u"A"), 650);
    EXPECT_EQ(unitsOf(font, u"\u3042"), 300);
    EXPECT_EQ(unitsOf(font, u" "), 250) << "one that is not listed has its name";
    EXPECT_EQ(firstMissing(font, u"B"), 0) << "one that is listed has no other";
}

TEST_F(FSType1, WhatIsMissingIsAsWideAsTheSpaceOfTheGlyphList) {
    options.glyphList = fileUri(files().write("list.txt", "0020;space\n"));
    const auto font = loadedAFM();
    EXPECT_EQ(unitsOf(font, u"A\u3042\u3042"), 600 + 250 + 250);
    EXPECT_EQ(firstMissing(font, u"A\u3042"), 1);
}

/// The metrics of `Type1Font::symbols`.
AfmFile symbols() {
    AfmFile file;
    file.encodingScheme = "FontSpecific";
    file.charMetrics = {"C 65 ; WX 600 ; N foo ;", "C 128 ; WX 700 ; N bar ;",
                        "C 31 ; WX 800 ; N low ;", "C -1 ; WX 900 ; N Omega ;"};
    return file;
}

TEST_F(FSType1, OfASymbolicFontWidthsAreFoundByCodeAfterNames) {
    writePrinterFont(Type1Font::symbols());
    const auto font = loadedAFM(symbols());
    ASSERT_TRUE(font->isSymbolicFont(0));
    EXPECT_EQ(unitsOf(font, u"\u0041"), 600);
    EXPECT_EQ(unitsOf(font, u"\uF041"), 600);
    EXPECT_EQ(unitsOf(font, u"\uF080"), 700);
    EXPECT_EQ(firstMissing(font, u"\uF041\uF01F"), 1) << "codes begin at 32";
    EXPECT_EQ(unitsOf(font, u"\u2126"), 900) << "a name is a name";
    EXPECT_EQ(firstMissing(font, u"\u03A9"), 0) << "and nothing stands in";
}

TEST_F(FSType1, OfASymbolicFontAListedCharacterWithoutItsGlyphHasTheGlyphOfItsCode) {
    writePrinterFont(Type1Font::symbols());
    options.glyphList = fileUri(files().write("list.txt", "0041;absent\n0080;foo\n"));
    const auto font = loadedAFM(symbols());
    EXPECT_EQ(unitsOf(font, u"A"), 600);
    EXPECT_EQ(firstMissing(font, u"A"), -1);
    EXPECT_EQ(unitsOf(font, u"\u0080"), 600) << "and the listed glyph outranks it";
}

TEST_F(FSType1, OfAnyOtherFontCodesAreNotLookedAt) {
    const auto font = loadedAFM(symbols());
    EXPECT_EQ(firstMissing(font, u"A"), 0);
    EXPECT_EQ(firstMissing(font, u"\uF041"), 0);
    EXPECT_EQ(unitsOf(font, u"\u03A9"), 900) << "U+2126 stands in";
}

TEST_F(FSType1, WithoutGlyphNameMappingCharactersAreCodes) {
    options.skipGlyphNameMapping = true;
    options.glyphList = fileUri(files().write("list.txt", "0041;B\n"));
    AfmFile file = AfmFile::latin();
    file.charMetrics.emplace_back("C 300 ; WX 77 ; N odd ;");
    const auto font = loadedAFM(file);
    EXPECT_EQ(unitsOf(font, u"A\u00C2\u012C"), 600 + 300 + 77);
    EXPECT_EQ(unitsOf(font, u"\u00C1"), 250) << "what is missing is as wide as code 32";
    EXPECT_EQ(firstMissing(font, u"A\u00C1"), 1);
}

TEST_F(FSType1, WithoutGlyphNameMappingASymbolicFontStillHasItsPrivateCharacters) {
    writePrinterFont(Type1Font::symbols());
    options.skipGlyphNameMapping = true;
    const auto font = loadedAFM(symbols());
    EXPECT_EQ(unitsOf(font, u"\uF041"), 600);
    EXPECT_EQ(unitsOf(font, u"\uF01F"), 800) << "codes below 32 are codes";
}

// --- codes --------------------------------------------------------------------------------------

TEST_F(FSType1, CharactersGetCodes) {
    const auto font = loadedAFM();
    EXPECT_EQ(font->getType1CharCode('A', 0), 'A');
    EXPECT_EQ(font->getType1CharCode(0xC1, 0), 128) << "the first that is handed out";
    EXPECT_EQ(font->getType1CharCode(0xC1, 0), 128);
    EXPECT_EQ(font->getType1CharCode(0x3042, 0), 0);
    const auto* const entries = font->getType1CMapArray(0, 0);
    ASSERT_NE(entries, nullptr);
    EXPECT_EQ(*entries, (FS_BaseFont::Type1CMapArray{{128, "Aacute"}}));
    unsigned char code = 0;
    std::string name;
    EXPECT_TRUE(font->getType1CMapPair(0, 0, code, name, 0));
    EXPECT_EQ(code, 128);
    EXPECT_EQ(name, "Aacute");
    EXPECT_FALSE(font->getType1CMapPair(0, 1, code, name, 0));
    EXPECT_TRUE(font->getType1GlyphName(0, 128, name, 0));
    EXPECT_FALSE(font->getType1GlyphName(1, 128, name, 0));
    EXPECT_EQ(font->getType1GlyphIDCode(1, 0), 0);
}

TEST_F(FSType1, OfASymbolicFontCharactersAreItsCodes) {
    writePrinterFont(Type1Font::symbols());
    const auto font = loadedAFM(symbols());
    EXPECT_EQ(font->getType1CharCode(0xF041, 0), 0x41);
    std::string name;
    EXPECT_TRUE(font->getType1GlyphName(0, 0x41, name, 0));
    EXPECT_EQ(name, "foo");
}

TEST_F(FSType1, WithoutGlyphNameMappingAndPrinterFontEveryCodeStands) {
    options.skipGlyphNameMapping = true;
    const auto font = loadedAFM();
    EXPECT_EQ(font->getType1CharCode(32, 0), 32);
    EXPECT_EQ(font->getType1CharCode(255, 0), 255);
    EXPECT_EQ(font->getType1CharCode(256, 0), 0);
}

// --- the rest -----------------------------------------------------------------------------------

TEST_F(FSType1, AnEudcFontIsKeptAsALink) {
    const auto font = made<AFM>("font.afm");
    EXPECT_FALSE(font->getEudcFont(0));
    const auto other = made<PFM>("font.pfm");
    font->setEudcFont({other.get(), 3}, 0);
    EXPECT_EQ(font->getEudcFont(0), (FS_FontRef{other.get(), 3}));
    font->setEudcFont({}, 0);
    EXPECT_FALSE(font->getEudcFont(0));
}

TEST_F(FSType1, TheLogFontHasNamesAndStyle) {
    AfmFile file = AfmFile::latin();
    file.italicAngle = "-9";
    FS_EnumLogFontEx font;
    EXPECT_TRUE(scannedAFM(file)->getLogFont(font, 0));
    EXPECT_EQ(utf8(font.getFaceName()), "KWTest");
    EXPECT_EQ(utf8(font.getFullName()), "KWTest Bold");
    EXPECT_EQ(font.getWeight(), 700);
    EXPECT_TRUE(font.isItalic());
}

TEST_F(FSType1, StandardFontsAreKnownByTheirNames) {
    AfmFile file = AfmFile::latin();
    EXPECT_EQ(scannedAFM(file)->getStandardFont(), nullptr);
    file.fontName = "Helvetica-bold";
    const auto font = scannedAFM(file);
    ASSERT_NE(font->getStandardFont(), nullptr);
    EXPECT_STREQ(font->getStandardFont()->name, "Helvetica-Bold");
}

} // namespace
} // namespace KWFontService_NS
