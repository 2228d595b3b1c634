#include "fonts/SfntFixture.h"

#include "registry/FS_FontService.h"

#include <KWFontService17/FS_LogFont.h>

#include <unicode/locid.h>

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

constexpr std::uint16_t kEnglish = 1033;
constexpr std::uint16_t kGerman = 1031;

class SymbolNames : public testing::Test {
protected:
    bool symbolic(std::vector<NameRecord> records) {
        TestFont file = TestFont::latin();
        file.name.records = std::move(records);
        MemoryFont font(file.build());
        EXPECT_TRUE(font.scan()) << font.complaint();
        return font.info().names().symbolNamesOnly();
    }
};

TEST_F(SymbolNames, ARecordOfANameThatIsNotKeptCountsAsWell) {
    EXPECT_FALSE(symbolic({windowsName(1, u"Signs", kEnglish, 0), windowsName(5, u"1.0")}));
    EXPECT_TRUE(symbolic({windowsName(5, u"1.0", kEnglish, 0), macName(1, "Signs")}));
}

TEST_F(SymbolNames, RecordsThatAreSkippedDoNotCount) {
    EXPECT_TRUE(symbolic({windowsName(1, u"Signs", kEnglish, 0), windowsName(1, u"Text", 0, 1),
                          windowsName(1, u"Full", kEnglish, 10), macName(1, "Signs")}));
}

TEST(TrueTypeScan, AMissingOS2IsNotToleratedInOpenTypeOfCIDs) {
    class CidTyped : public FS_TrueType {
    public:
        using FS_TrueType::FS_TrueType;
        FS_FontFileType getFontFileType(int) const override { return FS_FILETYPE_OPENTYPE_CID; }
    };
    TestFont file = TestFont::openType();
    EXPECT_EQ(scanComplaint<CidTyped>(file.without("OS/2").build()),
              fileError("'OS/2' table not found"));
}

TEST(TrueTypeScan, TheFixedTablesAreReadWholeWhateverTheirRecordsSay) {
    SfntBuilder sfnt = TestFont::latin().sfnt();
    for (const char* tag : {"head", "hhea", "post"})
        sfnt.lie(tag, {.length = 1});
    MemoryFont font(sfnt.build());
    EXPECT_TRUE(font.scan()) << font.complaint();
    EXPECT_EQ(font->getUnitsPerEm(0), 1000);
}

TEST(TrueTypeLoad, ABadGlyphClassDefinitionLeavesTheMarkAttachmentUnread) {
    TestFont file = TestFont::latin();
    file.with("GDEF",
              Gdef{.glyphClassDef = Bytes{0, 3}, .markAttachClassDef = classDefFormat2({{2, 2, 1}})}
                  .build());
    MemoryFont font(file.build());
    ASSERT_TRUE(font.scan());
    EXPECT_FALSE(font.load());
    EXPECT_FALSE(font.info().tables().gdef.markAttachClass);
}

TEST(TrueTypeLoad, AMaxpOfThreeBytesIsAReadErrorWhateverItsVersion) {
    TestFont file = TestFont::latin();
    SfntBuilder sfnt = file.sfnt();
    sfnt.drop("maxp").table("maxp", Bytes{0, 0, 0x50}).inGivenOrder().unpadded();
    EXPECT_EQ(loadComplaint(sfnt.build()), readError("'maxp' table read error"));
}

TEST(TrueTypeStyle, TheLogicalFontTakesTheDefaultNamesWithoutFallback) {
    TestFont file = TestFont::latin();
    file.name.records = {windowsName(1, u"Deutsch", kGerman), windowsName(4, u"Voll", kGerman),
                         windowsName(6, u"English-PS")};
    UErrorCode status = U_ZERO_ERROR;
    const icu::Locale before = icu::Locale::getDefault();
    icu::Locale::setDefault(icu::Locale::getUS(), status);
    MemoryFont font(file.build());
    const bool ok = font.scan();
    icu::Locale::setDefault(before, status);
    ASSERT_TRUE(ok) << font.complaint();
    FS_EnumLogFontEx record;
    ASSERT_TRUE(font->getLogFont(record, 0));
    EXPECT_EQ(font->getFamilyName(0, 0), UnicodeString("Deutsch"));
    EXPECT_EQ(record.getFaceName(), UnicodeString("English-PS"));
    EXPECT_TRUE(record.getFullName().isEmpty());
}

TEST(TrueTypeStyle, ThePreferredFamilyIsLeftOutWhereItIsNotInUse) {
    TestFont file = TestFont::latin();
    file.name.records.push_back(windowsName(16, u"Preferred"));
    MemoryFont font(file.build());
    ASSERT_TRUE(font.scan());
    FS_FontService& service = *getFontService(nullptr, nullptr, nullptr);
    service.usePreferredFamily = false;
    FS_EnumLogFontEx record;
    EXPECT_TRUE(font->getLogFont(record, 0));
    service.usePreferredFamily = true;
    EXPECT_EQ(record.getFaceName(), UnicodeString("KWTest Latin"));
}

} // namespace
} // namespace KWFontService_NS
