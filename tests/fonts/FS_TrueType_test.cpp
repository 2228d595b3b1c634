#include "fonts/FontTyping.h"
#include "fonts/SfntFixture.h"

#include <KWFontService17/FS_LogFont.h>

#include <gtest/gtest.h>

#include <sstream>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

TEST(TrueType, IsATrueTypeFont) {
    MemoryFont font(TestFont::latin().build());
    ASSERT_TRUE(font.scanAndLoad());
    EXPECT_EQ(font->getFontFileType(0), 5);
    EXPECT_FALSE(font->isType1Font(0));
    EXPECT_TRUE(font->isTrueTypeFont(0));
    EXPECT_FALSE(font->isType1OrNoCID(0));
    EXPECT_TRUE(font->isTrueTypeOrCID(0));
    EXPECT_FALSE(font->isOpenType());
    EXPECT_FALSE(font->isFontCollection());
    EXPECT_EQ(font->getFontCount(), 1);
    EXPECT_FALSE(font->isEmbeddedFont());
}

TEST(TrueType, ASingleFaceAnswersForEveryIndex) {
    MemoryFont font(TestFont::latin().build());
    ASSERT_TRUE(font.scanAndLoad());
    EXPECT_EQ(font->getUnitsPerEm(0), 1000);
    EXPECT_EQ(font->getUnitsPerEm(3), 1000);
}

TEST(TrueType, SettingThePostScriptNameReplacesTheNeutralOne) {
    MemoryFont font(TestFont::latin().build());
    ASSERT_TRUE(font.scanAndLoad());
    const UnicodeString own = font->getPostScriptName(1033, 0);
    font->setPostScriptName("Unique-Name", 0);
    EXPECT_EQ(font->getPostScriptName(0, 0), UnicodeString("Unique-Name"));
    EXPECT_EQ(font->getPostScriptName(1033, 0), own);
}

TEST(TrueType, AFontMayBeSaidToHaveVerticalForms) {
    MemoryFont font(TestFont::latin().build());
    ASSERT_TRUE(font.scanAndLoad());
    EXPECT_FALSE(font->hasVerticalGlyph(0));
    font->setHasVerticalGlyph(0);
    EXPECT_TRUE(font->hasVerticalGlyph(0));
}

TEST(TrueType, EudcLinkIsKept) {
    MemoryFont font(TestFont::latin().build());
    EXPECT_EQ(font->getEudcFont(0), FS_FontRef());
    font->setEudcFont({&*font, 2}, 0);
    EXPECT_EQ(font->getEudcFont(0), (FS_FontRef{&*font, 2}));
}

class LogFontTest : public testing::Test {
protected:
    TestFont file = TestFont::latin();
    FS_EnumLogFontEx logFont() {
        MemoryFont font(file.build());
        EXPECT_TRUE(font.scan()) << font.complaint();
        FS_EnumLogFontEx record;
        EXPECT_TRUE(font->getLogFont(record, 0));
        return record;
    }
};

TEST_F(LogFontTest, IsFamilyFullNameAndStyle) {
    file.os2.usWeightClass = 700;
    file.os2.fsSelection = 1;
    const FS_EnumLogFontEx record = logFont();
    EXPECT_EQ(record.getFaceName(), UnicodeString("KWTest Latin"));
    EXPECT_EQ(record.getFullName(), UnicodeString("KWTest Latin Regular"));
    EXPECT_EQ(record.getWeight(), 700);
    EXPECT_TRUE(record.isItalic());
}

TEST_F(LogFontTest, WithoutAFamilyIsThePostScriptName) {
    file.name = {.records = {windowsName(6, u"Only-PS")}};
    EXPECT_EQ(logFont().getFaceName(), UnicodeString("Only-PS"));
}

TEST_F(LogFontTest, APreferredFamilyGoesFirst) {
    file.name.records.push_back(windowsName(16, u"Preferred"));
    EXPECT_EQ(logFont().getFaceName(), UnicodeString("Preferred"));
}

TEST(LogFont, OrdersByNameThenWeightThenItalic) {
    const FS_LogFont a("A", 400, false);
    EXPECT_TRUE(a < FS_LogFont("B", 100, false));
    EXPECT_TRUE(a < FS_LogFont("a", 100, false)) << "nothing is normalised";
    EXPECT_TRUE(a < FS_LogFont("A", 700, false));
    EXPECT_TRUE(a < FS_LogFont("A", 400, true));
    EXPECT_FALSE(a < FS_LogFont("A", 400, false));
    EXPECT_FALSE(FS_LogFont("B", 100, false) < a);
}

TEST(LogFont, DefaultsToWeight400Upright) {
    const FS_LogFont font;
    EXPECT_EQ(font.getWeight(), 400);
    EXPECT_FALSE(font.isItalic());
    EXPECT_TRUE(font.getFaceName().isEmpty());
    const FS_EnumLogFontEx extended(FS_LogFont("A", 300, true));
    EXPECT_EQ(extended.getWeight(), 300);
    EXPECT_TRUE(extended.getFullName().isEmpty());
}

TEST(FontTyping, TheSignatureDecidesAndTheStreamStays) {
    std::istringstream otto("..OTTO....");
    otto.seekg(2);
    EXPECT_EQ(sfntTypeOf(otto), FS_FILETYPE_OPENTYPE);
    EXPECT_EQ(otto.tellg(), std::streampos(2));
    std::istringstream other("\0\1\0\0");
    EXPECT_EQ(sfntTypeOf(other), FS_FILETYPE_TRUETYPE);
    std::istringstream cut("OT");
    EXPECT_EQ(sfntTypeOf(cut), FS_FILETYPE_TRUETYPE);
    EXPECT_EQ(cut.tellg(), std::streampos(0));
}

TEST(FontTyping, EachTypeHasItsClass) {
    EXPECT_EQ(createFontObject(KWUri(), FS_FILETYPE_TRUETYPE)->getClassId(), FS_CLASSID_TRUETYPE);
    EXPECT_EQ(createFontObject(KWUri(), FS_FILETYPE_OPENTYPE)->getClassId(), FS_CLASSID_OPENTYPE);
    EXPECT_EQ(createFontObject(KWUri(), FS_FILETYPE_OPENTYPE_CID)->getClassId(),
              FS_CLASSID_OPENTYPE);
    EXPECT_EQ(createFontObject(KWUri(), FS_FILETYPE_COLLECTION)->getClassId(),
              FS_CLASSID_COLLECTION);
    EXPECT_EQ(createFontObject(KWUri(), FS_FILETYPE_DFONT)->getClassId(), FS_CLASSID_DFONT);
    EXPECT_EQ(createFontObject(KWUri(), FS_FILETYPE_WOFF)->getClassId(), FS_CLASSID_WOFF);
    EXPECT_FALSE(createFontObject(KWUri(), FS_FILETYPE_UNKNOWN));
    EXPECT_FALSE(createFontObject(KWUri(), FS_FILETYPE_EXTRA));
}

} // namespace
} // namespace KWFontService_NS
