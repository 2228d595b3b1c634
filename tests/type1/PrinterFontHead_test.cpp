#include "type1/PrinterFontHead.h"

#include "support/Type1Font.h"
#include "support/Utf8.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace KWFontService_NS {
namespace {

using KWTest::Bytes;
using KWTest::pfbSegment;
using KWTest::Type1Font;
using KWTest::utf8;

std::optional<Type1FileError> scanPFA(const std::string& text, PrinterFontHead& head) {
    std::istringstream stream(text);
    return scanPFAHead(stream, head);
}
std::optional<Type1FileError> scanPFB(const Bytes& file, PrinterFontHead& head) {
    std::istringstream stream(file.str());
    return scanPFBHead(stream, head);
}

/// The head of a text that is read without error.
PrinterFontHead pfa(const std::string& text) {
    PrinterFontHead head;
    EXPECT_EQ(scanPFA(text, head), std::nullopt) << text;
    return head;
}
PrinterFontHead pfb(const std::string& text) {
    PrinterFontHead head;
    EXPECT_EQ(scanPFB(pfbSegment(1, Bytes::ofText(text)), head), std::nullopt) << text;
    return head;
}

// --- hexadecimal text ---------------------------------------------------------------------------

TEST(PFAHead, EveryKeyIsRead) {
    const PrinterFontHead head = pfa("%!PS-AdobeFont-1.0\n"
                                     "/FontName /Test-Bold def\n"
                                     "/FullName Test Bold\n"
                                     "/FamilyName Test\n"
                                     "/Weight SemiBold\n"
                                     "/ItalicAngle -12.5 def\n"
                                     "/IsFixedPitch TRUE def\n"
                                     "/UnderlinePosition -101 def\n"
                                     "/UnderlineThickness 51 def\n"
                                     "/Encoding StandardEncoding def\n"
                                     "/FontBBox {-50 -250 1050 750} readonly def\n"
                                     "currentfile eexec\n");
    EXPECT_EQ(utf8(head.postScriptName), "Test-Bold");
    EXPECT_EQ(utf8(head.fullName), "Test Bold");
    EXPECT_EQ(utf8(head.familyName), "Test");
    EXPECT_EQ(utf8(head.weightName), "SemiBold");
    EXPECT_EQ(head.weight, 600);
    EXPECT_EQ(head.italicAngle, -12.5F);
    EXPECT_TRUE(head.isFixedPitch);
    EXPECT_EQ(head.underlinePosition, -101);
    EXPECT_EQ(head.underlineThickness, 51);
    EXPECT_EQ(utf8(head.encodingName), "StandardEncoding");
    EXPECT_TRUE(head.isStandardEncoding);
    EXPECT_FALSE(head.isSymbolic);
    EXPECT_EQ(head.fontBBox, (Type1Box{-50, -250, 1050, 750}));
}

TEST(PFAHead, AFontWithoutKeysHasTheDefaults) {
    const PrinterFontHead head = pfa("");
    EXPECT_TRUE(head.postScriptName.isEmpty());
    EXPECT_EQ(head.weight, 0);
    EXPECT_TRUE(head.isStandardEncoding);
    EXPECT_FALSE(head.isSymbolic);
    EXPECT_EQ(head.fontBBox, Type1Box());
}

// Strings are as they stand in the file.
TEST(PFAHead, StringsKeepTheirParentheses) {
    EXPECT_EQ(utf8(pfa("/FullName (Test Bold) readonly def\n").fullName), "(Test Bold)");
    EXPECT_EQ(pfa("/Weight (Bold) readonly def\n").weight, 700);
}

TEST(PFAHead, AValueLosesWhatDefinesIt) {
    for (const char* end : {"def", "readonly def", "ND", "|-", "  readonly \t def\r"})
        EXPECT_EQ(utf8(pfa("/FamilyName Test " + std::string(end) + "\n").familyName), "Test")
            << end;
    EXPECT_EQ(utf8(pfa("/FamilyName (Test)readonly def\n").familyName), "(Test)");
    EXPECT_EQ(utf8(pfa("/FamilyName (Test)def\n").familyName), "(Test)");
    EXPECT_EQ(utf8(pfa("/FamilyName undef\n").familyName), "undef");
    EXPECT_EQ(utf8(pfa("/FamilyName readonly\n").familyName), "readonly");
    EXPECT_EQ(utf8(pfa("/FamilyName def\n").familyName), "");
}

TEST(PFAHead, AnEncodingOfTheFontsOwnIsNamedByItsLineAndSymbolic) {
    const PrinterFontHead head = pfa("/Encoding 256 array\ndup 32 /space put\n");
    EXPECT_EQ(utf8(head.encodingName), "256 array");
    EXPECT_FALSE(head.isStandardEncoding);
    EXPECT_TRUE(head.isSymbolic);
}

TEST(PFAHead, AnEmptyEncodingNameIsStandard) {
    const PrinterFontHead head = pfa("/Encoding def\n");
    EXPECT_TRUE(head.isStandardEncoding);
    EXPECT_FALSE(head.isSymbolic);
}

TEST(PFAHead, TheScanStopsAtCurrentfile) {
    EXPECT_EQ(utf8(pfa("/FamilyName A\ndup currentfile eexec\n/FamilyName B\n").familyName), "A");
    EXPECT_EQ(utf8(pfa("xcurrentfilex\n/FamilyName B\n").familyName), "");
}

TEST(PFAHead, OnlyALineWithoutAKeyStopsTheScan) {
    const PrinterFontHead head = pfa("/FullName currentfile\n/FamilyName B\n");
    EXPECT_EQ(utf8(head.fullName), "currentfile");
    EXPECT_EQ(utf8(head.familyName), "B");
}

TEST(PFAHead, WithoutCurrentfileTheFileIsReadToItsEnd) {
    EXPECT_EQ(utf8(pfa("%!\n\n \t\r\n/FamilyName B").familyName), "B");
}

TEST(PFAHead, LinesEndAtLFAlone) {
    EXPECT_EQ(utf8(pfa("%!\r\n/FamilyName B\r\n").familyName), "B");
    EXPECT_EQ(utf8(pfa("%!\r/FamilyName B\rcurrentfile eexec\r").familyName), "");
}

TEST(PFAHead, KeysMayBeIndentedAndTheLastOneCounts) {
    EXPECT_EQ(utf8(pfa(" \t/FamilyName A\n/FamilyName B\n").familyName), "B");
    EXPECT_EQ(utf8(pfa("FamilyName A\n/familyname B\n/FamilyNames C\n").familyName), "");
}

TEST(PFAHead, ADelimiterEndsAKey) {
    EXPECT_EQ(pfa("/FontBBox{-5 -6 7 8}readonly def\n").fontBBox, (Type1Box{-5, -6, 7, 8}));
    EXPECT_EQ(utf8(pfa("/FontName/Test def\n").postScriptName), "Test");
    EXPECT_EQ(utf8(pfa("/FamilyName(Test)readonly def\n").familyName), "(Test)");
}

// Strictly a glued key is a word that nobody knows, so its value is a help alone.
TEST(PFAHead, AGluedKeyRefusesNoFontAndHidesNoEnd) {
    const PrinterFontHead head = pfa("/FontBBox{1 2 3}def\n/FamilyName B\n");
    EXPECT_EQ(head.fontBBox, Type1Box());
    EXPECT_EQ(utf8(head.familyName), "B");
    const PrinterFontHead ended = pfa("/FullName(currentfile)def\n/FamilyName B\n");
    EXPECT_EQ(utf8(ended.fullName), "(currentfile)");
    EXPECT_EQ(utf8(ended.familyName), "");
}

TEST(PFAHead, ABoxMayHaveBracketsOrNone) {
    for (const char* box : {"[1 2 3 4] def", "1 2 3 4 def", "{1 2 3 4", "{ 1 2 3 4 } readonly def"})
        EXPECT_EQ(pfa("/FontBBox " + std::string(box) + "\n").fontBBox, (Type1Box{1, 2, 3, 4}))
            << box;
}

TEST(PFAHead, ABoxThatIsNotFourNumbersIsAnErrorWithoutText) {
    for (const char* box : {"{1 2 3}", "{1 2 3 4 5}", "def", "{}"}) {
        PrinterFontHead head;
        const auto error = scanPFA("/FontBBox " + std::string(box) + "\n", head);
        ASSERT_TRUE(error) << box;
        EXPECT_EQ(error->code, 1928);
        EXPECT_TRUE(error->detail.isEmpty());
    }
}

// Fonts write "isFixedPitch".
TEST(PFAHead, TheKeyIsFixedPitchBeginsWithACapital) {
    EXPECT_FALSE(pfa("/isFixedPitch true def\n").isFixedPitch);
    EXPECT_TRUE(pfa("/IsFixedPitch xTrUe\n").isFixedPitch);
    EXPECT_FALSE(pfa("/IsFixedPitch false def\n").isFixedPitch);
}

TEST(PFAHead, OnlySoMuchOfALineCounts) {
    const std::string longName(std::size_t{1} << 20, 'x');
    const PrinterFontHead head = pfa("/FullName " + longName + "\n/FamilyName B\n");
    EXPECT_LE(head.fullName.length(), 65536);
    EXPECT_EQ(utf8(head.familyName), "B");
}

// --- segments -----------------------------------------------------------------------------------

TEST(PFBHead, EveryKeyIsRead) {
    Type1Font font = Type1Font::latin();
    font.weight = "Extra Light";
    font.italicAngle = "-7";
    font.extraLines = {"/IsFixedPitch true def"};
    PrinterFontHead head;
    ASSERT_EQ(scanPFB(font.pfb(), head), std::nullopt);
    EXPECT_EQ(utf8(head.postScriptName), "KWTest-Bold");
    EXPECT_EQ(utf8(head.fullName), "KWTest Bold");
    EXPECT_EQ(utf8(head.familyName), "KWTest");
    EXPECT_EQ(utf8(head.weightName), "Extra Light");
    EXPECT_EQ(head.weight, 200);
    EXPECT_EQ(head.italicAngle, -7);
    EXPECT_TRUE(head.isFixedPitch);
    EXPECT_EQ(head.underlinePosition, -100);
    EXPECT_EQ(head.underlineThickness, 50);
    EXPECT_EQ(utf8(head.encodingName), "StandardEncoding");
    EXPECT_TRUE(head.isStandardEncoding);
    EXPECT_FALSE(head.isSymbolic);
    EXPECT_EQ(head.fontBBox, (Type1Box{-50, -250, 1050, 750}));
}

TEST(PFBHead, LinesEndInCROrLFOrSeveral) {
    for (const char* lineEnd : {"\r", "\r\n", "\n\n", "\n\r\r"}) {
        const PrinterFontHead head =
            pfb("%!" + std::string(lineEnd) + "/FamilyName (A) def" + lineEnd + "/Weight (Bold)");
        EXPECT_EQ(utf8(head.familyName), "A");
        EXPECT_EQ(head.weight, 700);
    }
}

TEST(PFBHead, AnEncodingOfTheFontsOwnIsFontSpecific) {
    PrinterFontHead head;
    ASSERT_EQ(scanPFB(Type1Font::symbols().pfb(), head), std::nullopt);
    EXPECT_EQ(utf8(head.encodingName), "FontSpecific");
    EXPECT_FALSE(head.isStandardEncoding);
    EXPECT_TRUE(head.isSymbolic);
}

TEST(PFBHead, OnlyLinesThatBeginWithDupMakeAFontSymbolic) {
    EXPECT_FALSE(pfb("/Encoding 256 array\n dup 32 /space put\n").isSymbolic);
    EXPECT_TRUE(pfb("/Encoding StandardEncoding def\ndup 32 /space put\n").isSymbolic);
    EXPECT_TRUE(pfb("duplicate").isSymbolic);
}

TEST(PFBHead, AnEncodingIsNamedWhenDefFollows) {
    EXPECT_EQ(utf8(pfb("/Encoding ISOLatin1Encoding def\n").encodingName), "ISOLatin1Encoding");
    EXPECT_FALSE(pfb("/Encoding ISOLatin1Encoding def\n").isStandardEncoding);
    EXPECT_EQ(utf8(pfb("/Encoding StandardEncoding readonly def\n").encodingName), "FontSpecific");
    EXPECT_EQ(utf8(pfb("/Encoding StandardEncoding\n").encodingName), "FontSpecific");
}

TEST(PFBHead, AFontWithoutEncodingIsStandard) {
    EXPECT_TRUE(pfb("%!\n").isStandardEncoding);
}

TEST(PFBHead, AValueLiesBetweenItsBracketsOrIsAWord) {
    EXPECT_EQ(utf8(pfb("/FullName (A (B) C) readonly def\n").fullName), "A (B) C");
    EXPECT_EQ(utf8(pfb("/FullName  [A B]\n").fullName), "A B");
    EXPECT_EQ(utf8(pfb("/FullName {A B} (C)\n").fullName), "A B");
    EXPECT_EQ(utf8(pfb("/FullName(A) def\n").fullName), "A");
    EXPECT_EQ(utf8(pfb("/FullName (A B\n").fullName), "A B");
    EXPECT_EQ(utf8(pfb("/FullName A B\n").fullName), "A");
    EXPECT_EQ(utf8(pfb("/FullName\n").fullName), "");
    EXPECT_EQ(utf8(pfb("/FullName (\n").fullName), "");
}

TEST(PFBHead, AKeyIsTheRunOfLetters) {
    EXPECT_EQ(utf8(pfb("/FontName/Test def\n").postScriptName), "Test");
    EXPECT_EQ(utf8(pfb(" /FontName /Test def\n").postScriptName), "");
    EXPECT_EQ(utf8(pfb("/FontName2 /Test def\n").postScriptName), "2"); // the word behind the key
}

TEST(PFBHead, ABoxInBracketsHasFourNumbers) {
    EXPECT_EQ(pfb("/FontBBox[1 2 3 4]def\n").fontBBox, (Type1Box{1, 2, 3, 4}));
    EXPECT_EQ(pfb("/FontBBox 1 2 3 4 def\n").fontBBox, Type1Box());
    PrinterFontHead head;
    const auto error = scanPFB(pfbSegment(1, Bytes::ofText("/FontBBox {1 2}\n")), head);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code, 1928);
    EXPECT_EQ(utf8(error->detail), "FontBBox");
}

TEST(PFBHead, ABoxInParenthesesIsNoBox) {
    EXPECT_EQ(pfb("/FontBBox (x) def\n").fontBBox, Type1Box());
    EXPECT_EQ(pfb("/FontBBox (1 2 3 4) def\n").fontBBox, Type1Box());
}

TEST(PFBHead, OnlyTheFirstSegmentIsRead) {
    Bytes file = pfbSegment(1, Bytes::ofText("/FamilyName A\n"));
    file.bytes(pfbSegment(1, Bytes::ofText("/FamilyName B\n")).vector());
    PrinterFontHead head;
    EXPECT_EQ(scanPFB(file, head), std::nullopt);
    EXPECT_EQ(utf8(head.familyName), "A");
}

void expectError(const Bytes& file, int code, const char* detail) {
    PrinterFontHead head;
    const auto error = scanPFB(file, head);
    ASSERT_TRUE(error) << detail;
    EXPECT_EQ(error->code, code) << detail;
    EXPECT_EQ(utf8(error->detail), detail);
}

TEST(PFBHead, AFileWithoutAHeaderIsAReadErrorWithoutText) {
    expectError({}, 1921, "");
    expectError({0x80, 1, 0, 0, 0}, 1921, "");
}

TEST(PFBHead, AnotherSignatureIsToldInHexadecimal) {
    expectError(Type1Font::latin().pfa(), 1928, "Header bad signature: 25");
    expectError({0x0A, 1, 0, 0, 0, 0}, 1928, "Header bad signature: 0A");
}

TEST(PFBHead, AnotherSegmentTypeIsToldInHexadecimal) {
    expectError(pfbSegment(2, {}), 1928, "Header bad segmentType: 02");
    expectError(pfbSegment(0xFE, {}), 1928, "Header bad segmentType: FE");
}

TEST(PFBHead, ASegmentLongerThanTheFileIsAReadError) {
    Bytes file = Type1Font::latin().pfb();
    file.truncate(60);
    expectError(file, 1928, "SegmentData read error");
    expectError({0x80, 1, 0xFF, 0xFF, 0xFF, 0xFF}, 1928, "SegmentData read error");
}

} // namespace
} // namespace KWFontService_NS
