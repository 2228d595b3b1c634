#include "Type1Fixture.h"

#include "support/BrokenStreams.h"
#include "support/FontPackages.h"
#include "support/FreeTypeFace.h"
#include "type1/GlyphNames.h"

#include <sstream>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

using FSType1AFM = Type1Test;

TEST_F(FSType1AFM, ItsKindIsThatOfItsFile) {
    const auto font = made<AFM>("font.afm");
    EXPECT_EQ(font->getFontFileType(0), 3);
    EXPECT_EQ(font->getClassId(), 0xE0D8C304U);
    EXPECT_TRUE(font->isKindOf(0xE0D8C304U));
    EXPECT_TRUE(font->isKindOf(0xA76A5E02U));
    EXPECT_TRUE(font->isKindOf(FS_CLASSID_BASE_FONT));
    EXPECT_FALSE(font->isKindOf(FS_CLASSID_TYPE1_PFM));
    EXPECT_TRUE(font->isType1Font(0));
    EXPECT_TRUE(font->isType1OrNoCID(0));
    EXPECT_FALSE(font->isTrueTypeFont(0));
    EXPECT_FALSE(font->isTrueTypeOrCID(0));
}

TEST_F(FSType1AFM, AnswersWhatTheScanRead) {
    AfmFile file = AfmFile::latin();
    file.encodingScheme = "FontSpecific";
    file.extraLines = {"Copyright KW", "XHeight 500", "CapHeight 700", "Ascender 750",
                       "Descender -250"};
    const auto font = scannedAFM(file);
    EXPECT_FALSE(error.isError());
    EXPECT_EQ(utf8(font->getFamilyName(0, 0)), "KWTest");
    EXPECT_EQ(utf8(font->getFullFontName(1033, 0)), "KWTest Bold");
    EXPECT_EQ(utf8(font->getCopyright(0, 0)), "KW");
    EXPECT_EQ(font->getWeight(0), 700);
    EXPECT_FALSE(font->isItalic(0));
    EXPECT_FLOAT_EQ(font->getXHeight(0), 0.5F);
    EXPECT_EQ(font->getEncodingScheme(0), FS_ENCODING_FONT);
    // The other heights are known and not told.
    EXPECT_EQ(font->getCapHeight(0), 0);
    EXPECT_EQ(font->getTypoAscender(0), 0);
    EXPECT_EQ(font->getTypoDescender(0), 0);
    EXPECT_EQ(font->getCodePageRangeBitFields(0), FS_CodePageRange());
    file.italicAngle = "-12";
    EXPECT_TRUE(scannedAFM(file)->isItalic(0));
}

TEST_F(FSType1AFM, TheSubFamilyIsByTheNames) {
    AfmFile file = AfmFile::latin();
    const auto subFamily = [&] { return utf8(scannedAFM(file)->getSubFamilyName(0, 0)); };
    EXPECT_EQ(subFamily(), "Bold");
    file.fullName = "KWTest";
    file.weight = "Book";
    EXPECT_EQ(subFamily(), "Book");
    file.fullName = "Other Bold";
    EXPECT_EQ(subFamily(), "");
    Type1Font printer = Type1Font::latin();
    printer.fullName = "KWTest Printed";
    writePrinterFont(printer);
    EXPECT_EQ(subFamily(), "Printed");
}

TEST_F(FSType1AFM, AFontWithVerticalMetricsHasVerticalGlyphs) {
    AfmFile file = AfmFile::latin();
    EXPECT_FALSE(scannedAFM(file)->hasVerticalGlyph(0));
    file.extraLines = {"MetricsSet 1"};
    EXPECT_TRUE(scannedAFM(file)->hasVerticalGlyph(0));
    file.extraLines = {"MetricsSet 0"};
    EXPECT_FALSE(scannedAFM(file)->hasVerticalGlyph(0));
}

// The pairs are of characters, the question is about glyphs: the printer font alone answers it.
TEST_F(FSType1AFM, ThatThereIsKerningIsToldButItsValueIsThePrinterFonts) {
    writePrinterFont();
    const auto font = loadedAFM();
    EXPECT_TRUE(font->hasPairKerningInfo(false, 0));
    EXPECT_EQ(font->kernPairs().find('A', 'B'), -80);
    EXPECT_EQ(font->getPairKerningValue(1, 2, -1000, false, 0), 0);
    AfmFile without = AfmFile::latin();
    without.kernPairs.clear();
    EXPECT_FALSE(loadedAFM(without)->hasPairKerningInfo(false, 0));
}

TEST_F(FSType1AFM, TheScanKeepsNoGlyphs) {
    const auto font = scannedAFM();
    EXPECT_TRUE(font->metrics().records().empty());
    EXPECT_TRUE(font->kernPairs().empty());
    EXPECT_TRUE(font->hasPairKerningInfo(false, 0)) << "it knows of them";
    EXPECT_EQ(font->head().maximumWidth, 650);
    EXPECT_TRUE(load(font));
    EXPECT_EQ(font->metrics().records().size(), 5U);
}

TEST_F(FSType1AFM, OfGlyphsOfOneNameOrCodeTheFirstIsFound) {
    AfmFile file;
    file.charMetrics = {"C 65 ; WX 1 ; N A ;", "C 65 ; WX 2 ; N B ;", "C -1 ; WX 3 ; N A ;"};
    const auto font = loadedAFM(file);
    EXPECT_EQ(font->metrics().findCode(65)->WX, 1);
    EXPECT_EQ(font->metrics().findName("A")->WX, 1);
    EXPECT_EQ(font->metrics().findName("B")->WX, 2);
    EXPECT_EQ(font->metrics().findCode(-1), nullptr);
}

TEST_F(FSType1AFM, ALineInTheWrongPlaceFailsTheScan) {
    files().write("font.afm", "FontName X\nEndKernPairs\n");
    const auto font = made<AFM>("font.afm");
    EXPECT_FALSE(scan(font, "font.afm"));
    EXPECT_EQ(error.getCode(), 1928);
    EXPECT_EQ(message(), "Font file error: in line #2 : EndKernPairs\n" + pathOf("font.afm"));
    EXPECT_EQ(utf8(font->getFamilyName(0, 0)), "");
}

TEST_F(FSType1AFM, AFileThatHasGoneOrChangedFailsTheLoad) {
    const auto gone = scannedAFM();
    std::filesystem::remove(files().path("font.afm"));
    EXPECT_FALSE(load(gone));
    EXPECT_EQ(error.getCode(), 1921);
    const auto changed = scannedAFM();
    files().write("font.afm", "EndKernData\n");
    EXPECT_FALSE(load(changed));
    EXPECT_EQ(message(), "Font file error: in line #1 : EndKernData\n" + pathOf("font.afm"));
}

TEST_F(FSType1AFM, AStreamAtHandIsReadFromItsStart) {
    const auto font = scannedAFM();
    std::filesystem::remove(files().path("font.afm"));
    std::istringstream stream(AfmFile::latin().build());
    stream.seekg(0, std::ios::end);
    stream.get();
    EXPECT_TRUE(font->loadFont(error, 0, &stream));
    EXPECT_EQ(unitsOf(font, u"A"), 600);
}

TEST_F(FSType1AFM, AStreamAtHandThatDoesNotSeekFailsTheLoad) {
    const auto font = scannedAFM();
    UnseekableStream stream(AfmFile::latin().build());
    EXPECT_FALSE(font->loadFont(error, 0, &stream));
    EXPECT_EQ(error.getCode(), 1921);
    EXPECT_EQ(unitsOf(font, u"A"), 0);
}

TEST_F(FSType1AFM, AStreamWithoutABufferFailsTheScanAndTheLoad) {
    const auto font = made<AFM>("font.afm");
    std::istream none(nullptr);
    EXPECT_FALSE(font->scanFont(error, none));
    EXPECT_EQ(error.getCode(), 1921);
    EXPECT_EQ(message(), "Font read error.\n" + pathOf("font.afm"));
    const auto scanned = scannedAFM();
    EXPECT_FALSE(scanned->loadFont(error, 0, &none));
    EXPECT_EQ(error.getCode(), 1921);
}

TEST_F(FSType1AFM, AFileOfAHostThatBreaksFailsTheLoad) {
    KWUri::setFetcher([](const KWUri&, KWUri::ContentInfo&, UnicodeString&) {
        return std::unique_ptr<std::istream>(
            std::make_unique<BreakingStream>("FontName X\nStartCharMetrics 2\nC 65 ; WX 1 ;\n"));
    });
    const Ptr<AFM> font(new AFM(KWUri(u"http://host/font.afm")));
    EXPECT_FALSE(load(font));
    KWUri::setFetcher({});
    EXPECT_EQ(error.getCode(), 1921);
    EXPECT_TRUE(font->metrics().records().empty());
}

// --- packaged fonts -----------------------------------------------------------------------------

class PackagedAFM : public FSType1AFM, public testing::WithParamInterface<const char*> {};

TEST_P(PackagedAFM, WidthsAreThoseOfThePrinterFont) {
    const std::string name = GetParam();
    files().write("font.afm", readFile(packagedFont(name + "-AFM")));
    files().write("font.pfb", readFile(packagedFont(name + "-PFB")));
    const auto font = made<AFM>("font.afm");
    ASSERT_TRUE(scan(font, "font.afm")) << message();
    EXPECT_FALSE(error.isError()) << message();
    ASSERT_TRUE(load(font)) << message();

    const FreeTypeFace face(readFile(files().path("font.pfb")));
    EXPECT_EQ(utf8(font->getPostScriptName(0, 0)), utf8(font->head().postScriptName));
    int compared = 0;
    for (char16_t ch = 0x20; ch < 0x180; ++ch) {
        const unsigned short glyph = font->getGlyphID(ch, false, 0);
        const icu::UnicodeString text(ch);
        // A symbolic font takes a character without a name of its own for a code.
        if (glyph == FS_NO_GLYPH || glyphNameOf(ch).empty() || firstMissing(font, text) != -1)
            continue;
        ++compared;
        // Metrics files have whole numbers or cut fractions.
        EXPECT_NEAR(unitsOf(font, text), static_cast<double>(face.advance(glyph)), 1) << int{ch};
        EXPECT_EQ(font->getGlyphWidth(glyph, 0, false, 0), face.advance(glyph)) << int{ch};
        EXPECT_NE(font->getType1CharCode(ch, 0), 0) << int{ch};
    }
    EXPECT_GT(compared, 250);
    EXPECT_GT(font->metrics().records().size(), 700U);
}

INSTANTIATE_TEST_SUITE_P(Fonts, PackagedAFM, testing::Values("LMRoman10", "NimbusSans", "C059"));

} // namespace
} // namespace KWFontService_NS
