#include "fonts/FS_Type1AFM.h"
#include "registry/FolderScan.h"
#include "registry/FontFileLoader.h"
#include "registry/RegistryFixture.h"
#include "support/MetricsFiles.h"
#include "support/Type1Font.h"

#include <KWFontService17/FS_ExtraFontManager.h>
#include <KWFontService17/FS_FontInfo.h>

#include <KWCommon15/KWMemStream.h>

#include <gmock/gmock.h>

// Type 1 fonts in the scan, in the lookup and among the fonts of a document.

namespace {

using namespace KWFontService_NS;
using namespace KWTest;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class Type1Fonts : public RegistryTest {
protected:
    void write(const std::string& name, const AfmFile& file) { files().write(name, file.build()); }
    void write(const std::string& name, const PfmFile& file) { files().write(name, file.build()); }
    void write(const std::string& name, const Type1Font& font) { files().write(name, font.pfb()); }
    FS_FontFolder& scan() {
        FS_FontFolder& folder = addFolder("", false);
        scanFolders(service());
        return folder;
    }
};

AfmFile regular() {
    AfmFile file = AfmFile::latin();
    file.fontName = "KWTest-Regular";
    file.fullName = "KWTest Regular";
    file.weight = "Regular";
    return file;
}

TEST_F(Type1Fonts, AreObjectsOfTheirMetricsFiles) {
    const auto typeOf = [&](std::string_view name, FS_FontFileType type) {
        const auto font = createFontObject(nullptr, FS_FontFile(files().uri(name)), type);
        return font ? int{font->getFontFileType(0)} : 0;
    };
    EXPECT_EQ(typeOf("a.afm", FS_FILETYPE_AFM), 3);
    EXPECT_EQ(typeOf("a.pfm", FS_FILETYPE_PFM), 4);
}

TEST_F(Type1Fonts, AreFoundByTheNamesOfTheMetricsFileAndByItsFileName) {
    write("face.afm", AfmFile::latin());
    Type1Font printer = Type1Font::latin();
    printer.familyName = "Printed";
    write("face.pfb", printer);
    scan();
    EXPECT_THAT(fontFiles(), ElementsAre("face.afm")) << "the printer font is no font by itself";
    EXPECT_TRUE(service().errors.empty());
    for (const char16_t* name :
         {u"KWTest", u"kw test", u"KWTest Bold", u"KWTest-Bold", u"face", u"FACE.AFM"})
        EXPECT_EQ(found(name, 700), "face.afm") << icu::UnicodeString(name).length();
    EXPECT_EQ(found(u"Printed"), "");
    EXPECT_EQ(found(u"face.pfb"), "");
}

TEST_F(Type1Fonts, APrinterFontAloneIsNotFound) {
    write("face.pfb", Type1Font::latin());
    files().write("face.pfa", Type1Font::latin().pfa());
    scan();
    EXPECT_THAT(fontFiles(), IsEmpty());
}

TEST_F(Type1Fonts, OfAFamilyAreToldApartByStyle) {
    write("r.afm", regular());
    write("b.afm", AfmFile::latin());
    AfmFile italic = regular();
    italic.italicAngle = "-12";
    write("i.afm", italic);
    scan();
    EXPECT_EQ(found(u"KWTest"), "r.afm");
    EXPECT_EQ(found(u"KWTest", 700), "b.afm");
    EXPECT_EQ(found(u"KWTest", 400, true), "i.afm");
}

TEST_F(Type1Fonts, OfAPfmFileAreFoundByItsFaceName) {
    write("face.pfm", PfmFile::latin());
    scan();
    EXPECT_EQ(found(u"KWTest", 700), "face.pfm");
    EXPECT_EQ(found(u"KWTest-Bold"), "face.pfm");
    EXPECT_EQ(found(u"PostScript"), "") << "the device is no name of a font";
}

TEST_F(Type1Fonts, OfAPfmFileAreFoundByTheFullNameOfThePrinterFont) {
    write("face.pfm", PfmFile::latin());
    Type1Font printer = Type1Font::latin();
    printer.fullName = "KWTest Printed";
    write("face.pfb", printer);
    scan();
    EXPECT_EQ(found(u"KWTest Printed"), "face.pfm");
}

TEST_F(Type1Fonts, OfAnEmptyMetricsFileAreFoundByItsFileNameAlone) {
    files().write("empty.afm", "");
    scan();
    EXPECT_THAT(fontFiles(), ElementsAre("empty.afm"));
    EXPECT_TRUE(service().errors.empty());
    EXPECT_THAT(service().fontPool.byName, IsEmpty());
    EXPECT_EQ(found(u"empty.afm"), "empty.afm");
}

TEST_F(Type1Fonts, WithBothMetricsFilesAreDeliberatelyLoadedTwice) {
    write("face.afm", AfmFile::latin());
    write("face.pfm", PfmFile::latin());
    write("face.pfb", Type1Font::latin());
    scan();
    EXPECT_THAT(fontFiles(), UnorderedElementsAre("face.afm", "face.pfm"));
    EXPECT_EQ(found(u"face.pfm"), "face.pfm");
    EXPECT_EQ(found(u"KWTest", 700), fontFiles()[0]) << "the names stay with the first";
}

TEST_F(Type1Fonts, GetWhatTheConfigurationSaysOfTheirFiles) {
    write("face.afm", AfmFile::latin());
    files().write("list.txt", "0041;B\n");
    FS_FontFolder& folder = addFolder("", false);
    folder.optionsOf(u"face.afm").glyphList = files().uri("list.txt");
    scanFolders(service());
    ASSERT_THAT(fontFiles(), ElementsAre("face.afm"));
    FS_BaseFont& font = *service().fontPool.fonts[0];
    KWError error;
    ASSERT_TRUE(font.loadFont(error, 0, nullptr));
    EXPECT_EQ(font.getTextWidth(u"A", -1000, false, nullptr, 0), 650);
}

TEST_F(Type1Fonts, WithABrokenPrinterFontAreTakenAndTheComplaintIsNoted) {
    write("face.afm", AfmFile::latin());
    files().write("face.pfb", "no font");
    scan();
    EXPECT_EQ(found(u"KWTest"), "face.afm");
    ASSERT_EQ(service().errors.size(), 1U);
    EXPECT_EQ(service().errors.get(0)->getCode(), 1928);
    EXPECT_TRUE(service().errors.get(0)->getMessage().endsWith(files().text("face.pfb")));
}

TEST_F(Type1Fonts, OfABrokenMetricsFileAreNotTakenAndTheComplaintIsNoted) {
    files().write("a.afm", "EndKernPairs\n");
    files().write("b.pfm", "short");
    scan();
    EXPECT_THAT(fontFiles(), IsEmpty());
    EXPECT_EQ(service().errors.size(), 2U);
}

TEST_F(Type1Fonts, OfADocumentAreFoundByItsNamesForThem) {
    write("face.afm", AfmFile::latin());
    write("face.pfb", Type1Font::latin());
    FS_ExtraFontManager manager;
    KWError error;
    ASSERT_EQ(manager.appendExtraFont(files().text("face.afm"), u"Mine", 0, -1,
                                      FS_FILETYPE_REQUEST_TYPE1, &error),
              0);
    FS_FontInfo info;
    ASSERT_TRUE(info.createFont(u"Mine", 0, false, manager.getExtraFonts(), false));
    EXPECT_EQ(info.getFontFileType2(), FS_FILETYPE_AFM);
    EXPECT_TRUE(info.isType1Font());
    EXPECT_EQ(info.getTextWidth(u"AB", -1000, false, nullptr), 1250);
    EXPECT_EQ(info.getGlyphID('B', false), 2);
    EXPECT_EQ(info.getType1CharCode('A'), 'A');
    EXPECT_FALSE(info.hasVerticalGlyph());
    KWCommonNS::KWMemStream program;
    int length1 = 0;
    int length2 = 0;
    int length3 = 0;
    EXPECT_TRUE(info.getType1FontStream(program, length1, length2, length3));
    EXPECT_GT(length1, 0);
    EXPECT_GT(program.length(), length1);
}

} // namespace
