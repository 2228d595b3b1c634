#include "fonts/FS_Type1PFA.h"
#include "fonts/FS_Type1PFB.h"
#include "support/TempDir.h"
#include "support/Type1Font.h"
#include "support/Utf8.h"

#include <KWCommon15/KWPtr.h>

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace KWFontService_NS {
namespace {

using KWCommonNS::KWPtr;
using KWTest::Bytes;
using KWTest::Type1Font;
using KWTest::utf8;

const KWUri kUri("file:///fonts/test.pfb");

template <class Font>
KWPtr<Font> scanned(const Bytes& file) {
    KWPtr<Font> font(new Font(kUri));
    KWError error;
    std::istringstream stream(file.str());
    EXPECT_TRUE(font->scanFont(error, stream));
    EXPECT_FALSE(error.isError());
    return font;
}
KWPtr<FS_Type1PFB> pfb(const Type1Font& font) {
    return scanned<FS_Type1PFB>(font.pfb());
}

TEST(Type1Printer, ItsKindIsThatOfItsFile) {
    const KWPtr<FS_BaseFont> pfaFont(new FS_Type1PFA(kUri));
    const KWPtr<FS_BaseFont> pfbFont(new FS_Type1PFB(kUri));
    EXPECT_EQ(pfaFont->getFontFileType(0), 1);
    EXPECT_EQ(pfbFont->getFontFileType(0), 2);
    EXPECT_EQ(pfaFont->getClassId(), 0xB5FC60DEU);
    EXPECT_EQ(pfbFont->getClassId(), 0x5D163695U);
    for (const auto& font : {pfaFont, pfbFont}) {
        EXPECT_TRUE(font->isKindOf(font->getClassId()));
        EXPECT_TRUE(font->isKindOf(0xCE603D8D));
        EXPECT_TRUE(font->isKindOf(FS_CLASSID_BASE_FONT));
        EXPECT_FALSE(font->isKindOf(FS_CLASSID_TYPE1));
        EXPECT_TRUE(font->isType1Font(0));
        EXPECT_TRUE(font->isType1OrNoCID(0));
        EXPECT_FALSE(font->isTrueTypeFont(0));
        EXPECT_FALSE(font->isTrueTypeOrCID(0));
    }
    EXPECT_FALSE(pfaFont->isKindOf(pfbFont->getClassId()));
}

TEST(Type1Printer, AnswersWhatTheScanRead) {
    Type1Font built = Type1Font::latin();
    built.italicAngle = "-12";
    built.extraLines = {"/IsFixedPitch true def"};
    const auto font = pfb(built);
    EXPECT_EQ(utf8(font->getFamilyName(0, 0)), "KWTest");
    EXPECT_EQ(utf8(font->getFullFontName(1033, 0)), "KWTest Bold");
    EXPECT_EQ(utf8(font->getSubFamilyName(0, 0)), "Bold");
    EXPECT_EQ(font->getWeight(0), 700);
    EXPECT_TRUE(font->isItalic(0));
    EXPECT_TRUE(font->isFixedWidthFont(0));
    EXPECT_FALSE(font->isSymbolicFont(0));
    EXPECT_EQ(font->head().underlinePosition, -100);
    EXPECT_TRUE(scanned<FS_Type1PFA>(Type1Font::symbols().pfa())->isSymbolicFont(0));
    EXPECT_FALSE(pfb(Type1Font::latin())->isItalic(0));
}

TEST(Type1Printer, AFontCalledLikeItsFamilyIsCalledByItsWeight) {
    Type1Font built = Type1Font::latin();
    built.fullName = built.familyName;
    built.weight = "Semi Bold";
    EXPECT_EQ(utf8(pfb(built)->getSubFamilyName(0, 0)), "Semi Bold");
}

TEST(Type1Printer, BeforeTheScanItHasNothing) {
    const KWPtr<FS_Type1PFA> font(new FS_Type1PFA(kUri));
    EXPECT_EQ(utf8(font->getFamilyName(0, 0)), "");
    EXPECT_EQ(utf8(font->getSubFamilyName(0, 0)), "");
    EXPECT_EQ(font->getWeight(0), 0);
    EXPECT_EQ(font->getEmbedableCharCount(0), 0U);
    EXPECT_TRUE(font->metrics().records().empty());
}

template <class Font>
std::string scanMessage(const std::string& file, int code) {
    const KWTest::TempDir folder;
    const KWPtr<Font> font(new Font(kUri));
    KWError error;
    std::istringstream stream(file);
    EXPECT_FALSE(font->scanFont(error, stream));
    EXPECT_EQ(error.getCode(), code);
    return utf8(error.getMessage());
}

std::string path() {
    return utf8(kUri.getLocalPath());
}

TEST(Type1Printer, ErrorsEndWithThePathOfTheFile) {
    EXPECT_EQ(scanMessage<FS_Type1PFB>("", 1921), "Font read error.\n" + path());
    EXPECT_EQ(scanMessage<FS_Type1PFB>("%!PS-AdobeFont", 1928),
              "Font file error: Header bad signature: 25\n" + path());
    EXPECT_EQ(scanMessage<FS_Type1PFB>(KWTest::pfbSegment(2, {}).str(), 1928),
              "Font file error: Header bad segmentType: 02\n" + path());
    EXPECT_EQ(scanMessage<FS_Type1PFB>(std::string("\x80\x01\x09\0\0\0", 6), 1928),
              "Font file error: SegmentData read error\n" + path());
    EXPECT_EQ(scanMessage<FS_Type1PFA>("/FontBBox {}\n", 1928), "Font file error.\n" + path());
}

TEST(Type1Printer, AFailedScanLeavesWhatWasKnown) {
    const auto font = pfb(Type1Font::latin());
    KWError error;
    std::istringstream stream(
        KWTest::pfbSegment(1, Bytes::ofText("/FamilyName (B)\n/FontBBox {}\n")).str());
    EXPECT_FALSE(font->scanFont(error, stream));
    EXPECT_EQ(utf8(font->getFamilyName(0, 0)), "KWTest");
}

} // namespace
} // namespace KWFontService_NS
