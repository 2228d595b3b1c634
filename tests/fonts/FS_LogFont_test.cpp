#include <KWFontService17/FS_LogFont.h>
#include <KWFontService17/FS_WindowsRecords.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace {

using namespace KWFontService_NS;

template <typename Unit, std::size_t N>
void put(Unit (&field)[N], std::u16string_view text) {
    std::transform(text.begin(), text.end(), field,
                   [](char16_t unit) { return static_cast<Unit>(unit); });
}

TEST(LogFont, DefaultsToAnUprightFontOfOrdinaryWeight) {
    const FS_LogFont font;
    EXPECT_EQ(font.getWeight(), 400);
    EXPECT_FALSE(font.isItalic());
    EXPECT_TRUE(font.getFaceName().isEmpty());
}

TEST(LogFont, TakesWeightSlantAndNameOfAWindowsRecord) {
    tagLOGFONTW record{};
    record.lfHeight = -12;
    record.lfWeight = 700;
    record.lfItalic = 255;
    put(record.lfFaceName, u"\uFF2D\uFF33 Gothic");
    const FS_LogFont font(record);
    EXPECT_EQ(font.getWeight(), 700);
    EXPECT_TRUE(font.isItalic());
    EXPECT_EQ(font.getFaceName(), UnicodeString(u"\uFF2D\uFF33 Gothic"));
    record.lfItalic = 0;
    EXPECT_FALSE(FS_LogFont(record).isItalic());
}

TEST(LogFont, OneLeadingMarkOfAVerticalFaceIsDropped) {
    tagLOGFONTW record{};
    put(record.lfFaceName, u"@Gothic");
    EXPECT_EQ(FS_LogFont(record).getFaceName(), UnicodeString(u"Gothic"));
    put(record.lfFaceName, u"@@A@");
    record.lfFaceName[4] = 0;
    EXPECT_EQ(FS_LogFont(record).getFaceName(), UnicodeString(u"@A@"));
}

TEST(LogFont, ANameThatFillsItsFieldNeedsNoNul) {
    tagLOGFONTW record{};
    put(record.lfFaceName, u"12345678901234567890123456789012");
    EXPECT_EQ(FS_LogFont(record).getFaceName(), UnicodeString(u"12345678901234567890123456789012"));
    EXPECT_TRUE(FS_LogFont(tagLOGFONTW{}).getFaceName().isEmpty());
}

TEST(LogFont, IsOrderedByNameThenWeightThenSlant) {
    const FS_LogFont a(u"A", 700, true);
    const FS_LogFont b(u"B", 400, false);
    EXPECT_TRUE(a < b);
    EXPECT_FALSE(b < a);
    EXPECT_TRUE(FS_LogFont(u"B", 300, true) < b);
    EXPECT_TRUE(b < FS_LogFont(u"B", 400, true));
    const FS_LogFont same(u"B", 400, false);
    EXPECT_FALSE(b < same || same < b);
}

TEST(EnumLogFontEx, TakesTheFullNameOfAWindowsRecordAsWell) {
    tagENUMLOGFONTEXW record{};
    record.elfLogFont.lfWeight = 300;
    put(record.elfLogFont.lfFaceName, u"@Mincho");
    put(record.elfFullName, u"@Mincho Light");
    put(record.elfStyle, u"Light");
    const FS_EnumLogFontEx font(record);
    EXPECT_EQ(font.getWeight(), 300);
    EXPECT_EQ(font.getFaceName(), UnicodeString(u"Mincho"));
    EXPECT_EQ(font.getFullName(), UnicodeString(u"Mincho Light"));
}

TEST(EnumLogFontEx, DefaultsToARecordThatWasNotEnumerated) {
    for (const FS_EnumLogFontEx& font :
         {FS_EnumLogFontEx(), FS_EnumLogFontEx(tagENUMLOGFONTEXW{})}) {
        EXPECT_TRUE(font.getFullName().isEmpty());
        EXPECT_EQ(font.getFileType(), 0);
        EXPECT_EQ(font.getEmbedding(), 0);
        EXPECT_EQ(font.getFlags(), 0U);
    }
    EXPECT_EQ(FS_EnumLogFontEx().getWeight(), 400);
}

TEST(EnumLogFontEx, TakesALogicalFontAndHasTheDefaultsForTheRest) {
    const FS_EnumLogFontEx font(FS_LogFont(u"A", 300, true));
    EXPECT_EQ(font.getFaceName(), UnicodeString(u"A"));
    EXPECT_EQ(font.getWeight(), 300);
    EXPECT_TRUE(font.isItalic());
    EXPECT_TRUE(font.getFullName().isEmpty());
    EXPECT_EQ(font.getFileType(), 0);
}

TEST(EnumLogFontEx, OneLeadingMarkOfEachNameIsDropped) {
    tagENUMLOGFONTEXW record{};
    put(record.elfLogFont.lfFaceName, u"@@A");
    put(record.elfFullName, u"@@B");
    const FS_EnumLogFontEx font(record);
    EXPECT_EQ(font.getFaceName(), UnicodeString(u"@A"));
    EXPECT_EQ(font.getFullName(), UnicodeString(u"@B"));
}

TEST(LogFont, NothingIsNormalisedForTheOrder) {
    EXPECT_TRUE(FS_LogFont(u"B", 400, false) < FS_LogFont(u"a", 400, false));
    EXPECT_TRUE(FS_LogFont(u"A B", 400, false) < FS_LogFont(u"AB", 400, false));
}

TEST(LogFont, CopiesAreTheSame) {
    const FS_LogFont font(u"B", 300, true);
    const FS_LogFont copy(font);
    FS_LogFont assigned;
    assigned = font;
    for (const FS_LogFont& other : {copy, assigned})
        EXPECT_FALSE(font < other || other < font);
}

} // namespace
