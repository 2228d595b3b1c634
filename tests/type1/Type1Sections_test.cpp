#include "type1/Type1Sections.h"

#include "support/Type1Font.h"

#include <gtest/gtest.h>

#include <array>
#include <sstream>
#include <string>

namespace KWFontService_NS {
namespace {

using KWTest::Bytes;
using KWTest::pfaDigits;
using KWTest::pfbSegment;
using KWTest::Type1Font;

using Reader = bool (*)(std::istream&, Type1Sections&);

struct Result {
    bool read = false;
    std::string clearText;
    Bytes eexec;
    std::string trailer;
    bool isWhole = false;
    std::array<std::uint64_t, 3> announced{};
};

std::string textOf(const std::vector<std::uint8_t>& bytes) {
    return {bytes.begin(), bytes.end()};
}

Result read(Reader reader, const std::string& file) {
    std::istringstream stream(file);
    Type1Sections sections;
    Result result;
    result.read = reader(stream, sections);
    result.clearText = textOf(sections.clearText);
    result.eexec = Bytes(sections.eexec);
    result.trailer = textOf(sections.trailer);
    result.isWhole = sections.isWhole;
    result.announced = sections.announced;
    return result;
}

Result pfa(const std::string& file) {
    return read(readPFASections, file);
}
Result pfb(const Bytes& file) {
    return read(readPFBSections, file.str());
}

const std::string kHead = "%!\ncurrentfile eexec\n";

// --- hexadecimal text ---------------------------------------------------------------------------

TEST(PFASections, AFontFallsIntoThreeParts) {
    for (const char* lineEnd : {"\n", "\r", "\r\n"}) {
        Type1Font font = Type1Font::latin();
        font.lineEnd = lineEnd;
        const Result result = pfa(font.pfa().str());
        EXPECT_TRUE(result.read);
        EXPECT_EQ(result.clearText, font.clearText());
        EXPECT_EQ(result.eexec, font.eexec());
        EXPECT_TRUE(result.isWhole);
        EXPECT_EQ(result.trailer, font.trailer());
    }
}

TEST(PFASections, DigitsAreOfEitherCase) {
    EXPECT_EQ(pfa(kHead + "aBCdeF09").eexec, (Bytes{0xAB, 0xCD, 0xEF, 0x09}));
}

TEST(PFASections, ASingleDigitAtTheEndOfALineCountsNothing) {
    EXPECT_EQ(pfa(kHead + "12345\n67 8\r\n9AB").eexec, (Bytes{0x12, 0x34, 0x67, 0x9A}));
}

TEST(PFASections, TheSectionEndsAtWhatIsNoDigit) {
    const Result result = pfa(kHead + "1234\n{restore}if 5678");
    EXPECT_EQ(result.eexec, (Bytes{0x12, 0x34}));
    EXPECT_EQ(result.trailer, "{restore}if 5678");
}

TEST(PFASections, TheClosingZerosAreNoDigits) {
    const std::string zeros = std::string(512, '0') + "\ncleartomark\n";
    const Result result = pfa(kHead + "1234\n" + zeros);
    EXPECT_EQ(result.eexec, (Bytes{0x12, 0x34}));
    EXPECT_EQ(result.trailer, zeros);
}

TEST(PFASections, AWordBehindTheZerosMayBeginWithDigits) {
    for (const char* word : {"end", "def", "cleartomark", "add1x", "exec"}) {
        const std::string trailer = std::string(512, '0') + "\n" + word + "\ncleartomark\n";
        const Result result = pfa(kHead + "1234\n" + trailer);
        EXPECT_EQ(result.eexec, (Bytes{0x12, 0x34})) << word;
        EXPECT_EQ(result.trailer, trailer) << word;
    }
    EXPECT_EQ(pfa(kHead + "1234\n" + std::string(512, '0') + "cleartomark\n").trailer,
              std::string(512, '0') + "cleartomark\n");
}

TEST(PFASections, ALetterThatIsNoDigitEndsTheSection) {
    const Result result = pfa(kHead + "1234G678");
    EXPECT_EQ(result.eexec, (Bytes{0x12, 0x34}));
    EXPECT_EQ(result.trailer, "G678");
}

TEST(PFASections, ZerosBeforeTheLast512AreDigits) {
    const Result result = pfa(kHead + "1200" + std::string(512, '0') + "\ncleartomark\n");
    EXPECT_EQ(result.eexec, (Bytes{0x12, 0x00}));
}

TEST(PFASections, FewerClosingZerosAreTakenAsTheyAre) {
    const Result result = pfa(kHead + "12\n" + std::string(100, '0') + "\ncleartomark\n");
    EXPECT_EQ(result.eexec, (Bytes{0x12}));
    EXPECT_EQ(result.trailer, std::string(100, '0') + "\ncleartomark\n");
    EXPECT_EQ(pfa(kHead + "12" + std::string(30, '0') + "\ncleartomark\n").eexec.size(), 16U);
}

TEST(PFASections, AFileThatEndsInTheDigitsIsNotWhole) {
    const Result result = pfa(kHead + "1234");
    EXPECT_TRUE(result.read);
    EXPECT_FALSE(result.isWhole);
}

TEST(PFASections, ALineHasToBeginWithTheWords) {
    EXPECT_FALSE(pfa("%!\n currentfile eexec\n1234").read);
    EXPECT_FALSE(pfa("currentfile\n1234").read);
    EXPECT_FALSE(pfa("").read);
    EXPECT_TRUE(pfa("currentfile eexec").read);
    EXPECT_EQ(pfa("a\rcurrentfile eexec more\r12").eexec, (Bytes{0x12}));
}

TEST(PFASections, AFileOfZerosEnds) {
    EXPECT_EQ(pfa(kHead + std::string(1 << 20, '0')).eexec.size(), ((1U << 20) - 512) / 2);
}

// --- segments -----------------------------------------------------------------------------------

TEST(PFBSections, AFontFallsIntoThreeParts) {
    const Type1Font font = Type1Font::latin();
    const Result result = pfb(font.pfb());
    EXPECT_TRUE(result.read);
    EXPECT_EQ(result.clearText, font.clearText());
    EXPECT_EQ(result.eexec, font.eexec());
    EXPECT_EQ(result.trailer, font.trailer());
    EXPECT_TRUE(result.isWhole);
}

TEST(PFBSections, SegmentsOfOneKindInARowAreOnePart) {
    Bytes file = pfbSegment(1, Bytes::ofText("ab"));
    file.bytes(pfbSegment(1, Bytes::ofText("c")).vector());
    file.bytes(pfbSegment(2, Bytes{1}).vector()).bytes(pfbSegment(2, Bytes{2, 3}).vector());
    file.bytes(pfbSegment(1, Bytes::ofText("d")).vector()).u8(0x80).u8(3);
    const Result result = pfb(file);
    EXPECT_TRUE(result.read);
    EXPECT_EQ(result.clearText, "abc");
    EXPECT_EQ(result.eexec, (Bytes{1, 2, 3}));
    EXPECT_EQ(result.trailer, "d");
}

TEST(PFBSections, TheLastTextAndTheMarkMayBeMissing) {
    Bytes file = pfbSegment(1, Bytes::ofText("a"));
    file.bytes(pfbSegment(2, Bytes{1}).vector());
    EXPECT_TRUE(pfb(file).read);
    EXPECT_TRUE(pfb(Bytes(file).u8(0x80).u8(3)).read);
    EXPECT_FALSE(pfb(file).isWhole);
    const Result empty = pfb(file.bytes(pfbSegment(1, {}).vector()));
    EXPECT_TRUE(empty.read);
    EXPECT_TRUE(empty.isWhole) << "the text is there, and empty";
}

TEST(PFBSections, AnotherOrderIsRefused) {
    const Bytes text = pfbSegment(1, Bytes::ofText("a"));
    const Bytes binary = pfbSegment(2, Bytes{1});
    EXPECT_FALSE(pfb(Bytes(binary).bytes(text.vector())).read);
    EXPECT_FALSE(pfb(text).read);
    EXPECT_FALSE(pfb({0x80, 3}).read);
    EXPECT_FALSE(pfb({}).read);
}

TEST(PFBSections, UnknownTypesAndMarksAreRefused) {
    const Bytes text = pfbSegment(1, Bytes::ofText("a"));
    EXPECT_FALSE(pfb(Bytes(text).bytes(pfbSegment(4, Bytes{1}).vector())).read);
    EXPECT_FALSE(pfb(Bytes(text).bytes(pfbSegment(0, Bytes{1}).vector())).read);
    EXPECT_FALSE(pfb(Bytes(text).u8(0x81).u8(2).zero(4)).read);
}

TEST(PFBSections, ASegmentLongerThanTheFileIsRefusedWithWhatWasRead) {
    Bytes file = pfbSegment(1, Bytes::ofText("abc"));
    file.u8(0x80).u8(2).u32(0xFFFFFFFF).u8(7).u8(8);
    const Result result = pfb(file);
    EXPECT_FALSE(result.read);
    EXPECT_EQ(result.clearText, "abc");
    EXPECT_TRUE(result.eexec.empty()) << "a part of a section is none";
    EXPECT_EQ(result.announced[1], 0xFFFFFFFFU);
    EXPECT_FALSE(pfb({0x80, 1, 5, 0}).read);
}

TEST(PFBSections, BehindTheLastTextAnythingIsTheEnd) {
    Bytes file = pfbSegment(1, Bytes::ofText("a"));
    file.bytes(pfbSegment(2, Bytes{1}).vector()).bytes(pfbSegment(1, Bytes::ofText("b")).vector());
    for (const Bytes& end : {Bytes{0x0D, 0x0A}, Bytes{0x80, 7}, pfbSegment(2, Bytes{1})}) {
        const Result result = pfb(Bytes(file).bytes(end.vector()));
        EXPECT_TRUE(result.read);
        EXPECT_TRUE(result.isWhole);
        EXPECT_EQ(result.trailer, "b");
    }
}

} // namespace
} // namespace KWFontService_NS
